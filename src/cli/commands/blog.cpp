#include "blog/blog_protocol.h"
#include "blog/blog_template.h"
#include "blog/blog_user_data.h"
#include "blog/template_check.h"
#include "cli/command.h"
#include "cli/streams.h"
#include "core/blog_keys.h"
#include "core/ini_reader.h"
#include "platform/failure.h"
#include "shell/home.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

namespace keys = core::keys::blog_user;

const QString kHiddenPassword = u"********"_s;
const QString kFromInput = u"-"_s;

/// The name that people see; none of a template that can't be read, which spoils no list.
QJsonValue shownName(const core::Session& session, const QString& blog) {
    try {
        const QString file = blog::templateFile(session, blog);
        blog::refuseHugeTemplate(file);
        return core::IniReader(file).text(core::keys::blog_template::kBlog);
    } catch (const platform::Failure&) {
        return {};
    }
}

void list(Invocation& invocation) {
    QJsonArray json;
    std::vector<QStringList> rows;
    for (const QString& name : blog::blogNames(invocation.session)) {
        json += QJsonObject{{u"Name"_s, name}, {u"Blog"_s, shownName(invocation.session, name)}};
        rows.push_back({name});
    }
    invocation.print(json, rows);
}

QString blogOf(const Invocation& invocation) {
    const QString& name = invocation.arguments[0];
    if (!blog::blogNames(invocation.session).contains(name))
        throw Refusal(u"「%1」というブログはありません。blog list で名前を確認してください。"_s.arg(name));
    return name;
}

/// The row of a key as somebody types it.
const core::Setting& rowOf(const QString& key) {
    const auto row = std::ranges::find_if(
        keys::kAll, [&](const core::Setting& known) { return key.compare(known.name, Qt::CaseInsensitive) == 0; });
    if (row != keys::kAll.end())
        return *row;
    QStringList names;
    for (const core::Setting& known : keys::kAll)
        names += known.name.toString();
    throw Refusal(u"「%1」というキーはありません (%2 のどれかを指定してください)。"_s.arg(key, names.join(u"、"_s)));
}

bool isPassword(const core::Setting& row) {
    return row.name == keys::kPassword.name;
}

/// A password is never printed.
QString shownValue(const blog::BlogUserData& data, const core::Setting& row) {
    const QString value = data.value(row);
    return isPassword(row) && !value.isEmpty() ? kHiddenPassword : value;
}

void printAll(const Invocation& invocation, const blog::BlogUserData& data) {
    QJsonObject json;
    std::vector<QStringList> rows;
    for (const core::Setting& row : keys::kAll) {
        const QString value = shownValue(data, row);
        json[row.name.toString()] = value;
        rows.push_back({row.name.toString(), value});
    }
    invocation.print(json, rows);
}

void printOne(const Invocation& invocation, const QString& value) {
    if (invocation.global.isJson)
        invocation.print(QJsonObject{{u"value"_s, value}}, {});
    else
        writeLine(value); // for scripts: nothing is escaped
}

/// So that it stands neither in the list of processes nor in a history of commands.
QString passwordFromInput() {
    const std::optional<QString> password = readSecretLine(u"パスワード: "_s);
    if (!password)
        throw Refusal(u"標準入力にパスワードがありません。何も変更していません。"_s);
    return *password;
}

void data(Invocation& invocation) {
    const QString name = blogOf(invocation);
    const blog::BlogUserData data(invocation.session, name);
    if (invocation.arguments.size() == 1) {
        printAll(invocation, data);
        return;
    }
    const core::Setting& row = rowOf(invocation.argument(1));
    if (invocation.arguments.size() == 2) {
        printOne(invocation, shownValue(data, row));
        return;
    }
    const QString value = invocation.argument(2);
    data.store(row, isPassword(row) && value == kFromInput ? passwordFromInput() : value);
}

QByteArray templateArgument(const QString& file) {
    // A byte more tells that there are too many.
    return file == kFromInput ? readInput() : platform::readFile(file, blog::kMostTemplateBytes + 1);
}

void check(Invocation& invocation) {
    const QString file = invocation.argument(0);
    const QString home = shell::findHomeToRead(invocation.global.home, QCoreApplication::applicationDirPath());
    const std::vector<blog::TemplateFinding> findings = blog::checkTemplate(
        templateArgument(file), {file == kFromInput ? QString() : QFileInfo(file).fileName(), home});
    QJsonArray json;
    std::vector<QStringList> rows;
    qsizetype errors = 0;
    for (const blog::TemplateFinding& finding : findings) {
        const bool isError = finding.kind == blog::TemplateFinding::Kind::Error;
        errors += isError ? 1 : 0;
        json += QJsonObject{{u"Kind"_s, isError ? u"error"_s : u"hint"_s},
                            {u"Key"_s, finding.key},
                            {u"Value"_s, finding.value},
                            {u"Text"_s, finding.text}};
        rows.push_back({isError ? u"誤り"_s : u"注意"_s, finding.key, finding.value, finding.text});
    }
    invocation.print(json, rows);
    if (errors > 0)
        throw Refusal(u"テンプレートに%1件の誤りがあります。"_s.arg(errors));
}

void log(Invocation& invocation) {
    const QStringList lines = blog::lastProtocol(invocation.session);
    if (lines.isEmpty())
        throw Refusal(u"ブログへの投稿の記録はまだありません。"_s);
    invocation.printList(lines);
}

} // namespace

std::vector<Command> blogCommands() {
    return {
        {u"blog list"_s, {}, 0, 0, {}, u"ブログの一覧 (テンプレートの名前)"_s, Start::Needed, list},
        {u"blog data"_s,
         u"NAME [KEY [VALUE]]"_s,
         1,
         3,
         {},
         u"ブログの設定を表示する、書く (KEY: LoginID、Password、PostURL、NextURL、ManagementURL、AccessURL)"_s,
         Start::Needed,
         data},
        {u"blog check"_s,
         u"FILE"_s,
         1,
         1,
         {},
         u"テンプレートに足りないもの、知らない言葉、矛盾を報告する (何も変更しない)"_s,
         Start::None,
         check},
        {u"blog log"_s, {}, 0, 0, {}, u"ブログへの最後の投稿の記録"_s, Start::User, log},
    };
}

} // namespace velloria::cli
