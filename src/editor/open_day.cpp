#include "editor/open_day.h"

#include "platform/failure.h"
#include "store/genre_list.h"
#include "store/saving.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

constexpr int kDraftDelayMs = 2000;

/// The number of an entry within the rows of its day; nothing when there is none.
std::optional<store::Entry> rowOf(const std::vector<store::Entry>& rows, int number) {
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const store::Entry& row) { return row.number == number; });
    return found == rows.end() ? std::nullopt : std::optional(*found);
}

} // namespace

OpenDay::OpenDay(const core::Run& run)
    : m_run(run)
    , m_edited(run)
    , m_drafts(run) {
    m_draftTimer.setSingleShot(true);
    m_draftTimer.setInterval(kDraftDelayMs);
    connect(&m_draftTimer, &QTimer::timeout, this, &OpenDay::keepDraft);
}

void OpenDay::attach(EntryView& view) {
    m_view = &view;
    m_found = m_drafts.read();
}

void OpenDay::detach() {
    m_view = nullptr;
    m_draftTimer.stop();
    m_hasWrittenDraft = false;
    m_isOpen = false;
    m_isDirty = false;
    m_number = m_count = 0;
    m_edited.show(0, std::nullopt);
}

/// Asks what is to become of unsaved changes before another entry takes their place, and saves them on Yes. Returns
/// whether they are to be dropped.
bool OpenDay::settleChanges() {
    m_view->commitComposition();
    if (!m_isDirty)
        return false;
    const bool isYes = m_run.desk.ask(u"更新されていますが、保存されていません。\r\n保存しますか？"_s);
    if (isYes && save() == SaveOutcome::Saved)
        return false;
    if (isYes && m_isOpen && m_edited.keepDropped(fields(m_edited.number())))
        m_run.desk.notice(u"保存されなかった内容は控え「rescue.jsonl」に残しました。"_s);
    m_isDirty = false;
    return true;
}

/// Changes that were to be dropped are there still when what takes their place can't be read.
template <typename Read>
auto OpenDay::readOrKeep(bool isDropped, Read read) {
    const platform::Hourglass hourglass(m_run.desk);
    try {
        return read();
    } catch (...) {
        m_isDirty = m_isDirty || isDropped;
        throw;
    }
}

void OpenDay::openDay(const QString& day) {
    open(day, std::nullopt);
}

void OpenDay::openEntry(const QString& day, int number) {
    if (m_isOpen && day == m_run.session.EnterDay && number == m_number)
        Q_EMIT entryWanted();
    else
        open(day, number);
}

void OpenDay::open(const QString& day, std::optional<int> number) {
    const bool isDropped = settleChanges();
    const store::DayPicture picture = readOrKeep(isDropped, [&] { return diary().pictureOf(day); });
    m_run.session.EnterDay = day;
    Q_EMIT dayOpened(day, picture.daysAround);
    const int count = int(picture.entries.size());
    const std::optional<store::Entry> row = number ? rowOf(picture.entries, *number) : std::nullopt;
    if (count == 0)
        show(1, 1, std::nullopt, picture.isInOtherYears);
    else
        show(count, row ? *number : count, row ? row : picture.entries.front(), picture.isInOtherYears);
    if (number && !row)
        m_run.desk.notice(u"%1の%2番目の日記は見つかりません。"_s.arg(day).arg(*number));
}

void OpenDay::openNewEntry() {
    if (m_run.session.EnterDay.isEmpty()) {
        m_run.desk.status(u"日付が選択されていないため日記の作成を中止しました。"_s);
        return;
    }
    const bool isDropped = settleChanges();
    const store::DayPicture picture = readOrKeep(isDropped, [&] { return diary().pictureOf(m_run.session.EnterDay); });
    const int next = int(picture.entries.size()) + 1;
    show(next, next, std::nullopt, picture.isInOtherYears);
}

void OpenDay::openNumber(int number) {
    std::optional<store::Entry> row;
    try {
        m_number = number; // a Yes saves there
        const bool isDropped = settleChanges();
        row = readOrKeep(isDropped, [&] { return diary().LoadEntry(m_run.session.EnterDay, m_number); });
    } catch (...) {
        m_number = m_edited.number(); // what is shown is not the entry that was picked, or was saved as that
        Q_EMIT numbersChanged();
        throw;
    }
    show(m_count, m_number, row, m_isInOtherYears);
}

