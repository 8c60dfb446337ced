#include "shell/user_accounts.h"

#include "convert/password_text.h"
#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/program_keys.h"
#include "core/settings_change.h"
#include "platform/code_page.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "shell/data_folder.h"
#include "shell/single_user_data.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::shell {

using namespace core::keys;
using platform::MessageKind;
using platform::Outcome;
using platform::PasswordLines;

namespace {

constexpr unsigned kOwnersFolder = 0700;

const QString kPasswordCaption = u"パスワードの入力"_s;
const QString kTaken = u"すでにそのユーザーは存在します。"_s;
const QString kChooseUser = u"ユーザーを選択してください。"_s;
const QString kRestart = u"Velloriaを再起動してください。"_s;

core::Setting of(const QString& id, const core::Setting& setting) {
    return core::inSection(setting, id);
}

/// Whether the user file gives the name back as it is, as a section and as a value, without the help of references.
bool isKept(const QString& id) {
    if (!platform::inCodePage(id))
        return false;
    const QByteArray bytes = platform::changedProfile({}, id, kUserId.name.toString(), id);
    return platform::ProfileFile::fromBytes(bytes).value(id, kUserId.name.toString()) == id;
}

/// A folder as it really lies, with its separator; one that is not there by its name.
QString realFolder(const QString& folder) {
    const QString real = QFileInfo(folder).canonicalFilePath();
    return core::withSeparator(real.isEmpty() ? QDir::cleanPath(folder) : real);
}

/// The folder without "..", as the system follows them: behind a link they lead elsewhere than the name says.
QString plainFolder(const QString& folder) {
    const QString plain = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    return platform::isSameFile(plain, folder) ? core::withSeparator(plain) : realFolder(folder);
}

QString withoutSeparator(const QString& folder) {
    return core::GetParentFolder(folder);
}

/// Whether the two lines are one password. What they should be is said by the desk.
enum class Typed { Different, Unusable, Agreed };

Typed compared(const platform::Passwords& typed) {
    if (typed.password != typed.confirmation)
        return Typed::Different;
    return convert::isPasswordText(typed.password) ? Typed::Agreed : Typed::Unusable;
}

const QString kUnusablePassword = u"そのパスワードは使用できません。"_s;

/// What has come along, and what of the single user's a person might look for in vain.
QString toldOfMove(const SingleUserData& data, const QString& oldDataPath) {
    const QString moved = data.diary.isEmpty() ? u"設定"_s : data.settings.isEmpty() ? u"日記"_s : u"設定と日記"_s;
    const QString where = oldDataPath.isEmpty() ? u"元のフォルダ"_s : u'「' + oldDataPath + u'」';
    return u"%1を移行しました。画像、カスタマイズのテキスト、登録したファイルは%2に残っています。"_s.arg(moved, where);
}

} // namespace

UserAccounts::UserAccounts(const core::Run& run)
    : m_session(run.session)
    , m_desk(run.desk)
    , m_users(run.session.MyPath) {}

Outcome UserAccounts::refuse(const QString& text) const {
    m_desk.message(MessageKind::Critical, text);
    return Outcome::Refused;
}

Outcome UserAccounts::makeUser(const std::optional<QString>& told) {
    const QString name = told ? *told : m_desk.input(u"ユーザー名を入力してください。"_s, {});
    const QString id = name.trimmed();
    if ((!told && name.isEmpty()) || !isFree(id))
        return Outcome::Refused;
    const bool isFirst = !m_users.exist();
    if (!m_users.add(id))
        return refuse(kTaken);
    const std::optional<platform::Passwords> typed =
        m_desk.passwords(kPasswordCaption, PasswordLines::WithConfirmation);
    if (!typed) {
        m_desk.notice(u"ユーザー「%1」をパスワードなしで作成しました。"_s.arg(id));
        return Outcome::Refused;
    }
    const Typed password = compared(*typed);
    if (password != Typed::Agreed) {
        takeIdBack(id, isFirst);
        return password == Typed::Unusable ? refuse(kUnusablePassword) : Outcome::Refused;
    }
    const bool hasFolder = QFileInfo::exists(m_users.defaultFolder(id));
    try {
        furnish(id, typed->password);
    } catch (const platform::Failure&) {
        if (!hasFolder)
            QDir().rmdir(m_users.defaultFolder(id));
        takeIdBack(id, isFirst);
        throw;
    }
    if (hasFolder)
        m_desk.message(MessageKind::Information, u"ユーザーフォルダはすでに存在するので、そのまま使用します。"_s);
    m_desk.message(MessageKind::Plain, u"新しいユーザー「"_s + id + u"」を作成しました。"_s);
    return Outcome::Done;
}

