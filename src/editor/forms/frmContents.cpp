#include "editor/forms/frmContents.h"

#include "core/keys.h"
#include "core/numbers.h"
#include "core/settings.h"
#include "desktop/command.h"
#include "desktop/form_keys.h"
#include "desktop/text_pane.h"
#include "editor/forms/empty_page.h"
#include "editor/forms/frmCalender.h"
#include "editor/tags.h"
#include "ui_frmContents.h"

#include <QApplication>
#include <QLayout>
#include <QMdiArea>
#include <QProxyStyle>
#include <QScopedValueRollback>
#include <QTabBar>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

constexpr int kDraftDelayMs = 2000;
constexpr int kMostVisibleItems = 20;
constexpr double kUsualFontSize = 12;
constexpr double kLargestFontSize = 400;

/// In points; what is no size is the usual one.
double fontSizeOf(const core::Session& session) {
    const QString text = core::Settings(session).text(core::keys::kContentsFontSize);
    const double size = core::numericValue(text).value_or(kUsualFontSize);
    return size > 0 ? std::min(size, kLargestFontSize) : kUsualFontSize;
}

/// Keeps the wheel from turning to another tab.
class NoWheel : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        return event->type() == QEvent::Wheel || QObject::eventFilter(watched, event);
    }
};

/// Three tabs with their words in both languages, in a window that is narrow by custom.
class NarrowTabs : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        return metric == PM_TabBarTabHSpace ? 8 : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

} // namespace

frmContents::frmContents(desktop::Context& context)
    : MdiChild(context, u"frmContents"_s)
    , ui(std::make_unique<Ui::frmContents>())
    , m_edited(context)
    , m_drafts(context)
    , m_found(m_drafts.read()) {
    auto* page = new QWidget;
    page->setObjectName(u"frmContentsPage"_s);
    ui->setupUi(page);
    m_panes = {ui->txtContents, ui->txtExtend, ui->txtExcerpt};
    makeToolBar();
    prepareControls();
    page->installEventFilter(new EmptyPage(
        page, [this] { return !m_hasDay; }, [this] { return openToday(); }));
    setContents(page);
    {
        const QScopedValueRollback loading(Loading, true);
        run([this] { fillLists(); });
        Contents_Initialize();
    }
    InitUndoRedo();
    connectControls();
    addFormKeys();
    m_draftTimer.setSingleShot(true);
    m_draftTimer.setInterval(kDraftDelayMs);
    connect(&m_draftTimer, &QTimer::timeout, this, &frmContents::keepDraft);
    // Whoever turns to another window may well not come back.
    connect(context.mdi, &QMdiArea::subWindowActivated, &m_watch, [this](const QMdiSubWindow* window) {
        if (window != this)
            keepDraft();
    });
    connect(qApp, &QGuiApplication::applicationStateChanged, &m_watch, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive)
            keepDraft();
    });
}

frmContents::~frmContents() = default;

void frmContents::makeToolBar() {
    auto* bar = new QToolBar;
    bar->setObjectName(u"cToolbar"_s);
    bar->setAccessibleName(u"編集ツール"_s);
    bar->setIconSize({18, 18});
    bar->layout()->setContentsMargins(0, 0, 0, 0);
    ui->toolRow->insertWidget(0, bar);
    m_save = addTool(u"SaveToMDBOnly"_s, desktop::IconName::Save, u"日記を保存します"_s, u"Ctrl+U"_s);
    m_saveAndPreview = addTool(u"SaveToMDB"_s, desktop::IconName::SaveAndPreview,
                               u"日記を保存してローカルブラウザを更新します"_s, u"Ctrl+P"_s);
    bar->addSeparator();
    m_insert[0] = addTool(u"InsertURL"_s, desktop::IconName::InsertUrl, u"BrowserのURLを挿入します"_s);
    m_insert[1] = addTool(u"InsertImg"_s, desktop::IconName::InsertImage, u"イメージを挿入します"_s);
    m_insert[2] = addTool(u"InsertTag"_s, desktop::IconName::InsertTag, u"右で選んだHTMLタグを挿入できます"_s);
    bar->setMinimumWidth(bar->sizeHint().width()); // the list beside it gives way first
}

