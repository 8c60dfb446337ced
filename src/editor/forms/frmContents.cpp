#include "editor/forms/frmContents.h"

#include "browser/forms/frmPrevDiaryViewer.h"
#include "core/day_key.h"
#include "core/files.h"
#include "desktop/command.h"
#include "desktop/form_keys.h"
#include "editor/forms/editor_tool_bar.h"
#include "editor/forms/empty_page.h"
#include "editor/forms/frmHTMLMakeImage.h"
#include "editor/forms/insertions.h"
#include "site/same_day_page.h"
#include "site/save_html.h"
#include "ui_frmContents.h"

#include <QApplication>
#include <QMdiArea>
#include <QScopedValueRollback>
#include <QTabBar>

using namespace Qt::StringLiterals;

namespace velloria::editor {

frmContents::frmContents(desktop::Context& context)
    : MdiChild(context, u"frmContents"_s)
    , m_day(context.windows.get<OpenDay>())
    , ui(std::make_unique<Ui::frmContents>()) {
    auto* page = new QWidget;
    page->setObjectName(u"frmContentsPage"_s);
    ui->setupUi(page);
    m_tools = new EditorToolBar(palette());
    ui->toolRow->insertWidget(0, m_tools);
    m_boxes = new EntryBoxes(*ui->txtTitle, *ui->ComboGenre, *ui->ComboWeather, *ui->ComboPrivate);
    m_panes =
        new EntryPanes(*ui->TabStrip1, std::array{ui->txtContents, ui->txtExtend, ui->txtExcerpt}, context.session);
    m_insertions = std::make_unique<Insertions>(context, *m_panes, *ui->ComboTag, [this] { goToPane(0); });
    prepareControls();
    page->installEventFilter(new EmptyPage(
        page, [this] { return !m_day.isOpen(); }, [this] { return openToday(); }));
    setContents(page);
    m_day.attach(*this);
    connectDay();
    run([this] { m_day.readGenres(); });
    Contents_Initialize();
    connectControls();
    addFormKeys();
    watchForLeaving();
}

frmContents::~frmContents() {
    m_day.detach();
}

// ---- its controls

void frmContents::prepareControls() {
    constexpr int kMostVisibleItems = 20;
    for (desktop::Combo* combo : {ui->ComboNumber, ui->ComboGenre, ui->ComboTag})
        combo->setMaxVisibleItems(kMostVisibleItems);
    // Title and text first, then the boxes and tools from the top. Tab in the title passes the tabs over.
    QList<QWidget*> order{ui->txtTitle,     ui->TabStrip1->tabBar(), ui->txtContents, ui->txtExtend,
                          ui->txtExcerpt,   ui->picPrevDiaryExist,   ui->ComboGenre,  ui->ComboWeather,
                          ui->ComboPrivate, ui->ComboNumber};
    order += m_tools->tools();
    order += ui->ComboTag;
    for (qsizetype i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
}

QSize frmContents::neededContents() const {
    const QMargins margins = ui->rows->contentsMargins();
    return MdiChild::neededContents().expandedTo({m_panes->tabsWidth() + margins.left() + margins.right(), 0});
}

void frmContents::connectDay() {
    connect(&m_day, &OpenDay::entryShown, this, &frmContents::showEntry);
    connect(&m_day, &OpenDay::numbersChanged, this, &frmContents::showNumbers);
    connect(&m_day, &OpenDay::entryWanted, this, &frmContents::showChild);
    connect(&m_day, &OpenDay::dirtyChanged, m_tools, &EditorToolBar::setSavable);
    connect(&m_day, &OpenDay::closed, this, &frmContents::showNoDay);
    connect(&m_day, &OpenDay::genresChanged, this, [this] {
        const QScopedValueRollback loading(Loading, true);
        m_boxes->setGenres(m_day.genres());
    });
}

void frmContents::connectControls() {
    const auto on = [this](auto* sender, auto signal, std::function<void()> action) {
        connect(sender, signal, this, [this, action = std::move(action)] { run(action); });
    };
    connect(m_boxes, &EntryBoxes::changed, this, [this] {
        if (!Loading)
            m_day.edited();
    });
    connect(m_panes, &EntryPanes::changed, this, [this](int index) {
        if (Loading)
            return;
        m_panes->record(index);
        m_day.edited();
    });
    connect(ui->txtTitle, &desktop::LineBox::focused, this, [this] { setInsertable(false); });
    connect(m_panes, &EntryPanes::focused, this, &frmContents::paneFocused);
    connect(m_panes, &EntryPanes::tabClicked, this, &frmContents::goToPane);
    connect(m_panes, &EntryPanes::popUpWanted, this,
            [this](const QPoint& position) { m_context.requests.popUpContentsMenu(position); });
    connect(m_panes, &EntryPanes::imageDropped, this,
            [this](const QString& path) { run([&] { openImageMaker(path); }); });
    on(m_panes, &EntryPanes::lineBreakWanted, [this] { insertTag(kLineBreakTag); });
    on(m_panes, &EntryPanes::paragraphWanted, [this] { insertTag(kParagraphTag); });
    on(m_panes, &EntryPanes::undoWanted, [this] { mnuUndo_Click(); });
    on(m_panes, &EntryPanes::redoWanted, [this] { mnuRedo_Click(); });
    on(ui->ComboNumber, &QComboBox::activated, [this] {
        if (!Loading)
            m_day.openNumber(ui->ComboNumber->currentText().toInt());
    });
    on(ui->ComboTag, &QComboBox::activated, [this] { insertTag(ui->ComboTag->currentIndex()); });
    on(ui->picPrevDiaryExist, &QToolButton::clicked, [this] { picPrevDiaryExist_Click(); });
    on(m_tools, &EditorToolBar::saveWanted, [this] { Btn1Click_ToolBar(); });
    on(m_tools, &EditorToolBar::saveAndPreviewWanted, [this] { Btn5Click_ToolBar(); });
    on(m_tools, &EditorToolBar::addressWanted, [this] { Btn2Click_ToolBar(); });
    on(m_tools, &EditorToolBar::imageWanted, [this] { Btn3Click_ToolBar(); });
    on(m_tools, &EditorToolBar::tagWanted, [this] { insertTag(ui->ComboTag->currentIndex()); });
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
    for (int i = 0; i < EntryPanes::kCount; ++i)
        add(Qt::CTRL | Qt::Key(Qt::Key_1 + i), [=, this] { goToPane(i); });
    const auto cycle = [this](int step) {
        goToPane((m_panes->frontIndex() + EntryPanes::kCount + step) % EntryPanes::kCount);
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

/// Whoever turns to another window may well not come back.
void frmContents::watchForLeaving() {
    connect(m_context.mdi, &QMdiArea::subWindowActivated, &m_watch, [this](const QMdiSubWindow* window) {
        if (window != this)
            m_day.keepDraft();
    });
    connect(qApp, &QGuiApplication::applicationStateChanged, &m_watch, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive)
            m_day.keepDraft();
    });
}

void frmContents::run(const std::function<void()>& action) const {
    desktop::runCommand(m_context.desk, action);
}

// ---- what is shown

void frmContents::showNoDay() {
    const QScopedValueRollback loading(Loading, true);
    setWindowTitle(u"日記作成"_s);
    fill({});
    ui->ComboNumber->clear();
    ui->ComboTag->setCurrentIndex(-1);
    ui->TabStrip1->setCurrentIndex(0);
    setFieldsEnabled(false);
    setOldDiary(false);
    m_tools->setSavable(false);
    setInsertable(false);
    InitUndoRedo();
}

void frmContents::Contents_Enable() {
    const QScopedValueRollback loading(Loading, true);
    setCaption();
    setFieldsEnabled(true);
    setOldDiary(m_day.isInOtherYears());
    setInsertable(true);
}

void frmContents::AddComboNumber(int count) {
    ui->ComboNumber->clear();
    for (int number = 1; number <= count; ++number)
        ui->ComboNumber->addItem(QString::number(number));
}

void frmContents::showEntry(const std::optional<store::Entry>& entry) {
    showChild();
    const QScopedValueRollback loading(Loading, true);
    fill(entry.value_or(store::Entry()));
    if (!entry)
        m_boxes->showFirstGenre();
    showNumbers();
    Contents_Enable();
    ui->txtTitle->setFocus();
    setInsertable(
        false); // does not wait for the focus to arrive: in a window that is not the active one it comes later
    InitUndoRedo();
}

void frmContents::showNumbers() {
    const QScopedValueRollback loading(Loading, true);
    AddComboNumber(m_day.count());
    ui->ComboNumber->setCurrentIndex(m_day.number() - 1);
    setCaption();
}

void frmContents::setCaption() {
    setWindowTitle(u"%1分の日記[%2/%3]"_s.arg(m_context.session.EnterDay).arg(m_day.number()).arg(m_day.count()));
}

/// A missing value, as all are in an entry that is empty, shows as its default.
void frmContents::fill(const store::Entry& entry) {
    const store::Entry shown = store::withDefaults(entry);
    ui->txtContents->setText(shown.contents);
    ui->txtExtend->setText(shown.extend);
    ui->txtExcerpt->setText(shown.excerpt);
    m_boxes->fill(shown);
}

store::Entry frmContents::fields() const {
    store::Entry entry;
    m_boxes->read(entry);
    entry.contents = ui->txtContents->text();
    entry.extend = ui->txtExtend->text();
    entry.excerpt = ui->txtExcerpt->text();
    return entry;
}

void frmContents::setFieldsEnabled(bool isOn) {
    QWidget& page = *ui->txtTitle->parentWidget();
    const bool hadFocus = page.isAncestorOf(QApplication::focusWidget());
    m_boxes->setEnabled(isOn);
    ui->ComboNumber->setEnabled(isOn);
    m_panes->setEnabled(isOn);
    // Without a day the window itself takes the keys.
    page.setFocusPolicy(isOn ? Qt::NoFocus : Qt::StrongFocus);
    if (!isOn && hadFocus)
        page.setFocus();
}

void frmContents::setOldDiary(bool exists) {
    ui->picPrevDiaryExist->setVisible(exists);
    ui->picPrevDiaryExistNone->setVisible(!exists);
}

void frmContents::setInsertable(bool isOn) {
    m_tools->setInsertable(isOn);
    ui->ComboTag->setEnabled(isOn);
}

void frmContents::paneFocused() {
    if (!m_day.isOpen())
        return;
    setInsertable(true);
    m_tools->setSavable(m_day.isDirty());
}

void frmContents::goToPane(int index) {
    if (!m_day.isOpen())
        return;
    m_panes->bringForward(index);
    paneFocused();
}

void frmContents::showPane(int index) {
    if (!m_day.isOpen())
        return;
    showChild();
    goToPane(index);
}

/// For whoever wants to write. True when today is a new entry, whose title comes first. What is written already is
/// gone on with behind its text: nobody means to change its title.
bool frmContents::openToday() {
    run([this] { m_day.openDay(core::dayKey(m_context.clock.now().date())); });
    if (!m_day.isOpen() || !m_day.isStored())
        return m_day.isOpen();
    goToPane(0);
    m_panes->front().moveCursor(QTextCursor::End);
    return false;
}

bool frmContents::confirmClose() {
    bool mayClose = false;
    run([&] { mayClose = m_day.mayClose(); });
    return mayClose;
}

// ---- what is done with it

void frmContents::commitComposition() {
    m_boxes->commitComposition();
    m_panes->commitComposition();
}

void frmContents::Btn5Click_ToolBar() {
    Btn1Click_ToolBar();
    site::SaveHtml(m_context).previewStep();
}

void frmContents::picPrevDiaryExist_Click() {
    site::sameDayCommand(m_context, m_context.session.EnterDay, [this](const QString& caption, const QString& file) {
        m_context.windows.get<browser::frmPrevDiaryViewer>().showPage(caption, file);
    });
}

void frmContents::Paste() {
    commitComposition();
    if (m_day.isOpen())
        m_panes->front().paste();
}

void frmContents::mnuUndo_Click() {
    commitComposition();
    const QScopedValueRollback loading(Loading, true);
    if (m_panes->undo())
        m_day.undone();
}

void frmContents::mnuRedo_Click() {
    commitComposition();
    const QScopedValueRollback loading(Loading, true);
    if (m_panes->redo())
        m_day.undone();
}

/// Into an open day alone, after what is still being composed.
void frmContents::insert(const std::function<void(Insertions&)>& what) {
    if (!m_day.isOpen())
        return;
    commitComposition();
    what(*m_insertions);
}

void frmContents::Btn2Click_ToolBar() {
    insert([](Insertions& into) { into.insertAddress(); });
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
    insert([](Insertions& into) { into.insertFromClipboard(exchange::ParagraphTags::None); });
}

void frmContents::InsertFromCB_Exchange() {
    insert([](Insertions& into) { into.insertFromClipboard(exchange::ParagraphTags::Added); });
}

void frmContents::insertTag(int index) {
    insert([index](Insertions& into) { into.insertTag(index); });
}

/// Where makers insert, whatever pane is in front.
void frmContents::replaceSelection(const std::function<QString(const QString&)>& replacement) {
    commitComposition();
    m_panes->bringForward(0);
    ui->txtContents->replaceSelection(replacement(ui->txtContents->selectedText()));
}

void frmContents::insertAtCaret(const QString& text) {
    commitComposition();
    m_panes->bringForward(0);
    m_panes->insertAtCaret(text);
}

} // namespace velloria::editor
