// Diary entries out of the clipboard.
#pragma once

#include "core/run.h"
#include "platform/outcome.h"
#include "store/entry_import.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace velloria::exchange {

class ElementReader;

/// Whether an imported text gets paragraph tags.
enum class ParagraphTags { None, Added };

/// As the user's settings say it for imports.
ParagraphTags importedParagraphs(const core::Session& session);

/// One object is one command, in the thread of the desk, which is asked on the way. What a clipboard holds is a text
/// with any line ends, or nothing when it has no text format. A No and a text without entries are no failure. Throws
/// platform::Failure; what was imported before stays.
///
///     ClipboardImport clipboard(run);
///     clipboard.ImportFormattedClipboard(text, importedParagraphs(run.session));
///     openDay.daysChanged(clipboard.writtenDays()); // also when it throws
class ClipboardImport {
public:
    explicit ClipboardImport(const core::Run& run);

    /// Any number of entries, each with its day, title and contents between full-width tags. Asks about days that have
    /// an entry. False when there was nothing to read, which is told.
    bool ImportFormattedClipboard(const std::optional<QString>& clipboard, ParagraphTags tags);

    /// The whole text as one entry, whose day and title are asked. False after any refusal.
    bool ImportPlainClipboard(const std::optional<QString>& clipboard, ParagraphTags tags);

    /// The days that were written, in order, also after a failure.
    QStringList writtenDays() const;

private:
    QStringList askForDay();
    bool mayOverwrite(const QString& day);
    void importEntry(ElementReader& reader, ParagraphTags tags);
    void importUnderOtherDay(ElementReader& reader, ParagraphTags tags);
    void add(const store::NewEntry& entry);
    void overwrite(const store::NewEntry& entry);
    [[noreturn]] void settleBefore(const platform::Failure& failure);
    void tellEnd();
    void refuse(const QString& text);

    core::Run m_run;
    store::EntryImport m_import;
    QStringList m_days; ///< in the order in which they were given to `m_import`
};

enum class ClipboardForm { Formatted, Plain };

/// What follows an import.
struct ImportCalls {
    std::function<void()> preview;                        ///< shows what was imported
    std::function<void(const QStringList& days)> written; ///< at the end, also of a failure that left some behind
};

/// The command: imports as the settings say, makes the preview, and tells at the end which days were written.
/// Refused when there was nothing to read, which is told. Throws platform::Failure.
platform::Outcome importCommand(const core::Run& run, ClipboardForm form, const std::optional<QString>& clipboard,
                                const ImportCalls& calls);

/// The clipboard's text with CR LF between its lines, as paragraphs if asked; "", after a message, when there is none.
QString GetClipboardText(const core::Run& run, const std::optional<QString>& clipboard, ParagraphTags tags);

} // namespace velloria::exchange
