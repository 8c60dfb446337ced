#include "desktop/month_view.h"

#include <QFocusEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolButton>
#include <QToolTip>
#include <QWheelEvent>

#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

constexpr int kColumns = 7;
constexpr int kWeeks = 6;
constexpr int kWheelStep = 120;
constexpr QStringView kWeekdays = u"日月火水木金土";

QDate firstOfMonth(const QDate& day) {
    return {day.year(), day.month(), 1};
}

QToolButton* pageButton(MonthView* view, Qt::ArrowType arrow, const QString& name, const QString& text) {
    auto* button = new QToolButton(view);
    button->setObjectName(name);
    button->setArrowType(arrow);
    button->setAutoRaise(true);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus); // the page keys do the same
    button->setAccessibleName(text);
    button->setToolTip(text);
    return button;
}

} // namespace

MonthView::MonthView(QWidget* parent)
    : QWidget(parent)
    , m_previous(pageButton(this, Qt::LeftArrow, u"PreviousMonth"_s, u"前の月"_s))
    , m_next(pageButton(this, Qt::RightArrow, u"NextMonth"_s, u"次の月"_s)) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(m_previous, &QToolButton::clicked, this, [this] { showMonth(m_month.addMonths(-1)); });
    connect(m_next, &QToolButton::clicked, this, [this] { showMonth(m_month.addMonths(1)); });
    setValue(QDate::currentDate());
}

void MonthView::setValue(const QDate& value) {
    m_value = value;
    m_highlight = value;
    showMonth(value);
    tell();
}

void MonthView::setMarkedDays(const MarkedDays& days) {
    m_marked = days;
    tell();
    update();
}

bool MonthView::isPrivate(const QDate& day) const {
    return m_marked.withEntries.contains(day) && !m_marked.withPublic.contains(day);
}

void MonthView::setToday(const QDate& today) {
    if (today == m_today)
        return;
    m_today = today;
    tell();
    update();
}

QDate MonthView::firstShown() const {
    return m_month.addDays(-(m_month.dayOfWeek() % kColumns)); // Qt's Sunday is 7
}

QSize MonthView::cellSize() const {
    return {width() / kColumns, (height() - headHeight()) / (kWeeks + 1)};
}

int MonthView::headHeight() const {
    return fontMetrics().height() + 6;
}

QRect MonthView::cellOf(const QDate& day) const {
    const qint64 index = firstShown().daysTo(day);
    if (index < 0 || index >= kColumns * kWeeks)
        return {};
    const QSize cell = cellSize();
    return {int(index % kColumns) * cell.width(), headHeight() + int(index / kColumns + 1) * cell.height(),
            cell.width(), cell.height()};
}

QDate MonthView::dayAt(const QPoint& position) const {
    for (int i = 0; i < kColumns * kWeeks; ++i) {
        const QDate day = firstShown().addDays(i);
        if (cellOf(day).contains(position))
            return day;
    }
    return {};
}

QSize MonthView::minimumSizeHint() const {
    const QFontMetrics bold([this] {
        QFont font = this->font();
        font.setBold(true);
        return font;
    }());
    const int cellWidth = qMax(bold.horizontalAdvance(u"30"_s), bold.horizontalAdvance(u"水"_s)) + 4;
    return {cellWidth * kColumns, headHeight() + fontMetrics().height() * (kWeeks + 1)};
}

QSize MonthView::sizeHint() const {
    return minimumSizeHint() + QSize(8 * kColumns, 4 * (kWeeks + 1));
}

void MonthView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    painter.fillRect(rect(), palette().color(group, QPalette::Base));
    painter.setPen(palette().color(group, QPalette::Text));
    painter.drawText(QRect(0, 0, width(), headHeight()), Qt::AlignCenter,
                     u"%1年%2月"_s.arg(m_month.year()).arg(m_month.month()));
    const QSize cell = cellSize();
    for (int column = 0; column < kColumns; ++column)
        painter.drawText(QRect(column * cell.width(), headHeight(), cell.width(), cell.height()), Qt::AlignCenter,
                         QString(kWeekdays[column]));
    painter.drawLine(0, headHeight() + cell.height() - 1, cell.width() * kColumns, headHeight() + cell.height() - 1);
    for (int i = 0; i < kColumns * kWeeks; ++i)
        paintDay(painter, firstShown().addDays(i));
}

