// A diary of another program, read whole before anything of it is written.
#pragma once

#include "store/entry.h"

#include <QMap>
#include <QStringList>

#include <functional>
#include <span>
#include <vector>

namespace velloria::exchange {

/// A picture that lies beside a foreign diary and belongs to an entry.
struct ForeignPicture {
    QString file; ///< full path
    /// What stands for its address in the entry's texts: a word that is found nowhere else in them. The import puts the
    /// address of the registered file in its place.
    QString placeholder;
};

/// An entry as it is to be added: `number` and `importMark` are the import's to give. Texts are HTML with CR LF
/// between lines, the time of writing is local. Days are "yyyy/mm/dd" of the calendar.
struct ForeignEntry {
    store::Entry entry;
    std::vector<ForeignPicture> pictures = {};
};

/// What a reader could not carry or not read: how often, by what it is ("タグ").
class Losses {
public:
    void count(const QString& what, qsizetype times = 1) { m_counts[what] += times; }
    bool isEmpty() const { return m_counts.isEmpty(); }
    /// "持ち込めないもの: タグ 3件、画像 1件", "" when there is nothing.
    QString text() const;

private:
    QMap<QString, qsizetype> m_counts;
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
};

/// All of them, in the order in which a choice shows them.
std::span<const ForeignFormat> foreignFormats();

} // namespace velloria::exchange
