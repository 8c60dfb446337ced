// The windows while a command waits for what another program holds.
#pragma once

#include <QElapsedTimer>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <deque>
#include <memory>

class QKeyEvent;

namespace velloria::platform {
class Waiting;
}

namespace velloria::desktop {

/// While this lives, a wait does not freeze the windows: they paint, and a wait that lasts shows a box with which it
/// can be left, by its button or by Escape. The box has the mouse and never the keyboard. What is typed meanwhile goes
/// to the text that the caret is in, once the command is done: in its order, and after a failure box that came up in
/// the middle of a word. Of the keys that belong to no text, those that the text's window takes itself count too.
class WaitBox : public QObject {
    Q_OBJECT
public:
    WaitBox();

    /// Another box comes now, which must not stand over this one. Who is typing is let come to a pause first: until the
    /// screen has turned to that box, nobody hears what is typed behind it.
    void makeWay();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void serve(platform::Waiting& waiting);
    void end();
    void show(const QString& what);
    bool isWaiting() const { return m_depth > 0 || m_box; }
    const QWidget* cover() const;
    bool holdsKeys() const;
    bool holdKey(const QObject& watched, QKeyEvent& event);
    bool blocks(const QObject& watched, QEvent& event) const;
    void hold(const QEvent& event);
    void handOver();

    QPointer<QMessageBox> m_box; ///< goes with the window that it stands over
    QTimer m_end;                ///< nobody tells the end of a wait: no more events come
    QPointer<QWidget> m_writer;  ///< had the keyboard when the wait began
    std::deque<std::unique_ptr<QEvent>> m_typed;
    QElapsedTimer m_sinceTyped; ///< or since the end of the wait, where that is later
    QTimer m_handOver;
    int m_depth = 0; ///< of the waits that are served
};

} // namespace velloria::desktop
