// One month of days to click, in little room.
#pragma once

#include <QDate>
#include <QSet>
#include <QWidget>

class QPainter;
class QToolButton;

namespace velloria::desktop {

/// Days to be found at a glance: those with entries are bold, those whose entries are all private are dotted below too.
struct MarkedDays {
    QSet<QDate> withEntries;
    QSet<QDate> withPublic; ///< of these, the ones with a public entry
};

/// Weeks begin on Sunday. Buttons and wheel turn the pages, arrow and page keys move a highlight: both pick nothing. A
/// click, on a grey day of a neighbouring month too, and Enter pick the day, the one that is the value already
/// included. What is picked becomes the value only when somebody sets it; a highlight that was left goes back to it.
class MonthView : public QWidget {
    Q_OBJECT
public:
    explicit MonthView(QWidget* parent = nullptr);

    QDate value() const { return m_value; }
    /// Turns to the day's month; no signal.
    void setValue(const QDate& value);

    QDate highlighted() const { return m_highlight; }
    /// The first day of the month that is shown.
    QDate shownMonth() const { return m_month; }

    void setMarkedDays(const MarkedDays& days);
    const MarkedDays& markedDays() const { return m_marked; }
    bool isPrivate(const QDate& day) const;

    /// The day with a frame, whichever one is the value.
    void setToday(const QDate& today);
    QDate today() const { return m_today; }

    /// Where a day of the page is drawn; an empty rectangle for one that is not on it.
    QRect cellOf(const QDate& day) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void dateClicked(const QDate& date);
    void monthShown(const QDate& firstDay);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QDate firstShown() const;
    QDate dayAt(const QPoint& position) const;
    QSize cellSize() const;
    int headHeight() const;
    void paintDay(QPainter& painter, const QDate& day) const;
    void showMonth(const QDate& day);
    void highlight(const QDate& day);
    void pick(const QDate& day);
    void snapBack();
    void tell();

    QToolButton* m_previous;
    QToolButton* m_next;
    QDate m_value;
    QDate m_highlight;
    QDate m_month;
    QDate m_pressed;
    QDate m_today;
    MarkedDays m_marked;
    int m_wheel = 0; ///< eighths of a degree that make no page yet
};

} // namespace velloria::desktop
