// The register of files: pictures, style sheets and whatever else belongs to the site beside its pages.
#pragma once

#include "core/run.h"
#include "platform/outcome.h"
#include "registers/file_register.h"

#include <vector>

namespace velloria::registers {

struct RegisterSource;

/// How a registered file reads in a list: "2004/05/06 : 1 : x.gif".
QString shownFile(const store::FileRow& row);

/// How an entry reads in the choice of days: "2004/05/06 : 1", and "ALL" for all of them.
QString shownKey(const store::EntryKey& key);

/// The commands of the register. Each file lies once in "DiaryParts", however many entries it is registered for. The
/// machine's refusals are thrown as platform::Failure, which says how far a command had come: a file may have been
/// copied whose row could not be added.
class FileRegistration {
public:
    explicit FileRegistration(const core::Run& run);

    /// Registers a file for an entry, for a day of "ALL" and number 0 for the whole site, under its own name. A name
    /// that is new is copied; one that is known for another entry gets a row alone; one that is known for this very
    /// entry is copied again when the user says so, and Outcome::Refused is their No. An empty path does nothing.
    platform::Outcome ResistFile(const QString& path, const QString& day, qint16 number);
    /// The same under another name.
    platform::Outcome ResistFile2(const QString& path, const QString& name, const QString& day, qint16 number);

    /// Removes a row when the user says so, and with the last row of a name the file, when they say that as well.
    /// Refused when they keep the row. A file that can't be removed is thrown with the row already gone.
    platform::Outcome deleteFile(const store::FileRow& row);

    /// All rows in the order of the list.
    std::vector<store::FileRow> rows() const { return m_files.ListFiles(); }

private:
    QString partsFolder() const;
    QString partPath(const QString& name) const;
    bool add(const RegisterSource& source, store::FileRow row);
    void addNew(const RegisterSource& source, const store::FileRow& row);
    void addKnown(const RegisterSource& source, const store::FileRow& row, const std::vector<store::FileRow>& known);
    void addRow(const store::FileRow& row, bool isCopied);
    platform::Outcome replace(const RegisterSource& source, store::FileRow row);
    void removePart(const QString& name);

    const core::Session& m_session;
    platform::Desk& m_desk;
    registers::FileRegister m_files;
};

} // namespace velloria::registers