QToolButton* frmContents::addTool(const QString& key, desktop::IconName icon, const QString& tip, const QString& keys) {
    auto* button = new QToolButton;
    button->setObjectName(key);
    button->setIcon(desktop::icon(icon, palette()));
    button->setToolTip(keys.isEmpty() ? tip : desktop::tipWithKeys(tip, keys));
    button->setAccessibleName(tip);
    button->setAutoRaise(true);
    // The pane that a tool works on keeps the focus when the mouse is used.
    button->setFocusPolicy(Qt::TabFocus);
    static_cast<QToolBar*>(ui->toolRow->itemAt(0)->widget())->addWidget(button);
    return button;
}

void frmContents::prepareControls() {
    QFont font = m_panes[0]->font();
    font.setPointSizeF(fontSizeOf(m_context.session));
    for (desktop::TextPane* pane : m_panes)
        pane->setFont(font);
    for (desktop::Combo* combo : {ui->ComboNumber, ui->ComboGenre, ui->ComboTag})
        combo->setMaxVisibleItems(kMostVisibleItems);
    ui->ComboGenre->makeEditable();
    ui->ComboTag->setPlaceholderText(kTagListRest.toString());
    ui->ComboTag->setToolTip(kTagListRest.toString());
    QTabBar* tabs = ui->TabStrip1->tabBar();
    tabs->setAccessibleName(ui->TabStrip1->accessibleName());
    // Its tabs take the keys themselves. Where it led to them from its own place, Tab never came to the title.
    ui->TabStrip1->setFocusPolicy(Qt::NoFocus);
    ui->TabStrip1->setFocusProxy(nullptr);
    tabs->setFocusPolicy(Qt::TabFocus);
    auto* narrow = new NarrowTabs;
    narrow->setParent(tabs);
    tabs->setStyle(narrow);
    tabs->installEventFilter(new NoWheel(this));
    // In a narrow window each tab keeps its beginning.
    tabs->setElideMode(Qt::ElideRight);
    tabs->setUsesScrollButtons(false);
    for (int i = 0; i < tabs->count(); ++i)
        tabs->setTabToolTip(i, desktop::tipWithKeys(tabs->tabText(i), u"Ctrl+%1"_s.arg(i + 1)));
    // Title and text first, then the boxes and tools from the top. Tab in the title passes the tabs over.
    const QList<QWidget*> order{ui->txtTitle,     tabs,
                                m_panes[0],       m_panes[1],
                                m_panes[2],       ui->picPrevDiaryExist,
                                ui->ComboGenre,   ui->ComboWeather,
                                ui->ComboPrivate, ui->ComboNumber,
                                m_save,           m_saveAndPreview,
                                m_insert[0],      m_insert[1],
                                m_insert[2],      ui->ComboTag};
    for (qsizetype i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
}

/// All of the tabs' words, which can do with less.
QSize frmContents::neededContents() const {
    const QMargins margins = ui->rows->contentsMargins();
    const int tabs = ui->TabStrip1->tabBar()->sizeHint().width() + margins.left() + margins.right();
    return MdiChild::neededContents().expandedTo({tabs, 0});
}

void frmContents::fillLists() {
    ui->ComboWeather->addItems({u"-"_s, u"晴"_s, u"曇"_s, u"雨"_s, u"雪"_s, u"雷"_s});
    ui->ComboPrivate->addItems({u"公開"_s, u"非公開"_s});
    for (const Tag& tag : tags())
        ui->ComboTag->addItem(tag.text.toString());
    ui->ComboTag->setItemData(kLineBreakTag, u"Shift+Enter"_s, Qt::ToolTipRole);
    ui->ComboTag->setItemData(kParagraphTag, u"Ctrl+Enter"_s, Qt::ToolTipRole);
    readGenreList();
}

void frmContents::connectControls() {
    connect(ui->txtTitle, &desktop::LineBox::changed, this, &frmContents::controlChanged);
    connect(ui->txtTitle, &desktop::LineBox::focused, this, [this] { setInsertable(false); });
    connect(static_cast<desktop::LineBox*>(ui->ComboGenre->lineEdit()), &desktop::LineBox::changed, this,
            &frmContents::controlChanged);
    connect(ui->ComboWeather, &QComboBox::activated, this, &frmContents::controlChanged);
    connect(ui->ComboPrivate, &QComboBox::activated, this, &frmContents::controlChanged);
    connect(ui->ComboNumber, &QComboBox::activated, this, [this] { run([this] { pickNumber(); }); });
    connect(ui->ComboTag, &QComboBox::activated, this, [this](int index) { run([=, this] { insertTag(index); }); });
    connect(ui->TabStrip1, &QTabWidget::tabBarClicked, this, [this](int index) {
        if (index >= 0)
            goToPane(index);
    });
    connect(ui->picPrevDiaryExist, &QToolButton::clicked, this, [this] { run([this] { picPrevDiaryExist_Click(); }); });
    connect(m_save, &QToolButton::clicked, this, [this] { run([this] { Btn1Click_ToolBar(); }); });
    connect(m_saveAndPreview, &QToolButton::clicked, this, [this] { run([this] { Btn5Click_ToolBar(); }); });
    connect(m_insert[0], &QToolButton::clicked, this, [this] { run([this] { Btn2Click_ToolBar(); }); });
    connect(m_insert[1], &QToolButton::clicked, this, [this] { run([this] { Btn3Click_ToolBar(); }); });
    connect(m_insert[2], &QToolButton::clicked, this,
            [this] { run([this] { insertTag(ui->ComboTag->currentIndex()); }); });
    for (int i = 0; i < int(m_panes.size()); ++i)
        connectPane(i);
}

void frmContents::connectPane(int index) {
    using desktop::TextPane;
    TextPane* pane = m_panes[std::size_t(index)];
    connect(pane, &TextPane::changed, this, [=, this] { paneChanged(index); });
    connect(pane, &TextPane::focused, this, &frmContents::paneFocused);
    connect(pane, &TextPane::popUpWanted, this,
            [this](const QPoint& position) { m_context.requests.popUpContentsMenu(position); });
    connect(pane, &TextPane::lineBreakWanted, this, [this] { run([this] { insertTag(kLineBreakTag); }); });
    connect(pane, &TextPane::paragraphWanted, this, [this] { run([this] { insertTag(kParagraphTag); }); });
    connect(pane, &TextPane::undoWanted, this, [this] { run([this] { mnuUndo_Click(); }); });
    // Behind the drop: its window may have a box to show, and whoever drags waits for the drop's end.
    connect(
        pane, &TextPane::imageDropped, this, [this](const QString& path) { run([&] { openImageMaker(path); }); },
        Qt::QueuedConnection);
    connect(pane, &TextPane::redoWanted, this, [this] { run([this] { mnuRedo_Click(); }); });
}

void frmContents::addFormKeys() {
    auto* keys = new desktop::FormKeys(*this);
    const auto add = [&](QKeyCombination combination, std::function<void()> action) {
        keys->add(combination, [this, action = std::move(action)] { run(action); });
    };
    for (const Qt::Key save : {Qt::Key_U, Qt::Key_S})
        add(Qt::CTRL | save, [this] { Btn1Click_ToolBar(); });
    add(Qt::CTRL | Qt::Key_P, [this] { Btn5Click_ToolBar(); });
    add(Qt::CTRL | Qt::ALT | Qt::Key_0, [this] {
        m_context.desk.message(platform::MessageKind::Information, u"ｷﾀ━━━━━━(ﾟ∀ﾟ)━━━━━━!!"_s, u"Velloria"_s);
    });
    for (int i = 0; i < int(m_panes.size()); ++i)
        add(Qt::CTRL | Qt::Key(Qt::Key_1 + i), [=, this] { goToPane(i); });
    const auto cycle = [this](int step) {
        const int count = int(m_panes.size());
        goToPane((ui->TabStrip1->currentIndex() + count + step) % count);
    };
    for (const Qt::Key next : {Qt::Key_Tab, Qt::Key_PageDown})
        add(Qt::CTRL | next, [=] { cycle(1); });
    for (const QKeyCombination previous : {Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, Qt::CTRL | Qt::Key_PageUp})
        add(previous, [=] { cycle(-1); });

    auto* titleKeys = new desktop::FormKeys(*ui->txtTitle);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Tab})
        titleKeys->add(key, [this] {
            if (!ui->txtTitle->isComposing())
                goToPane(0);
        });
}

