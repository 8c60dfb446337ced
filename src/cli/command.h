// A command of the command line tool, and what it gets to work with.
//
// A new one is a row of its file in commands/ and an item of docs/velloria-cli.1, in the same order; then
// `scripts/make-completions` writes completions/ anew. One that writes into a diary's folders has a row in
// tests/trials/writing_commands.py too, or, when it changes the diary as a file, a case in
// tests/trials/test_whole_diary.py.
#pragma once

#include "core/run.h"
#include "store/diary_store.h"

#include <QHash>
#include <QJsonValue>
#include <QStringList>

#include <memory>
#include <stdexcept>
#include <vector>

namespace velloria::cli {

/// Wrong usage: exit code 2 and one line.
class UsageError : public std::exception {
public:
    explicit UsageError(QString reason)
        : m_reason(std::move(reason)) {}
    const QString& reason() const { return m_reason; }

private:
    QString m_reason;
};

/// A refusal that is no failure of the machine: exit code 1 and one line.
class Refusal : public UsageError {
    using UsageError::UsageError;
};

/// Options that stand in front of every command.
struct GlobalOptions {
    QString home;
    QString user;
    QString now;
    QString day;
    QString answersFile;
    bool showsEvents = false;
    bool answersYes = false;
    bool isJson = false;
};

/// One run of a command.
struct Invocation : core::Run {
    GlobalOptions global;
    QStringList arguments;
    QHash<QString, QStringList> options; ///< values by name ("--month"); a flag has one empty value

    bool has(const QString& option) const { return options.contains(option); }
    QString option(const QString& name) const { return options.value(name).value(0); }
    QString argument(qsizetype index) const { return arguments.value(index); }
    store::DiaryStore store() const { return store::DiaryStore(*this); }

    /// Prints a result: `json`, an object or an array, with --json, else tab-separated lines. Tabs, line ends and
    /// backslashes within a field are written as \t, \r, \n and \\; on a terminal other control characters as \uXXXX.
    void print(const QJsonValue& json, const std::vector<QStringList>& rows) const;
    /// The same for one text a row.
    void printList(const QStringList& texts) const;
};

/// Whether the command makes the start of the desktop first; of it, User is no more than who it is and where their
/// files lie, for a diary that can't be opened. FirstUser is the same, and no more than the program's folder where the
/// user file names nobody who could log in.
enum class Start { Needed, User, FirstUser, None, UnlessArgument };

struct OptionSpec {
    QString name;  ///< "--month"
    QString value; ///< placeholder, "" for a flag; "yyyy/mm" takes months alone, "yyyy/mm/dd" days
    bool isNeeded = false;
};

struct Command {
    QString name;      ///< "entry put"
    QString arguments; ///< as the help shows them; DAY takes days alone, NUMBER numbers
    int fewest = 0;    ///< arguments at least
    int most = 0;      ///< arguments at most
    std::vector<OptionSpec> options;
    QString help;
    Start start = Start::Needed;
    void (*run)(Invocation&) = nullptr;
    void (*check)(const Invocation&) = nullptr; ///< throws UsageError before anything is started; looks at DAY itself
};

/// All commands, in the order of the help.
const std::vector<Command>& allCommands();

// Each file of commands/ gives its own.
std::vector<Command> startCommands();
std::vector<Command> entryCommands();
std::vector<Command> genreCommands();
std::vector<Command> siteCommands();
std::vector<Command> exportCommands();
std::vector<Command> importCommands();
std::vector<Command> pluginExchangeCommands();
std::vector<Command> exchangeCommands();
std::vector<Command> convertCommands();
std::vector<Command> iniCommands();
std::vector<Command> fileCommands();
std::vector<Command> logCommands();
std::vector<Command> uploadCommands();
std::vector<Command> pingCommands();
std::vector<Command> updateCommands();
std::vector<Command> databaseCommands();
std::vector<Command> backupCommands();
std::vector<Command> customizeCommands();
std::vector<Command> userCommands();
std::vector<Command> blogCommands();

/// An entry number, 1 to 32767.
int numberArgument(const QString& text);
/// The content of the file, of standard input for "" or "-". Throws platform::Failure when it can't be read.
QByteArray readArgumentFile(const QString& file);
/// The same as text. Throws platform::Failure when it is no UTF-8.
QString readArgumentText(const QString& file);
/// The name under which a message speaks of such a file.
QString shownFile(const QString& file);
/// Throws platform::Failure when the file is no settings file but something binary, a device, or a link that leads
/// nowhere, which would read as one without keys.
void refuseUnreadableSettings(const QString& file);

} // namespace velloria::cli
