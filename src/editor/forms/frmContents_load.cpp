// What the editor shows: a day, one of its entries, or nothing.
#include "desktop/text_pane.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "store/genre_list.h"
#include "ui_frmContents.h"

#include <QScopedValueRollback>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

constexpr int kWeatherItems = 6;

QString genreText(const desktop::Combo& box) {
    const QString text = box.currentText();
    return text.isNull() ? u""_s : text;
}

/// The number of an entry within the rows of its day; nothing when there is none.
std::optional<store::Entry> rowOf(const std::vector<store::Entry>& rows, int number) {
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const store::Entry& row) { return row.number == number; });
    return found == rows.end() ? std::nullopt : std::optional(*found);
}

} // namespace

void frmContents::Contents_Initialize() {
    const QScopedValueRollback loading(Loading, true);
    m_hasDay = false;
    m_edited.show(0, std::nullopt);
    setWindowTitle(u"日記作成"_s);
    fill({});
    ui->ComboNumber->clear();
    ui->ComboTag->setCurrentIndex(-1);
    ui->TabStrip1->setCurrentIndex(0);
    setFieldsEnabled(false);
    setOldDiary(false);
    setSavable(false);
    setInsertable(false);
}

void frmContents::Contents_Enable() {
    bool exists = false;
    OldDiaryChecker(m_context.session.EnterDay, exists);
    enable(exists);
}

void frmContents::enable(bool hasOldDiary) {
    const QScopedValueRollback loading(Loading, true);
    m_hasDay = true;
    setCaption();
    setFieldsEnabled(true);
    setOldDiary(hasOldDiary);
    setInsertable(true);
}

void frmContents::OldDiaryChecker(const QString& day, bool& exists) const {
    exists = diary().SameDayInOtherYears(day) > 0;
}

void frmContents::AddComboNumber(int count) {
    ui->ComboNumber->clear();
    for (int number = 1; number <= count; ++number)
        ui->ComboNumber->addItem(QString::number(number));
}

void frmContents::MakeGenretxt() {
    const QScopedValueRollback loading(Loading, true);
    store::MakeGenretxt(m_context);
    readGenreList();
}

void frmContents::readGenreList() {
    const QString shown = genreText(*ui->ComboGenre);
    const QStringList genres = store::readGenres(m_context);
    ui->ComboGenre->clear();
    ui->ComboGenre->addItems(genres);
    ui->ComboGenre->setCurrentIndex(int(genres.indexOf(shown)));
    ui->ComboGenre->setEditText(shown);
}

int frmContents::shownNumber() const {
    return ui->ComboNumber->currentText().toInt();
}

void frmContents::selectNumber(int number) {
    ui->ComboNumber->setCurrentIndex(number - 1);
}

void frmContents::setCaption() {
    const QString last = ui->ComboNumber->itemText(ui->ComboNumber->count() - 1);
    setWindowTitle(m_context.session.EnterDay + u"分の日記["_s + ui->ComboNumber->currentText() + u'/' + last + u']');
}

/// A missing value, as all are in an entry that is empty, shows as its default.
void frmContents::fill(const store::Entry& entry) {
    const store::Entry shown = store::withDefaults(entry);
    m_panes[0]->setText(shown.contents);
    m_panes[1]->setText(shown.extend);
    m_panes[2]->setText(shown.excerpt);
    ui->txtTitle->setText(shown.title);
    ui->txtTitle->setCursorPosition(0);
    // A word from elsewhere is in the list as long as its entry is shown, so that a save keeps it.
    while (ui->ComboWeather->count() > kWeatherItems)
        ui->ComboWeather->removeItem(kWeatherItems);
    if (ui->ComboWeather->findText(shown.weather, Qt::MatchExactly | Qt::MatchCaseSensitive) < 0)
        ui->ComboWeather->addItem(shown.weather);
    ui->ComboWeather->setCurrentIndex(
        ui->ComboWeather->findText(shown.weather, Qt::MatchExactly | Qt::MatchCaseSensitive));
    ui->ComboGenre->setCurrentIndex(ui->ComboGenre->findText(shown.genre, Qt::MatchExactly | Qt::MatchCaseSensitive));
    ui->ComboGenre->setEditText(shown.genre);
    ui->ComboPrivate->setCurrentIndex(shown.isPrivate ? 1 : 0);
}

