#include "memo/forms/frmMemo.h"

#include "core/keys.h"
#include "desktop/command.h"
#include "desktop/window_place.h"
#include "memo/forms/captions.h"
#include "memo/forms/kept_memos.h"
#include "memo/forms/memo_list.h"
#include "memo/forms/memo_sheet.h"
#include "memo/forms/questions.h"
#include "platform/failure.h"
#include "ui_frmMemo.h"

#include <QCloseEvent>
#include <QScopedValueRollback>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace velloria::memo {

using store::Memo;
using store::MemoOutcome;

namespace {

constexpr QSize kFirstSize(1000, 620);
constexpr int kGap = 10;
constexpr std::chrono::seconds kDraftDelay{2};

} // namespace

frmMemo::frmMemo(const core::Run& run)
    : m_run(run)
    , m_words(core::menuLanguage(run.session))
    , ui(std::make_unique<Ui::frmMemo>())
    , m_book(run)
    , m_draft(run) {
    ui->setupUi(this);
    if (m_words.isEnglish())
        makeEnglish(*this);
    const QString user = run.session.UserID.isEmpty() ? QString() : u" [User:"_s + run.session.UserID + u']';
    setWindowTitle(windowTitle() + user + u"[*]"_s);
    m_sheet = new MemoSheet(*ui, this);
    m_list = new MemoList(
        *ui, m_book, m_words, [this](const auto& action) { this->run(action); }, this);
    ui->splitter->setStretchFactor(0, 1);
    ui->splitter->setStretchFactor(1, 1);
    ui->splitter->setHandleWidth(kGap);
    m_draftDelay.setSingleShot(true);
    m_draftDelay.setInterval(kDraftDelay);
    connectControls();
    resize(kFirstSize);
    desktop::restorePlace(*this, desktop::readPlace(run.session, core::keys::kMemoPlace), {});
}

frmMemo::~frmMemo() = default;

void frmMemo::connectControls() {
    const auto connectAction = [this](QAction* action, void (frmMemo::*slot)()) {
        connect(action, &QAction::triggered, this, [this, slot] { run([this, slot] { (this->*slot)(); }); });
    };
    connectAction(ui->actNew, &frmMemo::Btn_New_Click);
    connectAction(ui->actDelete, &frmMemo::Btn_Delete_Click);
    connectAction(ui->actPutBack, &frmMemo::putBack);
    connectAction(ui->actRefresh, &frmMemo::refresh);
    connectAction(ui->actLockAgain, &frmMemo::lockAgain);
    connect(ui->actSave, &QAction::triggered, this, [this] { Btn_Save_Click(); });
    connect(ui->actFind, &QAction::triggered, ui->txtFind, [this] {
        ui->txtFind->setFocus(Qt::ShortcutFocusReason);
        ui->txtFind->selectAll();
    });
    connect(ui->actClose, &QAction::triggered, this, &QWidget::close);
    connect(ui->actAskAtStart, &QAction::triggered, this, [this](bool isWanted) {
        run([this, isWanted] { askAtStart(isWanted); });
        run([this] { ui->actAskAtStart->setChecked(m_book.isLockedAsAWhole()); });
    });
    connect(ui->Btn_New, &QPushButton::clicked, ui->actNew, &QAction::trigger);
    connect(ui->Btn_Save, &QPushButton::clicked, ui->actSave, &QAction::trigger);
    connect(ui->Btn_Delete, &QPushButton::clicked, ui->actDelete, &QAction::trigger);
    connect(ui->Btn_Unlock, &QPushButton::clicked, this, [this] { run([this] { Btn_Unlock_Click(); }); });
    connect(ui->chkLock, &QCheckBox::clicked, this, [this](bool on) { run([this, on] { chkLock_Click(on); }); });
    auto* removeKey = new QShortcut(QKeySequence::Delete, ui->lstMemos, nullptr, nullptr, Qt::WidgetShortcut);
    connect(removeKey, &QShortcut::activated, ui->actDelete, &QAction::trigger);
    connect(m_list, &MemoList::picked, this, [this](qint64 row) { run([this, row] { openPicked(row); }); });
    connect(m_list, &MemoList::read, this,
            [this] { setStatus(m_words(u"%1件のメモ"_s, u"%1 memos"_s).arg(m_list->count())); });
    connect(m_sheet, &MemoSheet::changed, this, &frmMemo::showState);
    connect(m_sheet, &MemoSheet::modified, this, [this] {
        if (!m_draftDelay.isActive())
            m_draftDelay.start();
    });
    connect(&m_draftDelay, &QTimer::timeout, this, &frmMemo::keepDraft);
}

bool frmMemo::run(const std::function<void()>& action) const {
    return desktop::runCommand(m_run.desk, action);
}

void frmMemo::inform(const QString& japanese, const QString& english) const {
    m_run.desk.message(platform::MessageKind::Exclamation, m_words(japanese, english),
                       m_words(u"ベロリアメモ"_s, u"VellMemo"_s));
}

void frmMemo::setStatus(const QString& text) {
    ui->statusBar->showMessage(text);
}

