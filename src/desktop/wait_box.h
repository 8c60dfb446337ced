// The windows while a command waits for what another program holds.
#pragma once

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QTimer>

namespace velloria::platform {
class Waiting;
}

namespace velloria::desktop {

/// While this lives, a wait does not freeze the windows: they paint, and a wait that lasts shows a box with which it
/// can be left. Input waits for the end of a short wait and goes to the box of a long one.
class WaitBox : public QObject {
    Q_OBJECT
public:
    WaitBox();

    /// The wait is over, which else shows a moment later: a box that comes now must not stand over this one.
    void end();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void serve(platform::Waiting& waiting);

    QPointer<QMessageBox> m_box; ///< goes with the window that it stands over
    QTimer m_end;                ///< nobody tells the end of a wait: no more events come
};

} // namespace velloria::desktop
