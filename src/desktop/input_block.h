// The windows while work goes on that nobody's hand may come between.
#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <vector>

namespace velloria::desktop {

/// While this lives, nothing that a person does reaches the windows: keys, mouse, drops and what an input method writes
/// are dropped. A box that comes up meanwhile is answered as ever. The wish to close the main window is noted and
/// fulfilled from the event loop behind the block; no other window closes.
class InputBlock : public QObject {
    Q_OBJECT
public:
    explicit InputBlock(QWidget* mainWindow);
    ~InputBlock() override;

    /// Lets the windows paint and the timers run, once. What a person does waits, and so does what programs send.
    void serve();

    /// Drops what has been done up to now: a box that is about to come up must not be answered by it.
    void dropWaiting();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void pump(const std::function<void()>& processEvents);
    bool mayReach(const QObject& watched) const;
    bool isLaterBox(const QWidget& window) const;
    bool drop(const QObject& watched, QEvent& event);

    QPointer<QWidget> m_mainWindow;
    std::vector<QPointer<QWidget>> m_before; ///< the windows that were on the screen when the work began
    bool m_isPumping = false;
    bool m_isCloseWanted = false;
};

} // namespace velloria::desktop
