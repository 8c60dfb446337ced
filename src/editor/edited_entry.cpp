#include "editor/edited_entry.h"

#include "store/diary_store.h"
#include "store/rescue_file.h"
#include "store/saving.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

/// Thrown out of the transaction of a save, which is thereby taken back: the number was free when the entry was begun.
struct NumberTaken {};

/// The numbers in the editor count the entries of a day. In one with gaps, which a broken deletion of an old program
/// left, they mean the rows in order.
void closeGaps(const store::DiaryStore& diary, const QString& day) {
    diary.repairDay(day);
}

bool isSameText(const store::Entry& left, const store::Entry& right) {
    return left.title == right.title && left.contents == right.contents && left.extend == right.extend &&
           left.excerpt == right.excerpt && left.weather == right.weather && left.genre == right.genre &&
           left.isPrivate == right.isPrivate;
}

} // namespace

EditedEntry::EditedEntry(const core::Run& run)
    : m_run(run) {}

void EditedEntry::show(int number, const std::optional<store::Entry>& row) {
    m_number = number;
    m_row = row;
}

int EditedEntry::follow(const std::vector<store::Entry>& rows) {
    const auto find = [&](auto isShown) {
        return m_row ? std::find_if(rows.begin(), rows.end(),
                                    [&](const store::Entry& row) {
                                        return row.publishTime == m_row->publishTime &&
                                               row.importMark == m_row->importMark && isShown(row);
                                    })
                     : rows.end();
    };
    auto found = find([&](const store::Entry& row) { return isSameText(row, *m_row); });
    if (found == rows.end())
        found = find([&](const store::Entry& row) { return row.number == m_number; });
    if (found == rows.end())
        show(rows.empty() ? 1 : rows.front().number + 1, std::nullopt);
    else
        m_number = found->number; // the row as it was shown: a save keeps what has changed since
    return m_number;
}

QString EditedEntry::publishTime() const {
    if (!m_row)
        return {};
    return m_row->publishTime.isNull() ? u""_s : m_row->publishTime;
}

/// Whether the row that the entry overwrites holds what nobody could bring back.
bool EditedEntry::mustKeep(const store::Entry& row, const store::Entry& entry) const {
    if (isSameText(row, entry))
        return false;
    // What the editor showed is what its user has changed on purpose.
    return entry.number != m_number || !m_row || row.publishTime != m_row->publishTime || !isSameText(row, *m_row);
}

SaveResult EditedEntry::save(const store::Entry& entry) {
    try {
        return write(entry);
    } catch (const NumberTaken&) {
        store::Entry next = entry;
        next.number = 0;
        return write(next);
    }
}

SaveResult EditedEntry::write(const store::Entry& entry) {
    const store::DiaryStore diary(m_run);
    closeGaps(diary, entry.day);
    store::RescueFile rescue(m_run);
    SaveResult result;
    const auto overwritten = [&](const std::vector<store::Entry>& rows) {
        if (entry.number == m_number && !m_row)
            throw NumberTaken();
        if (!mustKeep(rows.front(), entry)) // one entry overwrites one row
            return;
        rescue.keep(rows, u"上書き"_s);
        result.isOlderKept = rescue.isOn();
    };
    store::Entry saved = entry;
    saved.publishTime = m_run.clock.now().toString(u"yyyy/MM/dd HH:mm:ss");
    saved.importMark = QString(); // that of the row stays
    saved.number = rescue.guard(
        [&] { return diary.saveEntries({saved}, store::PublishTime::AsGiven, overwritten).front().number; });
    result.number = saved.number;
    result.isMoved = saved.number != entry.number;
    show(saved.number, saved);
    return result;
}

void EditedEntry::remove(const QString& day, int number) {
    closeGaps(store::DiaryStore(m_run), day);
    store::deleteEntry(m_run, day, number);
    show(0, std::nullopt);
}

bool EditedEntry::keepDropped(const store::Entry& entry) {
    if (entry.title.isEmpty() && entry.contents.isEmpty() && entry.extend.isEmpty() && entry.excerpt.isEmpty())
        return false;
    store::RescueFile rescue(m_run);
    rescue.keep({entry}, u"未保存"_s);
    return rescue.isOn();
}

} // namespace velloria::editor