/// Says why when it is not.
bool UserAccounts::isFree(const QString& id) const {
    if (!isUsableName(id))
        refuse(u"その名前は使用できません。"_s);
    else if (m_users.isTaken(id))
        refuse(kTaken);
    else if (isAnothersFolder(id))
        refuse(u"その名前のフォルダは、ほかのユーザーが使用しています。\r\n別の名前を指定してください。"_s);
    else
        return !QFileInfo::exists(m_users.defaultFolder(id)) || canWorkIn(m_users.defaultFolder(id));
    return false;
}

/// Whether the folder that the user would get is one of somebody else's. Who has chosen the program's own folder has
/// everybody's in it, and keeps nobody out by that.
bool UserAccounts::isAnothersFolder(const QString& id) const {
    const QStringList around = othersAround(m_users.defaultFolder(id), id);
    const QString home = realFolder(m_session.MyPath);
    return !std::all_of(around.begin(), around.end(), [&](const QString& folder) { return home.startsWith(folder); });
}

/// It becomes a section, a value and a folder beside the program, where some names have another meaning.
bool UserAccounts::isUsableName(const QString& id) const {
    constexpr qsizetype kLongestFileName = 255; // bytes, of every usual file system
    // What the program may still make there for itself.
    const QString own[] = {kPreviousUser.section.toString(),   core::files::kUsers.name,
                           core::files::kUserData.name,        core::files::kFirstCustomize.name,
                           core::files::kCustomizeBackup.name, core::files::kCustomizeBackupOf.name,
                           core::files::kOffers.name,          core::files::kArchives.name};
    const auto isOwn = [&id](const QString& name) { return id.compare(name, Qt::CaseInsensitive) == 0; };
    const auto isForbidden = [](QChar c) { return u"[]="_s.contains(c) || c.category() == QChar::Other_Control; };
    const QFileInfo there(withoutSeparator(m_users.defaultFolder(id)));
    return core::isBareName(id) && std::none_of(id.begin(), id.end(), isForbidden) &&
           std::none_of(std::begin(own), std::end(own), isOwn) && isKept(id) &&
           id.toUtf8().size() <= kLongestFileName && fitsSettingsWithAllBelow(m_users.defaultFolder(id)) &&
           (!there.exists() || there.isDir());
}

/// Both at once: with one of them alone the login would fail, or lead to another folder.
void UserAccounts::furnish(const QString& id, const QString& password) const {
    platform::makeFolder(withoutSeparator(m_users.defaultFolder(id)), kOwnersFolder);
    core::SettingsChange user;
    user.set(m_users.file(), of(id, kUserPass), convert::EncryptPassword(password));
    user.set(m_users.file(), of(id, kUserPath), m_users.defaultFolder(id));
    user.write();
}

/// A user file that names nobody would keep everybody out: one that was made for this user goes as a whole.
void UserAccounts::takeIdBack(const QString& id, bool isFirst) const {
    try {
        if (isFirst && removeFileOfNobodyBut(id))
            return;
        core::SettingsChange end;
        end.remove(m_users.file(), of(id, kUserId));
        end.write();
        if (isFirst) // the others may have gone meanwhile
            removeFileOfNobodyBut(id);
    } catch (platform::Failure& failure) {
        failure.addStage(u"ユーザー「%1」がパスワードなしで残っています"_s.arg(id));
        throw;
    }
}

/// Whether it did: another program may have made a user meanwhile.
bool UserAccounts::removeFileOfNobodyBut(const QString& id) const {
    const platform::FolderLock lock(core::GetParentFolder(m_users.file()));
    const QStringList ids = m_users.ids();
    if (!std::all_of(ids.begin(), ids.end(), [&](const QString& user) { return user == id; }))
        return false;
    platform::removeFile(m_users.file());
    return true;
}

Outcome UserAccounts::changePassword() {
    const QString& id = m_session.UserID;
    if (id.isEmpty())
        return refuse(u"ユーザー名が空白の場合は、パスワードの変更はできません。"_s);
    if (!m_users.UserExists(id))
        return refuse(u"ユーザー「%1」は削除されています。"_s.arg(id));
    const auto typed = m_desk.passwords(u"新しいパスワードの入力"_s, PasswordLines::WithConfirmation);
    if (!typed)
        return Outcome::Refused;
    switch (compared(*typed)) {
    case Typed::Different:
        return refuse(u"入力したパスワードが一致しません。\r\n変更はキャンセルします。"_s);
    case Typed::Unusable:
        return refuse(kUnusablePassword);
    case Typed::Agreed:
        break;
    }
    core::SettingsChange change;
    change.set(m_users.file(), of(id, kUserPass), convert::EncryptPassword(typed->password));
    change.write();
    m_desk.message(MessageKind::Plain, u"パスワードの変更が完了しました！"_s);
    return Outcome::Done;
}