/// Without a row, an empty entry with the first items of its boxes.
void frmContents::fillRow(const std::optional<store::Entry>& row) {
    fill(row.value_or(store::Entry()));
    if (!row && ui->ComboGenre->count() > 0)
        ui->ComboGenre->setCurrentIndex(0);
}

store::Entry frmContents::fields(int number) const {
    store::Entry entry;
    entry.day = m_context.session.EnterDay;
    entry.number = number;
    entry.title = ui->txtTitle->text();
    entry.contents = m_panes[0]->text();
    entry.extend = m_panes[1]->text();
    entry.excerpt = m_panes[2]->text();
    entry.weather = ui->ComboWeather->currentText();
    entry.genre = genreText(*ui->ComboGenre);
    entry.isPrivate = ui->ComboPrivate->currentIndex() != 0;
    // "" is what an empty box holds; a null text would be stored as a missing value.
    for (QString* text : {&entry.title, &entry.contents, &entry.extend, &entry.excerpt, &entry.weather}) {
        if (text->isNull())
            *text = u""_s;
    }
    return entry;
}

void frmContents::becomeClean() {
    ChangeYesNo = false;
    setSavable(false);
    forgetDraft();
}

void frmContents::finishLoad() {
    becomeClean();
    focusTitle();
    InitUndoRedo();
}

/// Asks what is to become of unsaved changes before another entry takes their place, and saves them on Yes. Returns
/// whether they are to be dropped.
bool frmContents::settleChanges() {
    commitComposition();
    if (!ChangeYesNo)
        return false;
    const bool isYes = m_context.desk.ask(u"更新されていますが、保存されていません。\r\n保存しますか？"_s);
    if (isYes && Btn1Click_ToolBar() == SaveOutcome::Saved)
        return false;
    if (isYes && m_hasDay && m_edited.keepDropped(fields(m_edited.number())))
        m_context.desk.notice(u"保存されなかった内容は控え「rescue.jsonl」に残しました。"_s);
    ChangeYesNo = false;
    return true;
}

/// Changes that were to be dropped are there still when what takes their place can't be read.
template <typename Read>
auto frmContents::readOrKeep(bool isDropped, Read read) {
    const platform::Hourglass hourglass(m_context.desk);
    try {
        return read();
    } catch (...) {
        ChangeYesNo = ChangeYesNo || isDropped;
        throw;
    }
}

frmContents::Day frmContents::readDay(const QString& day) const {
    Day read{diary().LoadDay(day), false};
    OldDiaryChecker(day, read.hasOldDiary);
    return read;
}

void frmContents::showEntry(int count, int number, const std::optional<store::Entry>& row, bool hasOldDiary) {
    showChild();
    const QScopedValueRollback loading(Loading, true);
    AddComboNumber(count);
    fillRow(row);
    selectNumber(number);
    m_edited.show(number, row);
    enable(hasOldDiary);
    finishLoad();
}

void frmContents::openDay(const QString& day) {
    openRow(day, std::nullopt);
}

void frmContents::openEntry(const QString& day, int number) {
    if (m_hasDay && day == m_context.session.EnterDay && number == shownNumber())
        showChild();
    else
        openRow(day, number);
}