void MonthView::paintDay(QPainter& painter, const QDate& day) const {
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QRect place = cellOf(day);
    QFont dayFont = font();
    dayFont.setBold(m_marked.withEntries.contains(day));
    painter.setFont(dayFont);
    QPalette::ColorRole role = QPalette::Text;
    if (day == m_value) {
        painter.fillRect(place, palette().color(group, QPalette::Highlight));
        role = QPalette::HighlightedText;
    }
    const bool isOtherMonth = day.month() != m_month.month() && role == QPalette::Text;
    const QColor colour = palette().color(isOtherMonth ? QPalette::Disabled : group, role);
    painter.setPen(colour);
    const QString number = QString::number(day.day());
    painter.drawText(place, Qt::AlignCenter, number);
    if (isPrivate(day)) {
        const QRect text = painter.fontMetrics().boundingRect(place, Qt::AlignCenter, number);
        const int below = qMin(text.bottom(), place.bottom() - 2);
        painter.setPen(QPen(colour, 2, Qt::DotLine));
        painter.drawLine(text.left(), below, text.right(), below);
    }
    if (day == m_today) {
        painter.setPen(QPen(palette().color(group, role), 1));
        painter.drawRect(place.adjusted(1, 1, -2, -2));
    }
    if (day == m_highlight && hasFocus()) {
        painter.setPen(QPen(palette().color(group, role), 1, Qt::DashLine));
        painter.drawRect(place.adjusted(3, 3, -4, -4));
    }
}

bool MonthView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const QDate day = dayAt(help.pos());
    if (isPrivate(day))
        QToolTip::showText(help.globalPos(), u"非公開"_s, this, cellOf(day));
    else
        QToolTip::hideText();
    return true;
}

void MonthView::resizeEvent(QResizeEvent*) {
    const int side = headHeight();
    m_previous->setGeometry(0, 0, side, side);
    m_next->setGeometry(width() - side, 0, side, side);
}

void MonthView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateGeometry();
}

void MonthView::showMonth(const QDate& day) {
    const QDate first = firstOfMonth(day);
    if (!first.isValid() || first.year() < 1 || first.year() > 9999 || first == m_month) {
        update();
        return;
    }
    m_month = first;
    update();
    Q_EMIT monthShown(first);
}

void MonthView::highlight(const QDate& day) {
    if (!day.isValid() || day.year() < 1 || day.year() > 9999)
        return;
    m_highlight = day;
    showMonth(day);
    tell();
}

void MonthView::pick(const QDate& day) {
    m_highlight = day;
    update();
    Q_EMIT dateClicked(day);
    snapBack();
}

/// A page that was only turned to stays.
void MonthView::snapBack() {
    if (m_highlight == m_value)
        return;
    m_highlight = m_value;
    showMonth(m_value);
    tell();
}

/// The highlighted day is what the view is called, so that it is read out as it moves.
void MonthView::tell() {
    QString name = u"日付 "_s + m_highlight.toString(u"yyyy/MM/dd");
    if (m_highlight == m_today)
        name += u" 今日"_s;
    if (m_marked.withEntries.contains(m_highlight))
        name += u" 日記あり"_s;
    if (isPrivate(m_highlight))
        name += u" 非公開"_s;
    setAccessibleName(name);
}

void MonthView::mousePressEvent(QMouseEvent* event) {
    m_pressed = event->button() == Qt::LeftButton ? dayAt(event->position().toPoint()) : QDate();
}

void MonthView::mouseReleaseEvent(QMouseEvent* event) {
    const QDate pressed = std::exchange(m_pressed, QDate());
    if (event->button() == Qt::LeftButton && pressed.isValid() && dayAt(event->position().toPoint()) == pressed)
        pick(pressed);
}

/// The first click of the two has done it all.
void MonthView::mouseDoubleClickEvent(QMouseEvent*) {
    m_pressed = QDate();
}

void MonthView::wheelEvent(QWheelEvent* event) {
    m_wheel += event->angleDelta().y();
    const int pages = m_wheel / kWheelStep;
    m_wheel -= pages * kWheelStep;
    if (pages != 0)
        showMonth(m_month.addMonths(-pages));
    event->accept();
}

void MonthView::keyPressEvent(QKeyEvent* event) {
    // From a page that the buttons turned to, keys go on there.
    const bool isOnPage = firstOfMonth(m_highlight) == m_month;
    const QDate from = isOnPage ? m_highlight : m_month.addDays(qMin(m_highlight.day(), m_month.daysInMonth()) - 1);
    switch (event->key()) {
    case Qt::Key_Left:
        return highlight(from.addDays(-1));
    case Qt::Key_Right:
        return highlight(from.addDays(1));
    case Qt::Key_Up:
        return highlight(from.addDays(-kColumns));
    case Qt::Key_Down:
        return highlight(from.addDays(kColumns));
    case Qt::Key_PageUp:
        return highlight(from.addMonths(-1));
    case Qt::Key_PageDown:
        return highlight(from.addMonths(1));
    case Qt::Key_Home:
        return highlight(firstOfMonth(from));
    case Qt::Key_End:
        return highlight(firstOfMonth(from).addMonths(1).addDays(-1));
    case Qt::Key_Escape:
        snapBack();
        return event->ignore();
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return pick(m_highlight);
    default:
        QWidget::keyPressEvent(event);
    }
}

void MonthView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void MonthView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        snapBack();
    update();
}

} // namespace velloria::desktop