/// Asks for the user's password; a wrong one is told, with `whatStops` behind it.
bool UserAccounts::hasPassword(const QString& id, const QString& whatStops) const {
    const std::optional<platform::Passwords> typed = m_desk.passwords(kPasswordCaption, PasswordLines::One);
    if (!typed)
        return false;
    if (m_users.UserCheck(id, typed->password))
        return true;
    refuse(u"パスワードが一致しませんでした。\r\n"_s + whatStops);
    return false;
}

Outcome UserAccounts::deleteUser(const QString& id) {
    if (id.isEmpty())
        return refuse(kChooseUser);
    if (!hasPassword(id, u"ユーザーの削除を中止します。"_s))
        return Outcome::Refused;
    core::SettingsChange end;
    end.remove(m_users.file(), of(id, kUserId));
    end.remove(m_users.file(), of(id, kUserPass));
    end.write();
    m_desk.message(MessageKind::Plain,
                   u"ユーザーの削除が完了しました。\r\nユーザーフォルダはご自分で削除してください。"_s);
    if (id == m_session.UserID)
        m_desk.message(MessageKind::Plain, kRestart);
    return Outcome::Done;
}

Outcome UserAccounts::changePath(const QString& id, const std::optional<QString>& told) {
    if (id.isEmpty())
        return refuse(kChooseUser);
    if (m_session.UserID.isEmpty())
        return refuse(u"ユーザー名が空白の場合は、ユーザー管理でのフォルダの変更はできません。\r\n"_s
                      u"オプションからフォルダの変更をしてください。"_s);
    if (!hasPassword(id, u"ユーザーパスの変更を中止します。"_s))
        return Outcome::Refused;
    const auto chosen =
        told ? told : m_desk.choosePath({platform::PathMode::Folder, u"ユーザーパスの指定"_s, {}, m_users.folder(id)});
    if (!chosen || chosen->isEmpty() || !QFileInfo(*chosen).isDir())
        return refuse(u"パスが不正なため、ユーザーパスの変更を中止します。"_s);
    const QString folder = plainFolder(*chosen);
    if (!isFolderFor(id, folder))
        return Outcome::Refused;
    core::SettingsChange change;
    change.set(m_users.file(), of(id, kUserPath), folder);
    change.write();
    m_desk.message(MessageKind::Plain, u"ユーザーパスの変更が完了しました。"_s);
    return Outcome::Done;
}

/// Says why when it is not.
bool UserAccounts::isFolderFor(const QString& id, const QString& folder) const {
    if (othersAround(folder, id).isEmpty())
        return mayBeDataFolder(folder, m_desk) && canWorkIn(folder);
    refuse(u"ほかのユーザーのフォルダは指定できません。\r\n別のフォルダを指定してください。"_s);
    return false;
}

/// The folders of other users in which `folder` lies, or which it is.
QStringList UserAccounts::othersAround(const QString& folder, const QString& id) const {
    const QString real = realFolder(folder);
    QStringList around;
    for (const User& other : m_users.all()) {
        if (const QString others = realFolder(other.folder); other.id != id && real.startsWith(others))
            around += others;
    }
    return around;
}

bool UserAccounts::canWorkIn(const QString& folder) const {
    if (QFileInfo(folder).isWritable())
        return true;
    refuse(u"フォルダに書き込めません。\r\n%1"_s.arg(folder));
    return false;
}

Outcome UserAccounts::takeSingleUserData(const QString& id) {
    if (id.isEmpty())
        return refuse(u"データを移行するユーザーが選択されていません。"_s);
    if (!hasPassword(id, u"データの移行を中止します。"_s))
        return Outcome::Refused;
    if (!m_desk.ask(
            u"選択しているユーザー("_s + id + u")にシングルユーザー時のデータを移行します。\r\n"_s +
            u"基本的に上書きとなるので、データの消失にご注意下さい（現在のファイルは「_BackUp」として残します。"_s))
        return Outcome::Refused;
    const QString folder = m_users.folder(id);
    const SingleUserData data = findSingleUserData(m_session);
    if (data.isEmpty())
        return refuse(u"移行するデータがありません。"_s);
    if (data.liesIn(folder))
        return refuse(u"移行するデータは、すでにこのユーザーのフォルダにあります。"_s);
    if (!mayBeDataFolder(folder, m_desk))
        return Outcome::Refused;
    const QString oldDataPath = data.settings.isEmpty() ? QString() : core::IniReader(data.settings).text(kDataPath);
    {
        const platform::Hourglass hourglass(m_desk);
        moveSingleUserData(data, folder);
    }
    m_desk.message(MessageKind::Plain, u"完了しました！"_s);
    if (id == m_session.UserID)
        m_desk.message(MessageKind::Plain,
                       u"現在ログインしたユーザーにデータを移行したので、Velloriaを再起動してください。"_s);
    m_desk.notice(toldOfMove(data, oldDataPath));
    return Outcome::Done;
}

} // namespace velloria::shell