void OpenDay::show(int count, int number, const std::optional<store::Entry>& row, bool isInOtherYears) {
    show(count, number, row, isInOtherYears, row);
}

/// `text` is what is shown of it.
void OpenDay::show(int count, int number, const std::optional<store::Entry>& row, bool isInOtherYears,
                   const std::optional<store::Entry>& text) {
    m_isOpen = true;
    m_count = count;
    m_number = number;
    m_isInOtherYears = isInOtherYears;
    m_edited.show(number, row);
    Q_EMIT entryShown(text);
    becomeClean();
}

void OpenDay::daysChanged(const QStringList& days) {
    Q_EMIT diaryChanged();
    const QString day = m_run.session.EnterDay;
    if (!m_isOpen || !days.contains(day))
        return;
    const store::DayPicture picture = diary().pictureOf(day);
    const int count = int(picture.entries.size());
    if (m_isDirty) {
        m_number = m_edited.follow(picture.entries);
        m_count = std::max(count, m_number);
        Q_EMIT numbersChanged();
        m_run.desk.notice(day + u"の日記は編集中のため、変更された内容を表示していません。"_s);
        return;
    }
    const int number = std::clamp(m_number, 1, std::max(count, 1));
    show(std::max(count, 1), number, rowOf(picture.entries, number), picture.isInOtherYears);
}

bool OpenDay::replaceDiary(const std::function<bool()>& replace) {
    const bool isDropped = m_view && settleChanges();
    bool isReplaced = false;
    try {
        isReplaced = replace();
    } catch (...) {
        m_isDirty = m_isDirty || isDropped;
        throw;
    }
    if (!isReplaced) {
        m_isDirty = m_isDirty || isDropped;
        return false;
    }
    if (isDropped && m_edited.keepDropped(fields(m_edited.number())))
        m_run.desk.notice(u"保存されなかった内容は控え「rescue.jsonl」に残しました。"_s);
    Q_EMIT diaryChanged();
    store::addGenres(m_run, diary().ListGenres());
    readGenres();
    if (m_isOpen)
        openDay(m_run.session.EnterDay);
    return true;
}

std::optional<store::Entry> OpenDay::typed() {
    if (!m_isOpen)
        return std::nullopt;
    m_view->commitComposition();
    return fields(m_number);
}

store::Entry OpenDay::fields(int number) const {
    store::Entry entry = m_view->fields();
    entry.day = m_run.session.EnterDay;
    entry.number = number;
    // "" is what an empty box holds; a null text would be stored as a missing value.
    for (QString* text : {&entry.title, &entry.contents, &entry.extend, &entry.excerpt, &entry.weather, &entry.genre}) {
        if (text->isNull())
            *text = u""_s;
    }
    return entry;
}

void OpenDay::edited() {
    become(true);
    undone();
}

/// Not put off by the next change: however long somebody types without a rest, no more than this is at risk.
void OpenDay::undone() {
    if (m_isDirty && !m_draftTimer.isActive())
        m_draftTimer.start();
}

void OpenDay::become(bool isDirty) {
    m_isDirty = isDirty;
    Q_EMIT dirtyChanged(isDirty);
}

void OpenDay::becomeClean() {
    become(false);
    dropDraft();
}

SaveOutcome OpenDay::save() {
    m_view->commitComposition();
    const store::Entry entry = fields(m_number);
    if (entry.title.isEmpty()) {
        m_run.desk.message(platform::MessageKind::Critical, u"タイトルを入力してください！"_s, u"日記作成"_s);
        return SaveOutcome::Refused;
    }
    const SaveResult result = m_edited.save(entry);
    store::tellSaved(m_run.desk, entry.day);
    if (result.isOlderKept)
        m_run.desk.notice(entry.day + u"の日記を保存しました。上書きした日記は控え「rescue.jsonl」に残しました。"_s);
    if (result.isMoved)
        tellMoved(result.number);
    becomeClean();
    settleFoundDrafts(entry);
    Q_EMIT diaryChanged();
    addGenre(entry.genre);
    return SaveOutcome::Saved;
}

void OpenDay::tellMoved(int number) {
    m_count = m_number = number;
    Q_EMIT numbersChanged();
    m_run.desk.notice(
        u"%1の日記はほかのプログラムが変更していたため、%2番目の日記として保存しました。"_s.arg(m_run.session.EnterDay)
            .arg(number));
}