bool frmMemo::begin() {
    bool mayEnter = false;
    run([&] { mayEnter = !m_book.asksAtStart() || unlock(); });
    if (!mayEnter)
        return false;
    run([this] { refresh(); });
    showNew();
    show();
    ui->lstMemos->setFocus();
    run([this] { takeDraftOver(); });
    return true;
}

/// Asks until it is right or cancelled.
bool frmMemo::unlock() {
    while (const std::optional<QString> password = askPassword(isVisible() ? this : nullptr, m_words)) {
        if (m_book.unlock(*password))
            return true;
        inform(u"パスワードが一致しませんでした。"_s, u"The password is wrong."_s);
    }
    return false;
}

void frmMemo::takeDraftOver() {
    const std::optional<Typed> draft = m_draft.takeOver();
    if (!draft)
        return;
    const QString title = m_words(u"ベロリアメモ"_s, u"VellMemo"_s);
    const QString no = m_book.keepsWhatGoes()
                           ? m_words(u"「いいえ」を選ぶと、控えに移します。"_s, u"No moves it to the removed memos."_s)
                           : m_words(u"「いいえ」を選ぶと、消えます。"_s, u"No deletes it."_s);
    try {
        if (m_run.desk.ask(m_words(u"保存されなかったメモの下書きがあります。開きますか？\r\n"_s,
                                   u"There is a draft of a memo that was not saved. Do you want to open it?\r\n"_s) +
                               no,
                           title))
            showDraft(*draft);
        else
            m_draft.drop(*draft);
    } catch (...) {
        m_draft.giveBack(); // or what is typed next would take its place
        throw;
    }
}

void frmMemo::showDraft(const Typed& draft) {
    const bool isLocked = draft.memo.isLocked || draft.wasLocked || m_book.isClosed(draft.memo.no);
    if (isLocked && !m_book.isOpen() && !unlock()) {
        m_draft.giveBack();
        return;
    }
    m_sheet->show(m_book.find(draft.memo.no, draft.memo.publishTime), false);
    m_sheet->type(draft.memo);
    m_list->select(shownRow());
}

/// All of what is kept lies behind the password: a memo may have been locked since, or not yet be.
void frmMemo::putBack() {
    if (m_isAsking || (!m_book.isOpen() && !unlock()))
        return;
    const std::vector<store::KeptMemo> kept = m_book.kept();
    if (kept.empty()) {
        inform(u"控えはありません。"_s, u"There is nothing to put back."_s);
        return;
    }
    const QScopedValueRollback asking(m_isAsking, true);
    const std::optional<Memo> chosen = chooseKept(*this, m_words, kept);
    if (!chosen || !leaveMemo())
        return;
    const MemoOutcome outcome = m_book.save(*chosen, std::nullopt);
    m_sheet->show(outcome.memo, false);
    m_list->select(shownRow());
    refresh();
    setStatus(m_words(u"メモを戻しました。"_s, u"The memo is back."_s));
}

void frmMemo::refresh() {
    const platform::Hourglass hourglass(m_run.desk);
    ui->actAskAtStart->setChecked(m_book.isLockedAsAWhole());
    m_list->refresh();
}

qint64 frmMemo::shownRow() const {
    return m_sheet->seen() ? m_sheet->seen()->row : 0;
}

void frmMemo::openPicked(qint64 storedRow) {
    if (m_isAsking || storedRow == 0 || storedRow == shownRow())
        return;
    if (leaveMemo())
        open(storedRow);
    else
        m_list->select(shownRow());
}

void frmMemo::open(qint64 storedRow) {
    const platform::Hourglass hourglass(m_run.desk);
    const std::optional<Memo> memo = m_book.load(storedRow);
    m_sheet->show(memo, memo && m_book.isClosed(*memo));
    m_list->select(shownRow());
    if (!memo) // somebody else has removed it
        refresh();
}

/// Whether another memo may take the place of this one.
bool frmMemo::leaveMemo() {
    m_sheet->commitCompositions();
    if (!m_sheet->isModified())
        return true;
    const QScopedValueRollback asking(m_isAsking, true);
    switch (askAboutUnsaved(*this, m_words)) {
    case Unsaved::Save:
        return Btn_Save_Click();
    case Unsaved::Discard:
        m_draftDelay.stop();
        m_draft.remove();
        return true;
    case Unsaved::Cancel:
        break;
    }
    return false;
}

void frmMemo::showNew() {
    m_sheet->show(std::nullopt, false);
    m_list->select(0);
}

void frmMemo::Btn_New_Click() {
    if (m_isAsking || !leaveMemo())
        return;
    showNew();
    ui->txtTitle->setFocus();
}

bool frmMemo::Btn_Save_Click() {
    bool isSaved = false;
    run([&] {
        m_sheet->commitCompositions();
        if (m_sheet->isClosed() || (m_sheet->seen() && !m_sheet->isModified()))
            isSaved = true;
        else if (!m_sheet->seen() && m_sheet->isEmpty())
            inform(u"メモが空です。"_s, u"The memo is empty."_s);
        else
            isSaved = save(m_sheet->seen());
    });
    return isSaved;
}

