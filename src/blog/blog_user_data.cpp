#include "blog/blog_user_data.h"

#include "convert/password_text.h"
#include "core/blog_keys.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "core/stored_name.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/profile_file.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

constexpr unsigned kOwnerOnly = 0600;

bool isPassword(const core::Setting& row) {
    return row.name == core::keys::blog_user::kPassword.name;
}

/// What the file is to give back: it would lose outer blanks, which come with an address that is pasted. Those of a
/// password are scrambled, and none.
QString kept(const core::Setting& row, const QString& value) {
    return isPassword(row) ? value : value.trimmed();
}

} // namespace

BlogUserData::BlogUserData(const core::Session& session, const QString& blog)
    : m_session(session)
    , m_blog(blog) {}

QString BlogUserData::value(const core::Setting& row) const {
    const QString stored = core::Settings(m_session).text(core::inSection(row, m_blog));
    return isPassword(row) ? convert::passwordFromSetting(stored) : core::nameOfStored(stored);
}

bool BlogUserData::canBear(const QString& blog) {
    const QString anyKey = core::keys::blog_user::kLoginID.name.toString();
    const QByteArray stored = platform::changedProfile({}, blog, anyKey, QString());
    const QString readBack = platform::decodeReferences(platform::fromCodePage(platform::toCodePage(blog)));
    return platform::ProfileFile::fromBytes(stored).sections() == QStringList{readBack};
}

bool BlogUserData::fits(const core::Setting& row, const QString& value) {
    return isPassword(row) ? convert::isPasswordText(value) : core::fitsSetting(kept(row, value));
}

QString BlogUserData::refusal(const QString& name) {
    return u"「%1」は、長すぎるか、設定に書けない文字を含んでいます。"_s.arg(name);
}

void BlogUserData::store(const core::Setting& row, const QString& value) const {
    store({{row, value}});
}

void BlogUserData::store(const std::vector<std::pair<core::Setting, QString>>& values) const {
    const auto refuse = [this](const QString& reason, const QString& remedy = {}) {
        throw platform::Failure(u"ブログの設定を保存できません。"_s,
                                core::Settings(m_session).file(core::SettingsFile::BlogUserData), reason, remedy);
    };
    if (!canBear(m_blog))
        refuse(u"テンプレートの名前「%1」は設定に書けません。"_s.arg(m_blog),
               u"テンプレートのファイルの名前を変えてください。"_s);
    core::SettingsChange change;
    for (const auto& [row, value] : values) {
        const core::Setting mine = core::inSection(row, m_blog);
        if (!fits(row, value))
            refuse(refusal(row.name.toString()));
        change.set(m_session, mine,
                   isPassword(row) ? convert::EncryptPassword(value) : core::storedName(kept(row, value)));
    }
    // A file that came from elsewhere may be open to everybody.
    platform::limitMode(platform::existingPath(core::Settings(m_session).file(core::SettingsFile::BlogUserData)),
                        kOwnerOnly);
    change.write();
}

} // namespace velloria::blog
