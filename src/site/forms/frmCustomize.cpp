#include "site/forms/frmCustomize.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/settings.h"
#include "desktop/text_pane.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "site/customize_categories.h"
#include "site/customize_sets.h"
#include "site/forms/control_tag.h"
#include "site/forms/piece_panel.h"
#include "site/forms/row_panel.h"
#include "site/forms/set_picture.h"
#include "site/save_html.h"
#include "site/text_piece.h"
#include "ui_frmCustomize.h"

#include <QScopedValueRollback>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

constexpr std::chrono::milliseconds kPictureDelay{400};
constexpr QSize kPictureSize(260, 240); ///< with it the window still fits a small screen

} // namespace

frmCustomize::frmCustomize(desktop::Context& context)
    : ToolWindow(context, u"frmCustomize"_s, Blocks::MainWindow, &core::keys::kCustomizePlace)
    , ui(std::make_unique<Ui::frmCustomize>())
    , m_backup(context.session)
    , m_watch(context)
    , m_preview(context, *this)
    , m_picture(new SetPicture(context, this)) {
    ui->setupUi(this);
    m_picture->setFixedSize(kPictureSize);
    ui->picture->addWidget(m_picture);
    ui->picture->addStretch(1);
    addPanels();
    connectControls();
    for (const CustomizeCategory& row : customizeCategories())
        ui->cmbCategory->addItem(row.text.toString());
    fillSets();
    showCategory();
    loadSet();
    const core::Settings settings(context.session);
    m_realTime = settings.isOn(core::keys::kRealTime) && platform::fileExists(context.session.CustIniFile);
    // The window of the preview is its better picture.
    m_picture->setVisible(!m_realTime);
    run([this] {
        if (m_realTime)
            startLive();
        else
            LivePreview::settlePage(m_context.session);
    });
}

frmCustomize::~frmCustomize() = default;

void frmCustomize::addPanels() {
    for (const CustomizeCategory& row : customizeCategories()) {
        if (m_panels.contains(row.panel))
            continue;
        if (row.up)
            addPiecePanel(row.panel);
        else
            addRowPanel(row.panel);
        ui->panels->addWidget(m_panels.at(row.panel));
    }
    // The buttons have been made before the panels and come behind them.
    const QList<QPushButton*> lastPanel = m_panels.at(CustomizePanel::CalenderFrame)->findChildren<QPushButton*>();
    setTabOrder(lastPanel.last(), ui->Btn_OK);
    setTabOrder(ui->Btn_OK, ui->Btn_Cancel);
    setTabOrder(ui->Btn_Cancel, ui->Btn_Apply);
}

void frmCustomize::addRowPanel(CustomizePanel kind) {
    auto* panel = new RowPanel(m_context, kind, *ui->Btn_Cancel);
    m_panels[kind] = panel;
    m_rowPanels.push_back(panel);
    m_table.rows.insert(m_table.rows.end(), panel->settings.begin(), panel->settings.end());
    connect(panel, &RowPanel::edited, this, [this](QWidget* box) { edited(*box); });
    connect(panel, &RowPanel::left, this, [this](QWidget* box) { left(*box); });
    connect(panel, &RowPanel::chosen, this, [this](QWidget* box) { chosen(*box); });
}

void frmCustomize::addPiecePanel(CustomizePanel kind) {
    auto* panel = new PiecePanel(m_context, kind, *ui->Btn_Cancel);
    m_panels[kind] = panel;
    connect(panel, &PiecePanel::edited, this, [this](QWidget* box) { edited(*box); });
    connect(panel, &PiecePanel::left, this, [this](QWidget* box) { left(*box); });
    connect(panel, &PiecePanel::picked, this, &frmCustomize::choosePiece);
    connect(panel, &PiecePanel::halfPicked, this, &frmCustomize::chooseHalf);
    connect(panel, &PiecePanel::newWanted, this, [this] { run([this] { newPiece(); }); });
    connect(panel, &PiecePanel::deleteWanted, this, [this] { run([this] { deletePiece(); }); });
}

void frmCustomize::connectControls() {
    connect(ui->cmbCategory, &QComboBox::activated, this, &frmCustomize::chooseCategory);
    connect(ui->cmbSelectCustomize, &QComboBox::activated, this,
            [this] { chooseSet(ui->cmbSelectCustomize->currentText()); });
    connect(ui->Btn_New, &QPushButton::clicked, this, [this] { run([this] { newSet(); }); });
    connect(ui->Btn_Delete, &QPushButton::clicked, this, [this] { run([this] { deleteSet(); }); });
    connect(ui->Btn_OK, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &frmCustomize::reject);
    connect(ui->Btn_Apply, &QPushButton::clicked, this, [this] { run([this] { Btn_Apply_Click(); }); });
    m_pictureDelay.setSingleShot(true);
    m_pictureDelay.setInterval(kPictureDelay);
    connect(&m_pictureDelay, &QTimer::timeout, this, [this] {
        if (m_picture->isVisible())
            m_picture->showSet(selectedCustomizeSet(m_context.session));
    });
}

// ---- what is shown

const CustomizeCategory& frmCustomize::category() const {
    return customizeCategories()[std::size_t(m_category)];
}

