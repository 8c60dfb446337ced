// What is done with the entry in the editor: saving, inserting, undoing, and keeping it from being lost.
#include "browser/forms/frmBrowser.h"
#include "browser/forms/frmPrevDiaryViewer.h"
#include "desktop/clipboard.h"
#include "desktop/command.h"
#include "desktop/text_pane.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "editor/forms/frmHTMLMakeFont.h"
#include "editor/forms/frmHTMLMakeHR.h"
#include "editor/forms/frmHTMLMakeImage.h"
#include "editor/forms/frmHTMLMakeList.h"
#include "platform/failure.h"
#include "site/same_day_page.h"
#include "site/save_html.h"
#include "store/genre_list.h"
#include "ui_frmContents.h"

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace velloria::editor {

SaveOutcome frmContents::Btn1Click_ToolBar() {
    commitComposition();
    platform::Desk& desk = m_context.desk;
    if (ui->txtTitle->text().isEmpty()) {
        desk.message(platform::MessageKind::Critical, u"タイトルを入力してください！"_s, u"日記作成"_s);
        return SaveOutcome::Refused;
    }
    const store::Entry entry = fields(shownNumber());
    const SaveResult result = m_edited.save(entry);
    desk.status(entry.day + u"の日記を保存しました。"_s);
    if (result.isOlderKept)
        desk.notice(entry.day + u"の日記を保存しました。上書きした日記は控え「rescue.jsonl」に残しました。"_s);
    if (result.isMoved)
        tellMoved(result.number);
    becomeClean();
    settleFoundDrafts(entry);
    if (auto* calendar = m_context.windows.find<frmCalender>())
        calendar->markDays();
    addGenre();
    return SaveOutcome::Saved;
}

void frmContents::tellMoved(int number) {
    const QScopedValueRollback loading(Loading, true);
    AddComboNumber(number);
    selectNumber(number);
    setCaption();
    m_context.desk.notice(u"%1の日記はほかのプログラムが変更していたため、%2番目の日記として保存しました。"_s
                              .arg(m_context.session.EnterDay)
                              .arg(number));
}

void frmContents::addGenre() {
    // The list's own changes must not make the entry an unsaved one.
    const QScopedValueRollback loading(Loading, true);
    const QString genre = ui->ComboGenre->currentText();
    const bool isListed = ui->ComboGenre->findText(genre, Qt::MatchExactly | Qt::MatchCaseSensitive) >= 0;
    if (isListed)
        return;
    try {
        store::addGenres(m_context, {genre});
        readGenreList();
    } catch (platform::Failure& failure) {
        failure.addStage(u"日記は保存しました"_s); // nobody is to save it twice
        throw;
    }
}

void frmContents::Btn5Click_ToolBar() {
    Btn1Click_ToolBar();
    site::SaveHtml(m_context).previewStep();
}

void frmContents::deleteEntry(const QString& day) {
    commitComposition();
    const platform::Hourglass hourglass(m_context.desk);
    if (ChangeYesNo)
        m_edited.keepDropped(fields(m_edited.number()));
    m_edited.remove(day, shownNumber());
    Contents_Initialize();
    InitUndoRedo();
    forgetDraft();
}

void frmContents::Btn2Click_ToolBar() {
    if (!m_hasDay)
        return;
    commitComposition();
    const QString url = m_context.windows.get<browser::frmBrowser>().LocationURL();
    pane().replaceSelection(u"<A HREF=\""_s + url + u"\">"_s + pane().selectedText() + u"</A>"_s);
    pane().setFocus();
}

void frmContents::Btn3Click_ToolBar() {
    m_context.windows.get<frmHTMLMakeImage>().showWindow();
}

void frmContents::openImageMaker(const QString& path) {
    auto& maker = m_context.windows.get<frmHTMLMakeImage>();
    maker.showWindow();
    maker.choose(path);
}

void frmContents::InsertFromCB_Text() {
    insertFromClipboard(exchange::ParagraphTags::None);
}

void frmContents::InsertFromCB_Exchange() {
    insertFromClipboard(exchange::ParagraphTags::Added);
}

void frmContents::insertFromClipboard(exchange::ParagraphTags tags) {
    if (!m_hasDay)
        return;
    commitComposition();
    const QString text = exchange::GetClipboardText(m_context, desktop::clipboardText(), tags);
    if (text.isEmpty())
        return;
    insertAtCaret(pane(), text);
    pane().setFocus();
}

void frmContents::insertTag(int index) {
    if (!m_hasDay)
        return;
    commitComposition();
    const std::optional<QString> text = insertion(m_context.session, index, pane().selectedText());
    if (!text) {
        openMaker(tags()[std::size_t(index)].maker);
        return;
    }
    if (*text != pane().selectedText())
        pane().replaceSelection(*text);
    pane().setFocus();
}

/// Whatever becomes of the maker, writing goes on in the first pane, where makers insert.
void frmContents::openMaker(TagMaker maker) {
    const auto goOn = [this] { goToPane(0); };
    const auto open = [&](desktop::ToolWindow& window) {
        window.giveBackTo(goOn);
        window.showWindow();
    };
    try {
        if (maker == TagMaker::Font)
            open(m_context.windows.get<frmHTMLMakeFont>());
        else if (maker == TagMaker::Rule)
            open(m_context.windows.get<frmHTMLMakeHR>());
        else
            open(m_context.windows.get<frmHTMLMakeList>());
    } catch (...) {
        goOn();
        throw;
    }
}

bool frmContents::bringContentsForward() {
    if (!m_hasDay) {
        m_context.desk.notice(u"日記が開かれていないため、挿入しませんでした。"_s);
        return false;
    }
    commitComposition();
    ui->TabStrip1->setCurrentIndex(0);
    ui->txtContents->setFocus();
    return true;
}

bool frmContents::insertIntoContents(const std::function<QString(const QString&)>& replacement) {
    if (!bringContentsForward())
        return false;
    ui->txtContents->replaceSelection(replacement(ui->txtContents->selectedText()));
    return true;
}

bool frmContents::insertAtCaretOfContents(const QString& text) {
    if (!bringContentsForward())
        return false;
    insertAtCaret(*ui->txtContents, text);
    return true;
}

void frmContents::insertAtCaret(desktop::TextPane& pane, const QString& text) {
    QTextCursor cursor = pane.textCursor();
    cursor.setPosition(cursor.selectionStart());
    pane.setTextCursor(cursor);
    pane.replaceSelection(text);
}

void frmContents::Cut() {
    pane().cut();
}

void frmContents::Copy() {
    pane().copy();
}

void frmContents::Paste() {
    commitComposition();
    if (m_hasDay)
        pane().paste();
}

void frmContents::InitUndoRedo() {
    for (std::size_t i = 0; i < m_panes.size(); ++i)
        m_undo[i].reset(m_panes[i]->rawText(), m_panes[i]->selectionStart());
}

/// The last pane has no undo, only snapshots.
void frmContents::mnuUndo_Click() {
    commitComposition();
    const QScopedValueRollback loading(Loading, true);
    const int index = ui->TabStrip1->currentIndex();
    if (index < 2)
        restore(m_undo[std::size_t(index)].undo());
}

void frmContents::mnuRedo_Click() {
    commitComposition();
    const QScopedValueRollback loading(Loading, true);
    restore(m_undo[std::size_t(ui->TabStrip1->currentIndex())].redo());
}

void frmContents::restore(const std::optional<Snapshot>& snapshot) {
    if (!snapshot)
        return;
    pane().restore(snapshot->text, snapshot->caret);
    if (ChangeYesNo && !m_draftTimer.isActive())
        m_draftTimer.start();
}

void frmContents::picPrevDiaryExist_Click() {
    const platform::Hourglass hourglass(m_context.desk);
    const QString file = m_context.session.DataPath + u"oldtmp.htm"_s;
    site::MakeSameDayPage(m_context, file, m_context.session.EnterDay);
    m_context.windows.get<browser::frmPrevDiaryViewer>().showPage(u"過去の日記"_s, file);
}

bool frmContents::confirmClose() {
    bool mayClose = false;
    run([&] {
        commitComposition();
        if (!ChangeYesNo) {
            mayClose = true;
        } else if (m_context.desk.ask(u"変更されています。保存しますか？"_s)) {
            mayClose = Btn1Click_ToolBar() == SaveOutcome::Saved;
        } else {
            becomeClean();
            mayClose = true;
        }
    });
    return mayClose;
}

void frmContents::keepDraft() {
    m_draftTimer.stop();
    if (!ChangeYesNo || !m_hasDay)
        return;
    std::vector<store::Entry> drafts = m_found;
    drafts.push_back(fields(m_edited.number()));
    drafts.back().publishTime = m_edited.publishTime();
    writeDrafts(drafts);
    m_hasWrittenDraft = true;
}

void frmContents::dropDraft() {
    forgetDraft();
}

void frmContents::forgetDraft() {
    m_draftTimer.stop();
    if (std::exchange(m_hasWrittenDraft, false))
        writeDrafts(m_found);
}

/// A draft is written on the side: a box for each one that fails would keep people from typing.
void frmContents::writeDrafts(const std::vector<store::Entry>& drafts) {
    try {
        m_drafts.write(drafts);
    } catch (const platform::Failure& failure) {
        m_context.desk.status(u"下書きを保存できません。"_s + failure.reason());
    }
}

/// A save of the entry that an earlier draft belongs to takes the draft's place.
void frmContents::settleFoundDrafts(const store::Entry& saved) {
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

} // namespace velloria::editor
