// The page as it stands in a window: its menu, and what is dropped on it.
#pragma once

#include "desktop/context.h"

#include <QWebEngineView>

class QMenu;

namespace velloria::browser {

/// Nothing that is dropped here leads to another page: a picture opens the image maker while an entry is open, and
/// everything else is refused. The menu speaks the language of the program's menus.
class PageView : public QWebEngineView {
    Q_OBJECT
public:
    PageView(desktop::Context& context, QWidget* parent = nullptr);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    bool acceptsPicture(QDropEvent& event) const;
    void fillMenu(QMenu& menu);
    void copyAddress(const QUrl& address) const;
    void printPage();

    desktop::Context& m_context;
};

} // namespace velloria::browser