PiecePanel* frmCustomize::textPanel() const {
    return qobject_cast<PiecePanel*>(m_panels.at(category().panel));
}

void frmCustomize::showCategory() {
    ui->panels->setCurrentWidget(m_panels.at(category().panel));
    if (PiecePanel* panel = textPanel(); panel && !category().down)
        panel->showHalf(PageText::Up);
}

void frmCustomize::fillSets() {
    const QSignalBlocker silent(ui->cmbSelectCustomize);
    ui->cmbSelectCustomize->clear();
    ui->cmbSelectCustomize->addItems(customizeSets(m_context.session));
    const QString selected = selectedCustomizeSet(m_context.session);
    ui->cmbSelectCustomize->setCurrentIndex(ui->cmbSelectCustomize->findText(selected, Qt::MatchFixedString));
    ui->Btn_Delete->setEnabled(ui->cmbSelectCustomize->currentIndex() >= 0);
}

void frmCustomize::loadSet() {
    {
        const QScopedValueRollback loading(m_loading, true);
        m_table.load(m_context.session);
        for (RowPanel* panel : m_rowPanels)
            panel->settle();
    }
    m_watch.look();
    run([this] { loadPiece(); });
    setChanged(false);
    m_pictureDelay.start();
}

void frmCustomize::loadPiece() {
    PiecePanel* panel = textPanel();
    if (!panel)
        return;
    const QScopedValueRollback loading(m_loading, true);
    panel->show(core::Settings(m_context.session).text(*category().piece(panel->half())));
}

/// Without a backup nothing could be taken back: then nothing is written before an Apply.
void frmCustomize::startLive() {
    try {
        m_backup.take();
    } catch (...) {
        m_realTime = false;
        m_preview.close();
        m_picture->show();
        throw;
    }
}

void frmCustomize::showEvent(QShowEvent* event) {
    ToolWindow::showEvent(event);
    if (m_wasShown || !m_realTime)
        return;
    m_wasShown = true;
    QTimer::singleShot(0, this, [this] {
        run([this] {
            m_preview.show();
            m_preview.refresh();
        });
    });
}

// ---- changes

void frmCustomize::edited(QWidget& box) {
    if (m_loading)
        return;
    setEdited(box, true);
    setChanged(true);
}

void frmCustomize::left(QWidget& box) {
    if (isEdited(box))
        run([this] { refresh(); });
}

void frmCustomize::chosen(QWidget& box) {
    if (m_loading)
        return;
    setChanged(true);
    setEdited(box, false);
    run([this] { refresh(); });
}

void frmCustomize::setChanged(bool isChanged) {
    m_changed = isChanged;
    ui->Btn_Apply->setEnabled(isChanged);
    if (isChanged)
        return;
    for (QWidget* control : findChildren<QWidget*>()) {
        if (isEdited(*control))
            setEdited(*control, false);
    }
}

bool frmCustomize::asksToSave() const {
    return m_context.desk.ask(u"変更されていますが、保存しますか？"_s);
}

bool frmCustomize::apply() {
    if (!m_watch.mayWrite())
        return false;
    const PiecePanel* panel = textPanel();
    const bool hasText = panel && panel->isShown() && isEdited(panel->pane());
    core::SettingsChange change = m_table.change(m_context.session);
    if (hasText)
        change.set(m_context.session, *category().piece(panel->half()), panel->name());
    change.write();
    m_watch.look();
    if (hasText)
        writeTextPiece(m_context.session, panel->name(), panel->pane().text());
    setChanged(false);
    m_pictureDelay.start();
    return true;
}

void frmCustomize::refresh() {
    if (!m_realTime || m_loading || (m_changed && !apply()))
        return;
    m_preview.refresh();
}

void frmCustomize::takeBack() {
    if (m_watch.mayTakeBack())
        m_backup.restore();
}

// ---- the ways out

void frmCustomize::Btn_Apply_Click() {
    if (apply() && m_realTime && category().isShownAtApply)
        m_preview.refresh();
}

void frmCustomize::Btn_OK_Click() {
    if (!apply())
        return;
    // A set that lies elsewhere, in the data folder of another time, stays the selected one.
    const QString name = selectedCustomizeSet(m_context.session);
    if (platform::fileExists(customizeSetFile(m_context.session, name)))
        selectCustomizeSet(m_context.session, name);
    if (m_backup.isTaken())
        m_backup.drop();
    SaveHtml preview(m_context);
    run([&] { preview.SaveTmpFile(); }); // the set is saved whatever becomes of the page
    preview.showPreview();
    accept();
}

void frmCustomize::reject() {
    run([this] {
        if (m_changed && asksToSave())
            Btn_OK_Click();
        else
            giveUp();
    });
}

/// A set that can't be put back keeps its backup, which the next opening offers.
void frmCustomize::giveUp() {
    run([this] {
        if (!m_backup.isTaken())
            return;
        if (m_backup.isSetChanged())
            takeBack();
        m_backup.drop();
    });
    const QString selected = core::Settings(m_context.session).text(core::keys::kCustomizeIni);
    if (!selected.isEmpty())
        m_context.session.CustIniFile = platform::existingPath(selected);
    ToolWindow::reject();
}

void frmCustomize::done(int result) {
    m_preview.close();
    ToolWindow::done(result);
}

} // namespace velloria::site
