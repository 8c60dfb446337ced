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

protected:
    /// Takes the contents over; they keep a size of their own in which nothing is clipped.
    void setContents(QWidget* contents);

    /// Asked before the window is hidden by its frame; false keeps it.
    virtual bool mayHide() { return true; }

    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    Context& m_context;

private:
    void rememberPlace();

    QRect m_normalPlace; ///< the toolkit forgets it while the window is maximised
};

} // namespace velloria::desktop
