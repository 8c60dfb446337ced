#include "blog/blog_template.h"

#include "core/blog_keys.h"
#include "core/files.h"
#include "core/ini_reader.h"
#include "platform/directory.h"
#include "platform/failure.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

namespace keys = core::keys::blog_template;

const QString kExtension = u".ini"_s;

TemplateSwitch readSwitch(const core::IniReader& file, const keys::SwitchRows& rows) {
    return {file.text(rows.type), file.text(rows.yes), file.text(rows.no), file.text(rows.radioYes),
            file.text(rows.radioNo)};
}

} // namespace

QStringList blogNames(const core::Session& session) {
    QStringList names;
    for (const QString& file : platform::listFolder(core::files::kBlogTemplates.in(session) + u'/', u'*' + kExtension))
        names += file.chopped(kExtension.size());
    return names;
}

QString templateFile(const core::Session& session, const QString& name) {
    return platform::existingPath(core::files::kBlogTemplates.in(session) + u'/' + name + kExtension);
}

void refuseHugeTemplate(const QString& file) {
    if (QFileInfo(file).size() > kMostTemplateBytes)
        throw platform::Failure(u"ブログのテンプレートを読み込めません。"_s, file,
                                u"ファイルが大きすぎます (1 MB まで)。"_s,
                                u"テンプレートを正しいものと入れ替えてください。"_s);
}

BlogTemplate BlogTemplate::read(const QString& path) {
    refuseHugeTemplate(path);
    const core::IniReader file(path);
    const auto element = [&file](const core::Setting& value, const core::Setting& type) {
        return TemplateElement{file.text(value), file.text(type)};
    };
    return {
        .blog = file.text(keys::kBlog),
        .postUrl = file.text(keys::kPostURL),
        .loginUrl = file.text(keys::kLoginURL),
        .nextUrl = file.text(keys::kNextURL),
        .manageUrl = file.text(keys::kManageURL),
        .html2txt = file.text(keys::kHTML2TXT),
        .formLogin = file.number(keys::kFormLogin),
        .formPost = file.number(keys::kFormPost),
        .formConfirm = file.number(keys::kFormConfirm),
        .checkObject = file.text(keys::kCheckObject),
        .autoLoginUrl = file.text(keys::kAutoLoginURL),
        .loginRedirect = file.text(keys::kLoginRedirect),
        .raisesEvents = file.text(keys::kEvents) == u"TRUE",
        .loginId = element(keys::kValueLoginID, keys::kTypeLoginID),
        .password = element(keys::kValuePassword, keys::kTypePassword),
        .next = element(keys::kValueNext, keys::kTypeNext),
        .login = element(keys::kValueLogin, keys::kTypeLogin),
        .title = element(keys::kValueTitle, keys::kTypeTitle),
        .body = element(keys::kValueBody, keys::kTypeBody),
        .genre = element(keys::kValueGenre, keys::kTypeGenre),
        .genre2 = file.text(keys::kValueGenre2),
        .post = element(keys::kValuePost, keys::kTypePost),
        .confirm = element(keys::kValueConfirm, keys::kTypeConfirm),
        .underWrite = readSwitch(file, keys::kUnderWrite),
        .acceptComment = readSwitch(file, keys::kAcceptComment),
        .acceptPing = readSwitch(file, keys::kAcceptPing),
    };
}

} // namespace velloria::blog
