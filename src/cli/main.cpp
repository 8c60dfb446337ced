// velloria-cli: the diary without a window.
#include "cli/command_line.h"
#include "cli/streams.h"
#include "cli/terminal_desk.h"
#include "core/path_names.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/utf8.h"
#include "shell/home.h"
#include "shell/startup.h"
#include "shell/users.h"

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <langinfo.h>
#include <new>
#include <QCoreApplication>
#include <string_view>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

void reportReason(const QString& reason) {
    writeError(u"velloria-cli: "_s + reason);
}

std::unique_ptr<platform::Clock> makeClock(const QString& now) {
    if (now.isEmpty())
        return std::make_unique<platform::SystemClock>();
    const QDateTime moment = QDateTime::fromString(now, u"yyyy/MM/dd HH:mm:ss"_s);
    if (!moment.isValid())
        throw UsageError(u"「%1」は日時ではありません (yyyy/mm/dd hh:nn:ss で指定してください)。"_s.arg(now));
    return std::make_unique<platform::FixedClock>(moment);
}

void prepareDesk(TerminalDesk& desk, const GlobalOptions& global) {
    desk.showsEvents = global.showsEvents;
    desk.answersYes = global.answersYes;
    if (global.answersFile.isEmpty())
        return;
    QJsonParseError error;
    const QByteArray file = platform::readAnything(global.answersFile);
    const QJsonDocument document = platform::parseJson(platform::withoutSignature(file).toByteArray(), &error);
    if (!document.isArray())
        throw UsageError(
            u"答えのファイルがJSONの配列ではありません: %1 (%2)"_s.arg(global.answersFile, error.errorString()));
    desk.answers = document.array();
}

/// Who logs in; nothing without a user file.
std::optional<shell::Login> findLogin(const GlobalOptions& global, const QString& home, platform::Desk& desk) {
    const bool hasUsers = shell::Users(home).exist();
    if (!hasUsers && global.user.isNull())
        return std::nullopt;
    if (!hasUsers)
        throw Refusal(u"velluser.ini がないので、--user は使えません。"_s);
    if (global.user.isNull())
        throw Refusal(u"velluser.ini があります。--user でユーザーを指定してください。"_s);
    std::optional<QString> password;
    if (qEnvironmentVariableIsSet("VELLORIA_PASSWORD"))
        password = platform::fromUtf8(qgetenv("VELLORIA_PASSWORD"));
    else if (const auto typed = desk.passwords(u"Velloria - Login"_s, platform::PasswordLines::One))
        password = typed->password;
    if (!password)
        throw Refusal(u"ログインを中止しました。"_s);
    // No name without a password passes the check of users, as it does at the login window.
    if (global.user.isEmpty() && password->isEmpty())
        throw Refusal(u"ユーザー名とパスワードが空です。--user でユーザーを指定してください。"_s);
    return shell::Login{global.user, *password};
}

/// A user file whose last user was deleted.
bool namesNobody(const shell::Users& users) {
    return users.exist() && !users.hasAny();
}

void start(Invocation& invocation, Start needed) {
    const QString home = shell::findHome(invocation.global.home, QCoreApplication::applicationDirPath());
    if (needed == Start::FirstUser && invocation.global.user.isNull() && namesNobody(shell::Users(home))) {
        invocation.session.MyPath = home;
        return;
    }
    const std::optional<shell::Login> login = findLogin(invocation.global, home, invocation.desk);
    shell::Startup startup(invocation);
    const bool isUserAlone = needed == Start::User || needed == Start::FirstUser;
    const shell::StartResult result = isUserAlone ? startup.enter(home, login) : startup.run(home, login);
    if (result == shell::StartResult::Ended)
        throw Refusal(startup.notice() + u"起動を中止しました。"_s);
    if (!startup.notice().isEmpty())
        reportReason(startup.notice());
    if (!invocation.global.day.isEmpty())
        invocation.session.EnterDay = invocation.global.day;
}

int runCommand(const CommandLine& line, TerminalDesk& desk) {
    if (line.wantsVersion) {
        writeLine(u"velloria-cli "_s + core::kProgramVersion.text());
        return kDone;
    }
    if (line.wantsHelp) {
        writeOutput(helpText(line.helpTopic).toUtf8());
        return kDone;
    }
    const std::unique_ptr<platform::Clock> clock = makeClock(line.global.now);
    prepareDesk(desk, line.global);
    core::Session session;
    Invocation invocation{{session, *clock, desk}, line.global, line.arguments, line.options};
    if (line.command->check)
        line.command->check(invocation);
    const Start needed = line.command->start;
    if (needed != Start::None && (needed != Start::UnlessArgument || line.arguments.isEmpty()))
        start(invocation, needed);
    line.command->run(invocation);
    return kDone;
}

/// A word of other bytes would name another file than the one that is meant.
QStringList textOf(const std::vector<QByteArray>& words) {
    QStringList text;
    for (const QByteArray& word : words) {
        if (!word.isValidUtf8())
            throw UsageError(u"%1番目の引数がUTF-8ではありません。"_s.arg(text.size() + 1));
        text += platform::fromUtf8(word);
    }
    return text;
}

int run(const std::vector<QByteArray>& words) {
    TerminalDesk desk;
    const auto ended = [&](int code, const QString& reason) {
        desk.endProgress();
        reportReason(reason);
        return code;
    };
    try {
        return runCommand(parseCommandLine(textOf(words)), desk);
    } catch (const platform::Failure& failure) {
        desk.failure(failure);
        return kFailed;
    } catch (const Refusal& refusal) {
        return ended(kFailed, refusal.reason());
    } catch (const UsageError& error) {
        return ended(kWrongUsage, error.reason());
    } catch (const std::bad_alloc&) {
        return ended(kFailed,
                     u"メモリが足りないので中止しました。ほかのプログラムを終了してから、もう一度実行してください。"_s);
    } catch (const std::exception& error) {
        return ended(kFailed, u"処理を続けられません。"_s + QString::fromLocal8Bit(error.what()));
    } catch (...) { // a foreign library's
        return ended(kFailed, u"処理を続けられません。"_s);
    }
}

} // namespace
} // namespace velloria::cli

int main(int argc, char** argv) {
    velloria::cli::occupyClosedStreams();
    // Texts are UTF-8 whatever the locale; Qt would complain about another one on standard error.
    std::setlocale(LC_ALL, "");
    if (std::string_view(nl_langinfo(CODESET)) != "UTF-8")
        setenv("LC_ALL", "C.UTF-8", 1);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    const QCoreApplication application(argc, argv);
    return velloria::cli::run({argv + 1, argv + argc}); // the application drops a U+FEFF in front of a word
}
