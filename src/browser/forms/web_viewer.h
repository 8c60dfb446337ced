// A bare window with a page, which the page itself may close.
#pragma once

#include "desktop/context.h"

#include <QWidget>

#include <memory>

class QWebEngineProfile;
class QWebEngineView;

namespace velloria::browser {

class WebPage;

/// It stays above the main window. Esc and a navigation to "event:close", in any case, unload it; the name of an entry
/// behind "event:" opens that in the editor, where it can be seen, and every other one does nothing. Links to the web
/// open in the browser window. A picture that is not among those of the logs yet is shown from "DiaryParts". The engine
/// starts with the first page.
class WebViewer : public QWidget {
    Q_OBJECT
public:
    ~WebViewer() override;

    /// Shows a file of this machine, read anew, at the mark behind "#" if there is one.
    void Navigate(const QString& path);

protected:
    WebViewer(desktop::Context& context, const QString& name);

    /// Scripts for its pages (see WebPage::setScript).
    void setScript(const QString& name, const QString& source);

    /// Moves beside the editor if that is seen, and becomes as narrow as the wider side of it.
    void stepAside();

    /// Position and size of the normal state.
    QRect normalPlace() const;

    desktop::Context& m_context;

private:
    void startEngine();
    void onEvent(const QString& name);
    void openEntry(const QString& day, int number);

    std::shared_ptr<QWebEngineProfile> m_profile;
    QWebEngineView* m_view = nullptr;
};

} // namespace velloria::browser
