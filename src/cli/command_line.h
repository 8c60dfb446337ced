// The words of the command line.
#pragma once

#include "cli/command.h"

namespace velloria::cli {

/// What the words say.
struct CommandLine {
    GlobalOptions global;
    const Command* command = nullptr; ///< nullptr when only help or the version is asked for
    QString helpTopic;                ///< beginning of the commands that the help is to show
    bool wantsHelp = false;
    bool wantsVersion = false;
    QStringList arguments;
    QHash<QString, QStringList> options;
};

/// Throws UsageError. Global options may also stand behind the command; "--" ends the options.
CommandLine parseCommandLine(const QStringList& words);

/// The help on all commands, on a group ("entry") or on one ("entry put").
QString helpText(const QString& topic);

} // namespace velloria::cli