void OpenDay::addGenre(const QString& genre) {
    if (m_genres.contains(genre))
        return;
    store::runAfterSave([&] {
        store::addGenres(m_run, {genre});
        readGenres();
    });
}

void OpenDay::readGenres() {
    m_genres = store::readGenres(m_run);
    Q_EMIT genresChanged();
}

void OpenDay::MakeGenretxt() {
    store::MakeGenretxt(m_run);
    readGenres();
}

void OpenDay::deleteEntry() {
    m_view->commitComposition();
    if (m_isDirty)
        m_edited.keepDropped(fields(m_edited.number()));
    m_edited.remove(m_run.session.EnterDay, m_number);
    close();
    dropDraft();
    Q_EMIT diaryChanged();
}

void OpenDay::close() {
    m_isOpen = false;
    m_number = m_count = 0;
    m_edited.show(0, std::nullopt);
    Q_EMIT closed();
}

bool OpenDay::mayClose() {
    m_view->commitComposition();
    if (!m_isDirty)
        return true;
    if (m_run.desk.ask(u"変更されています。保存しますか？"_s))
        return save() == SaveOutcome::Saved;
    becomeClean();
    return true;
}

bool OpenDay::canInsert() {
    if (!m_isOpen)
        m_run.desk.notice(u"日記が開かれていないため、挿入しませんでした。"_s);
    return m_isOpen;
}

bool OpenDay::insertIntoContents(const std::function<QString(const QString&)>& replacement) {
    if (!canInsert())
        return false;
    m_view->replaceSelection(replacement);
    return true;
}

bool OpenDay::insertAtCaretOfContents(const QString& text) {
    if (!canInsert())
        return false;
    m_view->insertAtCaret(text);
    return true;
}

void OpenDay::keepDraft() {
    m_draftTimer.stop();
    if (!m_isDirty || !m_isOpen)
        return;
    std::vector<store::Entry> drafts = m_found;
    drafts.push_back(fields(m_edited.number()));
    drafts.back().publishTime = m_edited.publishTime();
    writeDrafts(drafts);
    m_hasWrittenDraft = true;
}

void OpenDay::dropDraft() {
    m_draftTimer.stop();
    if (std::exchange(m_hasWrittenDraft, false))
        writeDrafts(m_found);
}

/// A draft is written on the side: a box for each one that fails would keep people from typing.
void OpenDay::writeDrafts(const std::vector<store::Entry>& drafts) {
    try {
        m_drafts.write(drafts);
    } catch (const platform::Failure& failure) {
        m_run.desk.status(u"下書きを保存できません。"_s + failure.reason());
    }
}

/// A save of the entry that an earlier draft belongs to takes the draft's place.
void OpenDay::settleFoundDrafts(const store::Entry& saved) {
    const auto isOfSaved = [&](const store::Entry& draft) {
        return draft.day == saved.day && draft.number == saved.number;
    };
    bool isChanged = false;
    for (auto draft = m_found.begin(); draft != m_found.end();) {
        if (!isOfSaved(*draft)) {
            ++draft;
            continue;
        }
        m_edited.keepDropped(*draft);
        draft = m_found.erase(draft);
        isChanged = true;
    }
    if (isChanged)
        writeDrafts(m_found);
}

void OpenDay::restoreDraft() {
    if (m_found.empty())
        return;
    const store::Entry draft = m_found.back(); // a save of its entry, asked for now, takes it from the list
    const bool isDropped = settleChanges();
    const store::DayPicture picture = readOrKeep(isDropped, [&] { return diary().pictureOf(draft.day); });
    m_run.session.EnterDay = draft.day;
    Q_EMIT dayOpened(draft.day, picture.daysAround);

    const int count = int(picture.entries.size());
    const int number = std::min(draft.number, count + 1);
    // The row as the draft knew it: what has become of it since is told apart at the save.
    std::optional<store::Entry> row = draft.publishTime.isNull() ? std::nullopt : rowOf(picture.entries, number);
    if (row)
        row->publishTime = draft.publishTime;
    m_hasWrittenDraft = false; // the file keeps the draft until it is written anew below
    show(std::max(count, number), number, row, picture.isInOtherYears, draft);
    become(true);
    std::erase_if(m_found,
                  [&](const store::Entry& found) { return found.day == draft.day && found.number == draft.number; });
    keepDraft();
    m_run.desk.status(draft.day + u"の下書きを復元しました。まだ保存されていません。"_s);
}

} // namespace velloria::editor
