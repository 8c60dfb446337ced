#include "editor/forms/entry_panes.h"

#include "core/keys.h"
#include "core/numbers.h"
#include "core/settings.h"
#include "desktop/form_keys.h"

#include <QProxyStyle>
#include <QTabBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

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

EntryPanes::EntryPanes(QTabWidget& tabs, const std::array<desktop::TextPane*, kCount>& panes,
                       const core::Session& session)
    : QObject(&tabs)
    , m_tabs(tabs)
    , m_panes(panes) {
    QFont font = m_panes[0]->font();
    font.setPointSizeF(fontSizeOf(session));
    for (desktop::TextPane* pane : m_panes)
        pane->setFont(font);
    prepareTabs();
    for (int i = 0; i < kCount; ++i)
        connectPane(i);
    connect(&m_tabs, &QTabWidget::tabBarClicked, this, [this](int index) {
        if (index >= 0)
            Q_EMIT tabClicked(index);
    });
    beginUndo();
}

void EntryPanes::prepareTabs() {
    QTabBar* bar = m_tabs.tabBar();
    bar->setAccessibleName(m_tabs.accessibleName());
    // Its tabs take the keys themselves. Where it led to them from its own place, Tab never came to the title.
    m_tabs.setFocusPolicy(Qt::NoFocus);
    m_tabs.setFocusProxy(nullptr);
    bar->setFocusPolicy(Qt::TabFocus);
    auto* narrow = new NarrowTabs;
    narrow->setParent(bar);
    bar->setStyle(narrow);
    bar->installEventFilter(new NoWheel(this));
    // In a narrow window each tab keeps its beginning.
    bar->setElideMode(Qt::ElideRight);
    bar->setUsesScrollButtons(false);
    for (int i = 0; i < bar->count(); ++i)
        bar->setTabToolTip(i, desktop::tipWithKeys(bar->tabText(i), u"Ctrl+%1"_s.arg(i + 1)));
}

void EntryPanes::connectPane(int index) {
    using desktop::TextPane;
    TextPane* pane = m_panes[std::size_t(index)];
    connect(pane, &TextPane::changed, this, [=, this] { Q_EMIT changed(index); });
    connect(pane, &TextPane::focused, this, &EntryPanes::focused);
    connect(pane, &TextPane::popUpWanted, this, &EntryPanes::popUpWanted);
    connect(pane, &TextPane::lineBreakWanted, this, &EntryPanes::lineBreakWanted);
    connect(pane, &TextPane::paragraphWanted, this, &EntryPanes::paragraphWanted);
    connect(pane, &TextPane::undoWanted, this, &EntryPanes::undoWanted);
    connect(pane, &TextPane::redoWanted, this, &EntryPanes::redoWanted);
    connect(pane, &TextPane::imageDropped, this, &EntryPanes::imageDropped, Qt::QueuedConnection);
}

desktop::TextPane& EntryPanes::front() const {
    return *m_panes[std::size_t(frontIndex())];
}

/// A hidden pane takes no focus, so its tab comes first.
void EntryPanes::bringForward(int index) {
    m_tabs.setCurrentIndex(index);
    front().setFocus();
}

void EntryPanes::setEnabled(bool isOn) {
    for (desktop::TextPane* pane : m_panes)
        pane->setEnabled(isOn);
    m_tabs.setEnabled(isOn);
    // What shows the hint has no text then.
    m_panes[0]->setPlaceholderText(isOn ? QString() : u"カレンダーで日を選ぶと書けます"_s);
}

void EntryPanes::commitComposition() {
    for (desktop::TextPane* pane : m_panes)
        pane->commitComposition();
}

void EntryPanes::insertAtCaret(const QString& text) {
    desktop::TextPane& pane = front();
    QTextCursor cursor = pane.textCursor();
    cursor.setPosition(cursor.selectionStart());
    pane.setTextCursor(cursor);
    pane.replaceSelection(text);
}

void EntryPanes::beginUndo() {
    for (std::size_t i = 0; i < m_panes.size(); ++i)
        m_undo[i].reset(m_panes[i]->rawText(), m_panes[i]->selectionStart());
}

void EntryPanes::record(int index) {
    const desktop::TextPane& pane = *m_panes[std::size_t(index)];
    m_undo[std::size_t(index)].record(pane.rawText(), pane.selectionStart());
}

bool EntryPanes::undo() {
    const bool hasUndo = frontIndex() < kCount - 1;
    return hasUndo && restore(m_undo[std::size_t(frontIndex())].undo());
}

bool EntryPanes::redo() {
    return restore(m_undo[std::size_t(frontIndex())].redo());
}

bool EntryPanes::restore(const std::optional<Snapshot>& snapshot) {
    if (snapshot)
        front().restore(snapshot->text, snapshot->caret);
    return snapshot.has_value();
}

int EntryPanes::tabsWidth() const {
    return m_tabs.tabBar()->sizeHint().width();
}

} // namespace velloria::editor
