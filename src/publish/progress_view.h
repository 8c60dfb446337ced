// The progress window as a routine of network work changes it, piece by piece.
#pragma once

#include "platform/desk.h"

namespace velloria::publish {

/// open first; each change after it is shown at once, but for the bar, which waits for the next text. One of the
/// `allow` calls stands at the end, or close: else the window stays in the person's way. Nothing fails here.
///
///     view.open(u"FTP"_s);
///     view.setBar(3, 10);
///     view.setText(u"3/10"_s); // the bar comes with it
///     view.allowClosing();
class ProgressView {
public:
    explicit ProgressView(platform::Desk& desk)
        : m_desk(desk) {}

    /// Shows an empty window that can't be closed yet.
    void open(const QString& caption);
    void setTitle(const QString& title);
    void setText(const QString& text);
    void setTitleAndText(const QString& title, const QString& text);
    /// Drawn with the next text or title. A value above the maximum is a full bar.
    void setBar(int value, int max);
    void setBarValue(int value) { m_window.value = value; }
    /// From now on OK and the frame close the window.
    void allowClosing();
    /// The same for OK alone.
    void allowOk();
    /// The window gets a button that asks for the end of the work, until it may be closed.
    void allowStopping() { m_window.isStopEnabled = true; }
    void close();

    const QString& text() const { return m_window.text; }

private:
    void show();

    platform::Desk& m_desk;
    platform::ProgressWindow m_window;
};

} // namespace velloria::publish
