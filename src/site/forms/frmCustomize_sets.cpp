#include "desktop/combo.h"
#include "desktop/command.h"
#include "desktop/text_pane.h"
#include "platform/file_write.h"
#include "site/customize_categories.h"
#include "site/customize_set_commands.h"
#include "site/customize_sets.h"
#include "site/customize_talks.h"
#include "site/forms/control_tag.h"
#include "site/forms/frmCustomize.h"
#include "site/forms/piece_panel.h"
#include "site/text_piece.h"
#include "ui_frmCustomize.h"

#include <algorithm>

namespace velloria::site {

// ---- which text is shown

/// A text that was not saved goes when another one is shown.
bool frmCustomize::mayLeaveText() {
    const PiecePanel* panel = textPanel();
    return !panel || !isEdited(panel->pane()) || !asksToSave() || apply();
}

void frmCustomize::chooseCategory() {
    if (ui->cmbCategory->currentIndex() == m_category)
        return;
    bool isLeft = false;
    run([&] { isLeft = mayLeaveText(); });
    if (isLeft)
        m_category = ui->cmbCategory->currentIndex();
    else
        ui->cmbCategory->setCurrentIndex(m_category);
    if (!isLeft)
        return;
    showCategory();
    run([this] { loadPiece(); });
}

void frmCustomize::chooseHalf(PageText half) {
    PiecePanel& panel = *textPanel();
    if (panel.half() == half)
        return;
    bool isLeft = false;
    run([&] { isLeft = mayLeaveText(); });
    panel.showHalf(isLeft ? half : panel.half());
    if (isLeft)
        run([this] { loadPiece(); });
}

// ---- pieces

void frmCustomize::choosePiece(const QString& name) {
    const auto choose = [&] {
        if (isEdited(textPanel()->pane())) {
            if (asksToSave()) {
                if (!apply())
                    return;
            } else if (m_backup.isTaken()) {
                takeBack();
                loadSet();
            }
        }
        usePiece(name);
    };
    run(choose);
    textPanel()->pickShown();
}

/// The set names it at once, and its text is shown.
void frmCustomize::usePiece(const QString& name) {
    const PiecePanel& panel = *textPanel();
    if (!m_watch.mayWrite())
        return;
    core::SettingsChange change;
    change.set(m_context.session, *category().piece(panel.half()), name);
    change.write();
    m_watch.look();
    loadPiece();
    refresh();
}

/// A text that nobody has touched keeps its bytes, also when it is too long to be shown.
void frmCustomize::newPiece() {
    const PiecePanel& panel = *textPanel();
    newCommand(m_context, kPieceTalk, textPieces(m_context.session), [&](const QString& name) {
        if (isEdited(panel.pane()))
            writeTextPiece(m_context.session, name, panel.pane().text());
        else
            copyTextPiece(m_context.session, panel.name(), name);
        setEdited(panel.pane(), false);
        usePiece(name);
    });
}

void frmCustomize::deletePiece() {
    const PiecePanel& panel = *textPanel();
    const QString name = panel.name();
    if (!mayDelete(m_context, kPieceTalk, name))
        return;
    const qsizetype at = textPieces(m_context.session).indexOf(name);
    platform::removeFile(textPieceFile(m_context.session, name));
    setEdited(panel.pane(), false);
    tellDeleted(m_context, kPieceTalk, name);
    const QStringList left = textPieces(m_context.session);
    usePiece(left.isEmpty() ? QString() : left.at(std::clamp<qsizetype>(at, 0, left.size() - 1)));
}

// ---- sets

void frmCustomize::chooseSet(const QString& name) {
    run([&] {
        if (m_changed) {
            if (asksToSave()) {
                if (!apply())
                    return;
            } else if (m_backup.isTaken()) {
                takeBack();
                m_watch.look();
            }
        }
        changeToSet(name);
    });
    fillSets();
}

void frmCustomize::changeToSet(const QString& name) {
    core::Session& session = m_context.session;
    const QString old = session.CustIniFile;
    session.CustIniFile = existingSetFile(session, name);
    try {
        loadSet();
    } catch (...) {
        session.CustIniFile = old;
        throw;
    }
    goOnLive();
    refresh();
}

void frmCustomize::newSet() {
    newCommand(m_context, kSetTalk, allCustomizeSets(m_context.session), [this](const QString& name) {
        // What somebody else has written to the old set is what it goes back to then.
        if (m_backup.isTaken() && !m_watch.mayTakeBack())
            startLive();
        const SetWatch ofOld = m_watch;
        const bool wasChanged = m_changed;
        try {
            makeCustomizeSet(m_context.session, m_backup, name, [this] {
                m_watch.look();
                apply();
            });
        } catch (...) {
            m_watch = ofOld;
            setChanged(m_changed || wasChanged);
            throw;
        }
        fillSets();
        goOnLive();
        refresh();
    });
}

void frmCustomize::deleteSet() {
    const QString name = ui->cmbSelectCustomize->currentText();
    if (!mayDelete(m_context, kSetTalk, name))
        return;
    deleteCustomizeSet(m_context.session, name);
    tellDeleted(m_context, kSetTalk, name);
    fillSets();
    goOnLive();
    loadSet();
    refresh();
}

/// With the set that is selected now. Where that can't be, the dialog goes on without.
void frmCustomize::goOnLive() {
    run([this] {
        if (m_realTime)
            startLive();
    });
}

} // namespace velloria::site
