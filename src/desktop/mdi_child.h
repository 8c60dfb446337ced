// A child window of the main window, frame included. Its contents scroll when it is smaller than they need.
#pragma once

#include "desktop/context.h"

#include <QMdiSubWindow>

namespace velloria::desktop {

/// Lives in the main window's area from its making on, hidden until it is shown. Closing hides it and destroys nothing.
class MdiChild : public QMdiSubWindow {
    Q_OBJECT
public:
    /// `name` becomes the object name; the main window must be there.
    MdiChild(Context& context, const QString& name);

    /// Shows the window with what it holds, also out of the minimised state, and makes it the active one.
    void showChild();

    /// Position and size in pixels of the area, frame included. A maximised or minimised window becomes a normal one.
    void place(const QRect& geometry);

    /// Position and size of the normal state.
    QRect normalPlace() const;

    /// The size, frame included, below which something of the contents is cut or scrolls. Of a normal window.
    QSize neededSize() const;

    /// Out of the maximised and the minimised state.
    void becomeNormal();

protected:
    /// The same without the frame.
    virtual QSize neededContents() const;

    /// Limits of the normal state, frame included.
    void keepWithin(const QSize& least, const QSize& largest);

    /// Takes the contents over; they keep a size of their own in which nothing is clipped.
    void setContents(QWidget* contents);

    /// Asked before the window is hidden by its frame; false keeps it.
    virtual bool mayHide() { return true; }

    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    Context& m_context;

private:
    void applyLimits();
    void rememberPlace();

    QWidget* m_contents = nullptr;
    QSize m_least{0, 0};
    QSize m_largest;
    QRect m_normalPlace; ///< the toolkit forgets it while the window is maximised
};

} // namespace velloria::desktop