void frmContents::openRow(const QString& day, std::optional<int> number) {
    const bool isDropped = settleChanges();
    const Day read = readOrKeep(isDropped, [&] { return readDay(day); });
    m_context.session.EnterDay = day;
    m_context.windows.get<frmCalender>().showDay(QDate::fromString(day, u"yyyy/MM/dd"));
    const int count = int(read.rows.size());
    const std::optional<store::Entry> row = number ? rowOf(read.rows, *number) : std::nullopt;
    if (count == 0)
        showEntry(1, 1, std::nullopt, read.hasOldDiary);
    else
        showEntry(count, row ? *number : count, row ? row : read.rows.front(), read.hasOldDiary);
    if (number && !row)
        m_context.desk.notice(u"%1の%2番目の日記は見つかりません。"_s.arg(day).arg(*number));
}

void frmContents::openNewEntry() {
    const bool isDropped = settleChanges();
    const Day read = readOrKeep(isDropped, [&] { return readDay(m_context.session.EnterDay); });
    const int next = int(read.rows.size()) + 1;
    showEntry(next, next, std::nullopt, read.hasOldDiary);
}

void frmContents::daysChanged(const QStringList& days) {
    m_context.windows.get<frmCalender>().markDays();
    const QString day = m_context.session.EnterDay;
    if (!m_hasDay || !days.contains(day))
        return;
    const Day read = readDay(day);
    const int count = int(read.rows.size());
    if (ChangeYesNo) {
        const QScopedValueRollback loading(Loading, true);
        const int edited = m_edited.follow(read.rows);
        AddComboNumber(std::max(count, edited));
        selectNumber(edited);
        setCaption();
        m_context.desk.notice(day + u"の日記は編集中のため、変更された内容を表示していません。"_s);
        return;
    }
    const int number = std::clamp(shownNumber(), 1, std::max(count, 1));
    showEntry(std::max(count, 1), number, rowOf(read.rows, number), read.hasOldDiary);
}

void frmContents::pickNumber() {
    if (Loading)
        return;
    std::optional<store::Entry> row;
    try {
        // The box shows the picked number already, so a Yes saves there.
        const bool isDropped = settleChanges();
        row = readOrKeep(isDropped, [&] { return diary().LoadEntry(m_context.session.EnterDay, shownNumber()); });
    } catch (...) {
        selectNumber(m_edited.number()); // what is shown is not the entry that was picked, or was saved as that
        setCaption();
        throw;
    }
    ui->txtTitle->setEnabled(true);
    ui->txtContents->setEnabled(true);
    setCaption();
    fillRow(row);
    m_edited.show(shownNumber(), row);
    finishLoad();
}

void frmContents::restoreDraft() {
    if (m_found.empty())
        return;
    const store::Entry draft = m_found.back(); // a save of its entry, asked for now, takes it from the list
    const bool isDropped = settleChanges();
    const Day read = readOrKeep(isDropped, [&] { return readDay(draft.day); });
    m_context.session.EnterDay = draft.day;
    m_context.windows.get<frmCalender>().showDay(QDate::fromString(draft.day, u"yyyy/MM/dd"));

    const int count = int(read.rows.size());
    const int number = std::min(draft.number, count + 1);
    // The row as the draft knew it: what has become of it since is told apart at the save.
    std::optional<store::Entry> row = draft.publishTime.isNull() ? std::nullopt : rowOf(read.rows, number);
    if (row)
        row->publishTime = draft.publishTime;
    m_hasWrittenDraft = false; // the file keeps the draft until it is written anew below
    showEntry(std::max(count, number), number, row, read.hasOldDiary);
    {
        const QScopedValueRollback loading(Loading, true);
        fill(draft);
    }
    InitUndoRedo();
    ChangeYesNo = true;
    setSavable(true);
    std::erase_if(m_found,
                  [&](const store::Entry& found) { return found.day == draft.day && found.number == draft.number; });
    keepDraft();
    m_context.desk.status(draft.day + u"の下書きを復元しました。まだ保存されていません。"_s);
}

store::DiaryStore frmContents::diary() const {
    return store::DiaryStore(m_context);
}

} // namespace velloria::editor
