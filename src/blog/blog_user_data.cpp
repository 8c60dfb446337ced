#include "blog/blog_user_data.h"

#include "convert/password_text.h"
#include "core/blog_keys.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "core/stored_name.h"
#include "platform/code_page.h"
#include "platform/failure.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

bool isPassword(const core::Setting& row) {
    return row.name == core::keys::blog_user::kPassword.name;
}

} // namespace

BlogUserData::BlogUserData(const core::Session& session, const QString& blog)
    : m_session(session)
    , m_blog(blog) {}

QString BlogUserData::value(const core::Setting& row) const {
    const QString stored = core::Settings(m_session).text(core::inSection(row, m_blog));
    return isPassword(row) ? convert::passwordFromSetting(stored) : stored;
}

bool BlogUserData::canBear(const QString& blog) {
    const QString anyKey = core::keys::blog_user::kLoginID.name.toString();
    const QByteArray stored = platform::changedProfile({}, blog, anyKey, QString());
    const QString readBack = platform::decodeReferences(platform::fromCodePage(platform::toCodePage(blog)));
    return platform::ProfileFile::fromBytes(stored).sections() == QStringList{readBack};
}

bool BlogUserData::fits(const core::Setting& row, const QString& value) {
    return isPassword(row) ? convert::isPasswordText(value) : core::fitsSetting(value);
}

void BlogUserData::store(const core::Setting& row, const QString& value) const {
    const core::Setting mine = core::inSection(row, m_blog);
    if (!canBear(m_blog))
        throw platform::Failure(u"ブログの設定を保存できません。"_s, core::Settings(m_session).file(mine.file),
                                u"テンプレートの名前「%1」は設定に書けません。"_s.arg(m_blog),
                                u"テンプレートのファイルの名前を変えてください。"_s);
    if (!fits(row, value))
        throw platform::Failure(u"ブログの設定を保存できません。"_s, core::Settings(m_session).file(mine.file),
                                u"%1 が長すぎるか、設定に書けない文字を含んでいます。"_s.arg(row.name));
    core::SettingsChange change;
    change.set(m_session, mine, isPassword(row) ? convert::EncryptPassword(value) : value);
    change.write();
}

} // namespace velloria::blog