void frmContents::run(const std::function<void()>& action) const {
    desktop::runCommand(m_context.desk, action);
}

void frmContents::controlChanged() {
    if (Loading)
        return;
    ChangeYesNo = true;
    setSavable(true);
    // Not put off by the next change: however long somebody types without a rest, no more than this is at risk.
    if (!m_draftTimer.isActive())
        m_draftTimer.start();
}

void frmContents::paneChanged(int index) {
    if (Loading)
        return;
    const desktop::TextPane& pane = *m_panes[std::size_t(index)];
    m_undo[std::size_t(index)].record(pane.rawText(), pane.selectionStart());
    controlChanged();
}

void frmContents::paneFocused() {
    if (!m_hasDay)
        return;
    setInsertable(true);
    setSavable(ChangeYesNo);
}

void frmContents::setSavable(bool isOn) {
    m_save->setEnabled(isOn);
    m_saveAndPreview->setEnabled(isOn);
}

void frmContents::setInsertable(bool isOn) {
    for (QToolButton* button : m_insert)
        button->setEnabled(isOn);
    ui->ComboTag->setEnabled(isOn);
}

void frmContents::setFieldsEnabled(bool isOn) {
    const std::initializer_list<QWidget*> fields{ui->txtTitle,     ui->ComboGenre,  ui->ComboWeather,
                                                 ui->ComboPrivate, ui->ComboNumber, m_panes[0],
                                                 m_panes[1],       m_panes[2],      ui->TabStrip1};
    QWidget& page = *ui->txtTitle->parentWidget();
    const bool hadFocus = page.isAncestorOf(QApplication::focusWidget());
    for (QWidget* field : fields)
        field->setEnabled(isOn);
    // Without a day the window itself takes the keys; what shows the hint has no text then.
    m_panes[0]->setPlaceholderText(isOn ? QString() : u"カレンダーで日を選ぶと書けます"_s);
    page.setFocusPolicy(isOn ? Qt::NoFocus : Qt::StrongFocus);
    if (!isOn && hadFocus)
        page.setFocus();
}

