// The test of a box's text when somebody leaves the box.
#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QWidget;

namespace velloria::desktop {

/// The test runs once the focus is where it goes, so that it may show a box and call the focus back. It is left out
/// when the focus comes back by itself (from a menu, from another window), and where the text matters no more: the box
/// is disabled, its window is closing, or the button that gives up has the focus.
class LeaveCheck : public QObject {
    Q_OBJECT
public:
    /// Belongs to `box`. `giveUp` is the Cancel button of its window.
    LeaveCheck(QWidget& box, QWidget& giveUp, std::function<void()> check);

    /// Leaves out a test that waits: something else has already looked at the text.
    void drop() { m_isWaiting = false; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void runCheck();

    QWidget& m_box;
    QPointer<QWidget> m_giveUp;
    std::function<void()> m_check;
    bool m_isWaiting = false;
};

} // namespace velloria::desktop
