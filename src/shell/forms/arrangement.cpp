#include "shell/forms/arrangement.h"

#include "browser/forms/frmBrowser.h"
#include "core/files.h"
#include "core/keys.h"
#include "core/settings_change.h"
#include "desktop/twips.h"
#include "desktop/window_place.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "platform/directory.h"

#include <QMdiArea>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

using desktop::toTwips;

// In twips, for every system but one whose frames were thinner and which this program does not run on.
constexpr qint32 kEditorTop = 3250;
constexpr qint32 kEditorWidth = 4185;
constexpr qint32 kBelowEditor = 3260;
constexpr qint32 kBesideBrowser = 4225;

/// Places of a child window by `place`; what it does not tell, or tells as a size of nothing, by `standard`.
QRect geometryOf(const desktop::WindowPlace& place, const desktop::WindowPlace& standard) {
    const auto size = [](std::optional<qint32> value, std::optional<qint32> standardValue) {
        return desktop::fromTwips(value.value_or(0) > 0 ? *value : standardValue.value_or(0));
    };
    return {desktop::fromTwips(place.left.value_or(standard.left.value_or(0))),
            desktop::fromTwips(place.top.value_or(standard.top.value_or(0))), size(place.width, standard.width),
            size(place.height, standard.height)};
}

/// A child that was left out of reach, or larger than any screen, comes back into the area. One that somebody left half
/// outside stays.
QRect reachable(const QRect& stored, const QRect& area) {
    constexpr QSize kGrip(60, 20); // of the title bar
    constexpr int kLargest = 16'384;
    const bool isSane = stored.width() <= kLargest && stored.height() <= kLargest;
    const QRect titleBar(stored.topLeft(), QSize(stored.width(), kGrip.height()));
    const QRect seen = titleBar.intersected(area);
    const bool isGrasped = seen.width() >= std::min(kGrip.width(), stored.width()) && seen.height() == kGrip.height();
    return isSane && isGrasped ? stored : desktop::movedInto(stored, area);
}

/// The area without its scroll bars, so that its inner size is the one that the arranged windows will fill: each bar
/// makes the other one needed, and both would stay.
class WithoutScrollBars {
public:
    explicit WithoutScrollBars(QMdiArea& area)
        : m_area(area) {
        setPolicy(Qt::ScrollBarAlwaysOff);
    }
    ~WithoutScrollBars() { setPolicy(Qt::ScrollBarAsNeeded); }
    WithoutScrollBars(const WithoutScrollBars&) = delete;
    WithoutScrollBars& operator=(const WithoutScrollBars&) = delete;

private:
    void setPolicy(Qt::ScrollBarPolicy policy) {
        m_area.setHorizontalScrollBarPolicy(policy);
        m_area.setVerticalScrollBarPolicy(policy);
    }

    QMdiArea& m_area;
};

struct StandardPlaces {
    desktop::WindowPlace editor;
    desktop::WindowPlace browser;
};

/// `calendar` is that window's own size, `editorWidth` what the editor needs. In a large font either may be more than
/// its standard place has; the others make room.
StandardPlaces standardPlaces(const QSize& inner, const QSize& calendar, int editorWidth) {
    const qint32 height = toTwips(inner.height());
    const qint32 width = toTwips(inner.width());
    const qint32 column = std::max({kEditorWidth, toTwips(calendar.width()), toTwips(editorWidth)});
    const qint32 top = std::max(kEditorTop, toTwips(calendar.height()));
    return {{top, 0, std::max(0, height - top - (kBelowEditor - kEditorTop)), column},
            {0, column, height, std::max(0, width - column - (kBesideBrowser - kEditorWidth))}};
}

