#include "cli/command.h"
#include "shell/user_accounts.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void list(Invocation& invocation) {
    QJsonArray json;
    std::vector<QStringList> rows;
    for (const shell::User& user : shell::Users(invocation.session.MyPath).all()) {
        json += QJsonObject{{u"ID"_s, user.id}, {u"Path"_s, user.folder}};
        rows.push_back({user.id, user.folder});
    }
    invocation.print(json, rows);
}

void requireDone(platform::Outcome outcome, const QString& whenRefused) {
    if (outcome == platform::Outcome::Refused)
        throw Refusal(whenRefused);
}

/// The user that the command line names. Their password is not asked for when there is no such user.
QString namedUser(const Invocation& invocation) {
    const QString id = invocation.argument(0);
    if (!shell::Users(invocation.session.MyPath).UserExists(id))
        throw Refusal(u"ユーザー「%1」はいません。"_s.arg(id));
    return id;
}

void add(Invocation& invocation) {
    requireDone(shell::UserAccounts(invocation).makeUser(invocation.argument(0)), u"ユーザーの作成を中止しました。"_s);
}

void changePassword(Invocation& invocation) {
    requireDone(shell::UserAccounts(invocation).changePassword(), u"パスワードの変更を中止しました。"_s);
}

void remove(Invocation& invocation) {
    requireDone(shell::UserAccounts(invocation).deleteUser(namedUser(invocation)), u"ユーザーの削除を中止しました。"_s);
}

void changePath(Invocation& invocation) {
    requireDone(shell::UserAccounts(invocation).changePath(namedUser(invocation), invocation.argument(1)),
                u"ユーザーパスの変更を中止しました。"_s);
}

void take(Invocation& invocation) {
    requireDone(shell::UserAccounts(invocation).takeSingleUserData(namedUser(invocation)),
                u"データの移行を中止しました。"_s);
}

} // namespace

std::vector<Command> userCommands() {
    return {
        {u"user list"_s, {}, 0, 0, {}, u"ユーザーの一覧 (IDとフォルダ)"_s, Start::User, list},
        {u"user add"_s,
         u"ID"_s,
         1,
         1,
         {},
         u"ユーザーを作る (最初のユーザーにはログインが要らない)"_s,
         Start::FirstUser,
         add},
        {u"user password"_s, {}, 0, 0, {}, u"ログインしたユーザーのパスワードを変える"_s, Start::User, changePassword},
        {u"user delete"_s, u"ID"_s, 1, 1, {}, u"ユーザーを削除する (フォルダは残る)"_s, Start::User, remove},
        {u"user path"_s,
         u"ID FOLDER"_s,
         2,
         2,
         {},
         u"ユーザーのフォルダを変える (データは移さない)"_s,
         Start::User,
         changePath},
        {u"user take"_s, u"ID"_s, 1, 1, {}, u"シングルユーザーのデータをユーザーに移す"_s, Start::User, take},
    };
}

} // namespace velloria::cli
