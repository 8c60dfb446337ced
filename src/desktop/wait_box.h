// The windows while a command waits for what another program holds.
#pragma once

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <vector>

namespace velloria::platform {
class Waiting;
}

namespace velloria::desktop {

/// While this lives, a wait does not freeze the windows: they paint, and a wait that lasts shows a box with which it
/// can be left, by its button or by Escape. Input waits for the end of a short wait. In a long one the box has the
/// mouse; what is typed goes to where the keyboard was, once the command is done.
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
    bool isTypedAhead(const QObject& watched, const QEvent& event) const;
    void handOver();

    QPointer<QMessageBox> m_box; ///< goes with the window that it stands over
    QTimer m_end;                ///< nobody tells the end of a wait: no more events come
    QPointer<QWidget> m_writer;  ///< had the keyboard when the box came
    std::vector<std::unique_ptr<QEvent>> m_typed;
    QTimer m_handOver;
    int m_depth = 0; ///< of the waits that are served
};

} // namespace velloria::desktop