void frmContents::setOldDiary(bool exists) {
    ui->picPrevDiaryExist->setVisible(exists);
    ui->picPrevDiaryExistNone->setVisible(!exists);
}

/// The buttons' state doesn't wait for the focus to arrive: in a window that is not the active one it comes later.
void frmContents::focusTitle() {
    ui->txtTitle->setFocus();
    setInsertable(false);
}

void frmContents::showPane(int index) {
    if (!m_hasDay)
        return;
    showChild();
    goToPane(index);
}

/// For whoever wants to write. True when today is a new entry, whose title comes first. What is written already is
/// gone on with behind its text: nobody means to change its title.
bool frmContents::openToday() {
    run([this] { m_context.windows.get<frmCalender>().Calender_DateClick(m_context.clock.now().date()); });
    if (!m_hasDay || !m_edited.isStored())
        return m_hasDay;
    goToPane(0);
    pane().moveCursor(QTextCursor::End);
    return false;
}

/// A hidden pane takes no focus, so its tab comes first.
void frmContents::goToPane(int index) {
    if (!m_hasDay)
        return;
    ui->TabStrip1->setCurrentIndex(index);
    pane().setFocus();
    paneFocused();
}

desktop::TextPane& frmContents::pane() const {
    return *m_panes[std::size_t(ui->TabStrip1->currentIndex())];
}

void frmContents::commitComposition() {
    ui->txtTitle->commitComposition();
    static_cast<desktop::LineBox*>(ui->ComboGenre->lineEdit())->commitComposition();
    for (desktop::TextPane* pane : m_panes)
        pane->commitComposition();
}

} // namespace velloria::editor