/// Equal shares of the room for all but those that may not be so wide or so narrow.
QList<int> columnWidths(const QList<QMdiSubWindow*>& windows, int room) {
    const int share = windows.isEmpty() ? 0 : room / int(windows.size());
    QList<int> widths;
    int equals = 0;
    for (const QMdiSubWindow* window : windows) {
        const int width = std::clamp(share, window->minimumWidth(), window->maximumWidth());
        widths += width == share ? 0 : width;
        room -= widths.last();
        equals += width == share ? 1 : 0;
    }
    for (int& width : widths) {
        if (width != 0)
            continue;
        width = std::max(0, room / equals--);
        room -= width;
    }
    return widths;
}

} // namespace

void Arrangement::mnuStandard() {
    arrange({}, {}, {});
}

void Arrangement::mnuLoadWndPos() {
    const core::Session& session = m_context.session;
    arrange(desktop::readPlace(session, core::keys::kCalenderPlace),
            desktop::readPlace(session, core::keys::kDiaryEditerPlace),
            desktop::readPlace(session, core::keys::kBrowserPlace));
}

void Arrangement::arrange(const desktop::WindowPlace& calendarPlace, const desktop::WindowPlace& editorPlace,
                          const desktop::WindowPlace& browserPlace) {
    auto& calendar = m_context.windows.get<editor::frmCalender>();
    auto& contents = m_context.windows.get<editor::frmContents>();
    auto& browser = m_context.windows.get<browser::frmBrowser>();
    for (desktop::MdiChild* child : std::initializer_list<desktop::MdiChild*>{&browser, &contents, &calendar})
        child->becomeNormal();
    const WithoutScrollBars filled(*m_context.mdi);
    const QRect area = m_context.mdi->viewport()->rect();
    const StandardPlaces standard = standardPlaces(area.size(), calendar.ownSize(), contents.neededSize().width());
    browser.place(reachable(geometryOf(browserPlace, standard.browser), area));
    contents.place(reachable(geometryOf(editorPlace, standard.editor), area));
    calendar.place(reachable({geometryOf(calendarPlace, {}).topLeft(), calendar.ownSize()}, area));
    browser.showChild();
    contents.showChild();
    calendar.showChild();
    showStartPage();
}

void Arrangement::mnuSaveWndPos() {
    const core::Session& session = m_context.session;
    desktop::WindowPlace calendar = desktop::placeOf(m_context.windows.get<editor::frmCalender>().normalPlace());
    calendar.height.reset();
    calendar.width.reset();
    core::SettingsChange places;
    desktop::addPlace(places, session, core::keys::kCalenderPlace, calendar);
    desktop::addPlace(places, session, core::keys::kDiaryEditerPlace,
                      desktop::placeOf(m_context.windows.get<editor::frmContents>().normalPlace()));
    desktop::addPlace(places, session, core::keys::kBrowserPlace,
                      desktop::placeOf(m_context.windows.get<browser::frmBrowser>().normalPlace()));
    places.writeQuietly();
}

void Arrangement::MnuVertical() {
    QList<QMdiSubWindow*> visible;
    for (QMdiSubWindow* window : m_context.mdi->subWindowList()) {
        if (window->isVisible() && !window->isMinimized())
            visible += window;
    }
    std::stable_sort(visible.begin(), visible.end(),
                     [](const QMdiSubWindow* a, const QMdiSubWindow* b) { return a->x() < b->x(); });
    const WithoutScrollBars filled(*m_context.mdi);
    const QSize inner = m_context.mdi->viewport()->size();
    for (QMdiSubWindow* window : visible) {
        if (window->isMaximized())
            window->showNormal();
    }
    const QList<int> widths = columnWidths(visible, inner.width());
    int left = 0;
    for (qsizetype i = 0; i < visible.size(); ++i) {
        visible[i]->setGeometry(left, 0, widths[i], std::min(inner.height(), visible[i]->maximumHeight()));
        left += widths[i];
    }
}

void Arrangement::showStartPage() {
    const QString preview = core::files::kPreview.in(m_context.session);
    m_context.desk.navigate(platform::fileExists(preview) ? preview : core::files::kSimpleManual.in(m_context.session));
}

} // namespace velloria::shell
