#include "store/saving.h"

#include "platform/failure.h"
#include "store/entry_line.h"
#include "store/genre_list.h"
#include "store/rescue_file.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

/// Each genre once, in order.
QStringList genresOf(const std::vector<EntryLine>& lines) {
    QStringList genres;
    QSet<QString> known;
    for (const EntryLine& line : lines) {
        if (known.contains(line.entry.genre))
            continue;
        known.insert(line.entry.genre);
        genres += line.entry.genre;
    }
    return genres;
}

} // namespace

std::vector<EntryKey> saveLines(const core::Run& run, std::vector<EntryLine> lines, PublishTime publishTime) {
    const QStringList genres = genresOf(lines);
    RescueFile rescue(run);
    const std::vector<EntryKey> keys = rescue.guard([&] {
        return DiaryStore(run).saveLines(std::move(lines), publishTime,
                                         [&](const std::vector<Entry>& rows) { rescue.keep(rows, u"上書き"_s); });
    });
    for (const EntryKey& key : keys)
        tellSaved(run.desk, key.day);
    runAfterSave([&] { addGenres(run, genres); });
    return keys;
}

void tellSaved(platform::Desk& desk, const QString& day) {
    desk.status(day + u"の日記を保存しました。"_s);
}

void runAfterSave(const std::function<void()>& action) {
    try {
        action();
    } catch (platform::Failure& failure) {
        failure.addStage(u"日記は保存しました"_s);
        throw;
    }
}

void deleteEntry(const core::Run& run, const QString& day, int number) {
    RescueFile rescue(run);
    rescue.guard([&] {
        DiaryStore(run).DeleteEntry(day, number, [&](const std::vector<Entry>& rows) { rescue.keep(rows, u"削除"_s); });
    });
}

} // namespace velloria::store
