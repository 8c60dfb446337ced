// The export: a period of the diary as text or HTML files, each entry a copy of a format file with its marks replaced.
#pragma once

#include "core/run.h"
#include "platform/file_write.h"
#include "store/diary_store.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace velloria::convert {
class clsHTML2TEXT;
}

namespace velloria::exchange {

enum class ExportFormat { Text, Html, User };
enum class ExportUnit { OneFile, Divided };
enum class ExportName { Day, Title };
enum class ExportContents { AsTheyAre, Converted };

/// What is exported and how. Format and contents are independent of each other.
struct ExportSettings {
    ExportFormat format = ExportFormat::Text;
    QString userFormat; ///< file name in the folder "ExportFormat", for ExportFormat::User
    ExportUnit unit = ExportUnit::OneFile;
    ExportName name = ExportName::Day; ///< of divided files
    ExportContents contents = ExportContents::Converted;
    store::Period period; ///< a month as "yyyy/mm/"
    store::SortDirection direction = store::SortDirection::Ascending;
};

/// The month of two boxes as a period: a month of one digit gets its zero, what is no number stands as it is.
store::Period exportMonth(const QString& year, const QString& month);

/// The format files that people put beside the two built-in ones.
QStringList userFormats(const core::Session& session);

enum class ExportOutcome { Done, Refused, Cancelled };

/// What a person must know after an export.
struct ExportCounts {
    int entries = 0;
    int replaced = 0;    ///< files that were there before
    int overwritten = 0; ///< files that more than one entry took
    int lost = 0;        ///< entries that another one of the same name replaced
    int references = 0;  ///< characters that the code page lacks
    bool isPeriodBackwards = false;

    /// One line about them.
    QString text() const;
    /// Whether something is not as a person would expect.
    bool isUnusual() const { return replaced > 0 || lost > 0 || references > 0 || isPeriodBackwards; }
};

/// One object is one export, in the thread of the desk: `run` is all of it, or its steps one after the other:
///
///     clsExport work(run, settings);
///     work.GetFilePath(isChosen); // or takePath
///     if (isChosen)
///         work.Execute(isDone);
///
/// A cancel and a period without entries are no failure.
class clsExport {
public:
    clsExport(const core::Run& run, ExportSettings settings);

    /// The command as a whole: asks where to write unless `chosen` answers that already, writes, says so. Refused when
    /// no user format is named or the converter's settings are missing, which was told. Throws platform::Failure; of
    /// several files those that were written by then stay.
    ExportOutcome run(const std::optional<QString>& chosen = std::nullopt);

    /// Asks for the output path. False after a cancel.
    void GetFilePath(bool& isChosen);

    /// The same for an answer that is known; "" is a cancel. A file without the ending of a text or HTML file gets one.
    void takePath(QString chosen);

    /// Writes to that path. False, with nothing written, when the converter's settings are missing.
    void Execute(bool& isDone);

    /// The file, or the folder of divided files.
    const QString& path() const { return m_path; }

    /// Of the last Execute.
    const ExportCounts& counts() const { return m_counts; }

private:
    QString formatName() const;
    QString ending() const;
    QString proposedName() const;
    bool asksForFolder() const;
    QString readFormat();
    void writeOneFile(const QString& format, const convert::clsHTML2TEXT& converter);
    void writeDividedFiles(const QString& format, const convert::clsHTML2TEXT& converter);
    void WriteEntry(const QString& format, const platform::WriteBytes& file, const convert::clsHTML2TEXT& converter,
                    store::Entry& entry);
    QString fileNameOf(const store::Entry& entry) const;
    void forEachEntry(const std::function<void(store::Entry&)>& write);

    const core::Session& m_session;
    store::DiaryStore m_store;
    platform::Desk& m_desk;
    ExportSettings m_settings;
    QString m_path;
    QString m_formatFile;
    ExportCounts m_counts;
};

} // namespace velloria::exchange
