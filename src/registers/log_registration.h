// The register of log pages: which page stands for which month in the site's list of logs.
#pragma once

#include "core/run.h"
#include "platform/outcome.h"
#include "registers/log_register.h"

#include <optional>
#include <vector>

namespace velloria::registers {

struct RegisterSource;

/// How a log reads in a list: "2004/03 : x.htm".
QString shownLog(const store::LogRow& row);

/// What is wrong with a typed year; nothing when it passes. Three digits pass.
std::optional<QString> yearProblem(const QString& year);

/// The box that says why nothing is registered.
void tellLogProblem(platform::Desk& desk, const QString& problem);

/// The commands of the register. A page lies in "DiaryLog" of the data folder and, when the site has a folder, in that
/// of the site. The machine's refusals are thrown as platform::Failure, which says how far a command had come: a page
/// may lie in one of the two folders though its row could not be added.
class LogRegistration {
public:
    explicit LogRegistration(const core::Run& run);

    /// Registers a page for a month and keeps its folder as the one where the file dialog begins. A name that is
    /// registered already, for whatever month, is the same log: its page is replaced when the user says so, its row
    /// stays. Refused when they say no, when the page is the registered one itself, and when path, year or month is
    /// empty, in which case nothing at all happens.
    platform::Outcome ResistLogFile(const QString& path, const QString& year, const QString& month);

    /// Removes a row when the user says so, and its pages when they say that twice more. Refused when they keep the
    /// row. Pages that can't be removed are thrown with the row already gone.
    platform::Outcome deleteLog(const store::LogRow& row);

    /// All rows, the newest month first.
    std::vector<store::LogRow> rows() const;

private:
    static QString logFolder(const QString& root);
    static QString logPath(const QString& root, const QString& name);
    QStringList roots() const;
    bool add(const RegisterSource& source, const QString& month);
    void addNew(const RegisterSource& source, const QString& month);
    using PathOf = QString (*)(const QString& root, const QString& name);
    static void copyTo(const QStringList& targets, const RegisterSource& source, QStringList& copied, PathOf pathOf);
    platform::Outcome replace(const RegisterSource& source);
    void removePages(const QString& name);

    const core::Session& m_session;
    platform::Desk& m_desk;
    registers::LogRegister m_logs;
};

} // namespace velloria::registers