bool frmMemo::save(const std::optional<Memo>& seen) {
    const MemoOutcome outcome = [&] {
        const platform::Hourglass hourglass(m_run.desk);
        return m_book.save(m_sheet->typed(), seen);
    }();
    if (outcome.kind != MemoOutcome::Kind::Done) {
        const QScopedValueRollback asking(m_isAsking, true);
        const bool isThere = outcome.kind == MemoOutcome::Kind::Changed;
        switch (askAboutConflict(*this, m_words, isThere)) {
        case Conflict::Overwrite:
            return save(outcome.memo);
        case Conflict::SaveAsNew:
            return save(std::nullopt);
        case Conflict::Cancel:
            return false;
        }
    }
    m_sheet->setSaved(outcome.memo);
    m_list->select(outcome.memo.row);
    m_draftDelay.stop();
    // The memo is saved, whatever becomes of the rest.
    run([this] { m_draft.remove(); });
    run([this] { refresh(); });
    setStatus(m_words(u"メモを保存しました。"_s, u"The memo is saved."_s));
    return true;
}

void frmMemo::Btn_Delete_Click() {
    if (m_isAsking || !m_sheet->seen())
        return;
    if (m_sheet->isClosed()) {
        Btn_Unlock_Click();
        if (m_sheet->isClosed())
            return;
    }
    const QScopedValueRollback asking(m_isAsking, true);
    const Memo seen = *m_sheet->seen();
    const QString title = seen.title.isEmpty() ? m_words(u"(無題)"_s, u"(untitled)"_s) : seen.title.left(100);
    const QString question = m_words(u"メモ「%1」を削除しますか？"_s, u"Do you want to delete the memo \"%1\"?"_s);
    if (!m_run.desk.ask(question.arg(title), m_words(u"ベロリアメモ"_s, u"VellMemo"_s)))
        return;
    const MemoOutcome outcome = m_book.remove(seen);
    if (outcome.kind == MemoOutcome::Kind::Changed) {
        inform(u"このメモは、ほかのプログラムが変更したので、削除しませんでした。"_s,
               u"Another program has changed this memo. It was not deleted."_s);
        refresh();
        return;
    }
    m_draftDelay.stop();
    if (m_sheet->isModified())
        m_draft.drop(typedDraft());
    showNew();
    refresh();
    setStatus(m_words(u"メモを削除しました。"_s, u"The memo is deleted."_s));
}

void frmMemo::Btn_Unlock_Click() {
    if (!m_sheet->seen() || !unlock())
        return;
    open(m_sheet->seen()->row);
    m_list->refreshMemos();
    ui->txtMemo->setFocus();
}

void frmMemo::chkLock_Click(bool isLocked) {
    if (!isLocked || m_book.hasPassword())
        return;
    ui->chkLock->setChecked(false);
    inform(u"パスワードが設定されていないので、ロックできません。\r\n"_s
           u"パスワードは、Velloriaの「ユーザー管理」でユーザーを作成すると設定できます。"_s,
           u"Nothing can be locked: you have no password.\r\nThe user manager of Velloria makes users with one."_s);
}

void frmMemo::askAtStart(bool isWanted) {
    if (!m_book.hasPassword() && isWanted)
        inform(u"パスワードが設定されていないので、起動時に確認できません。"_s,
               u"You have no password that could be asked for."_s);
    else if (m_book.isOpen() || unlock())
        m_book.setLockedAsAWhole(isWanted);
}

void frmMemo::lockAgain() {
    if (m_isAsking || !leaveMemo())
        return;
    m_book.lockAgain();
    if (m_sheet->seen())
        open(m_sheet->seen()->row);
    m_list->refreshMemos();
}

void frmMemo::showState() {
    setWindowModified(m_sheet->isModified());
    const std::optional<Memo>& seen = m_sheet->seen();
    ui->labelTime->setText(seen ? m_words(u"保存した日時: %1"_s, u"Saved: %1"_s).arg(seen->publishTime)
                                : m_words(u"新しいメモ"_s, u"New memo"_s));
    ui->Btn_Delete->setEnabled(seen.has_value());
    ui->actDelete->setEnabled(seen.has_value());
    ui->Btn_Save->setEnabled(!m_sheet->isClosed());
    ui->actSave->setEnabled(!m_sheet->isClosed());
}

Typed frmMemo::typedDraft() const {
    return {m_sheet->typed(), m_sheet->seen() && store::mayBeLocked(*m_sheet->seen())};
}

void frmMemo::keepDraft() {
    try {
        if (m_sheet->isModified())
            m_draft.write(typedDraft());
    } catch (const platform::Failure& failure) {
        setStatus(failure.line());
    }
}

void frmMemo::keepPlace() const {
    if (!isMaximized())
        desktop::writePlace(m_run.session, core::keys::kMemoPlace, desktop::placeOf(*this, {pos(), size()}));
}

void frmMemo::closeEvent(QCloseEvent* event) {
    bool mayLeave = false;
    if (!m_isAsking)
        run([&] { mayLeave = leaveMemo(); });
    if (!mayLeave) {
        event->ignore();
        return;
    }
    keepPlace();
    event->accept();
}

} // namespace velloria::memo
