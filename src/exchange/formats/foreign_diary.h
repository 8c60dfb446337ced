// A diary of another program, read whole before anything of it is written.
#pragma once

#include "store/entry.h"

#include <QMap>
#include <QStringList>

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace velloria::exchange {

/// A picture that lies beside a foreign diary and belongs to an entry.
struct ForeignPicture {
    QString file; ///< full path of a file that is there
    /// What stands for its address in the entry's texts. The import puts the address of the registered file there.
    QString placeholder;
    /// How the program itself wrote the address: it stays so when the file keeps its name. Else null.
    QString address = {};
};

/// An entry as it is to be added: `number` and `importMark` are the import's to give, and what is left empty is too:
/// the weather "-", the genre "一般", a title that says there is none, and the first second of the day. Texts are
/// HTML with any line ends, the time of writing is local. Days are "yyyy/mm/dd" of the calendar.
struct ForeignEntry {
    store::Entry entry;
    std::vector<ForeignPicture> pictures = {};
    bool isOwn = false; ///< the program itself wrote it: it is taken to the letter
};

/// The day key of a date. Nothing when the calendar has no such date, or the year is none of 0100 to 9999.
std::optional<QString> calendarDay(int year, int month, int day);

/// The placeholder of the entry's next picture, a word that is found nowhere else in its texts.
QString picturePlaceholder(const ForeignEntry& entry);

/// `text` with the addresses of the pictures, which are in their order, in the place of their placeholders.
QString withoutPlaceholders(const QString& text, const QStringList& addresses);

/// What a reader could not carry or not read, and what else a person should know before they say Yes.
class Losses {
public:
    /// How often, by what it is ("タグ").
    void count(const QString& what, qsizetype times = 1) { m_counts[what].times += times; }
    /// One more of them, which has a name of its own ("2024-02-31"); the first few are told.
    void countNamed(const QString& what, const QString& name);
    /// Characters of which a text has one half: nothing can hold them.
    void countHalves(qsizetype halves);
    /// How many files are in this encoding; UTF-8 goes without saying.
    void countEncoding(const QString& encoding);
    bool isEmpty() const { return m_counts.isEmpty(); }
    /// "持ち込めないもの: タグ 3件、画像 1件 (a.png)" and a line for the encodings, parted by CR LF; "" when there is
    /// nothing to say.
    QString text() const;

private:
    struct Count {
        qsizetype times = 0;
        QStringList names = {};
    };

    QMap<QString, Count> m_counts;
    QMap<QString, qsizetype> m_encodings;
};

struct ForeignDiary {
    std::vector<ForeignEntry> entries; ///< in any order between days; in their order within a day
    Losses losses;
};

/// Reads a file or folder of a format; its name is a full path. Throws platform::Failure for what can't be read or is
/// not of the format, and then names the file.
using ForeignReader = std::function<ForeignDiary(const QString& path)>;

/// A format that diaries come in.
struct ForeignFormat {
    enum class Place { File, Folder, Either };

    QString name;    ///< as the command line says it: "rednotebook"
    QString program; ///< as the import mark and the choice of formats say it: "RedNotebook"
    Place place = Place::File;
    QString filter; ///< of the dialog that asks for a file, pairs of text and pattern, parted by "|"
    ForeignReader read;
    bool hidesFuture = false; ///< its sites show an entry of a date to come from that date on
};

/// All of them, in the order in which a choice shows them.
std::span<const ForeignFormat> foreignFormats();

} // namespace velloria::exchange
