// The browser window: local pages, the manual and the web, with address box, favourites and search box.
#pragma once

#include "browser/favourites.h"
#include "browser/histories.h"
#include "desktop/mdi_child.h"

#include <QUrl>

#include <memory>

class QAction;
class QBoxLayout;
class QComboBox;
class QToolBar;
class QWebEngineProfile;
class QWebEngineView;

namespace velloria::browser {

class WebPage;

/// The engine starts after the first drawing of the main window, so that nobody waits for it at the start; what is
/// navigated to before comes then.
class frmBrowser : public desktop::MdiChild {
    Q_OBJECT
public:
    explicit frmBrowser(desktop::Context& context);
    ~frmBrowser() override;

    /// A path of this machine, with "#" and a mark behind the name of a page if need be, or an address of the web. The
    /// file is read anew whatever is shown. What is neither does nothing.
    void Navigate(const QString& address);

    /// Ends loading, also what was to be loaded once the engine runs.
    void Stop();

    /// Address and title of the page that was last shown completely; the title of a page without one is its file name.
    QString LocationURL() const { return m_locationUrl; }
    QString LocationName() const { return m_locationName; }

    /// Empties the list and reads it anew from its history file, if the history is kept.
    void HistoryAdd_URL();
    void HistoryAdd_Find();

    /// Lists the folder of favourites that was picked last, the first time the root.
    void FillFavorites();

    /// Writes histories and search site. The destructor calls it.
    void keep();

    /// For the windows that show pages as well; the engine starts with it.
    std::shared_ptr<QWebEngineProfile> profile();

    /// The page itself, for whoever works in it; the engine starts with it.
    WebPage& startedPage();

    /// Set with each document that is shown completely, also with that of a frame which comes later than the document
    /// around it; whoever waits for one clears it.
    bool bDocumentComplete = false;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QToolBar* makeToolBar();
    QWidget* makeBar();
    void waitForDrawing();
    void startEngine();
    void onDocumentComplete();
    void onEvent(const QString& name);
    void openAddress();
    void previewPage();
    void goHome();
    void search();
    void rememberWords();
    void pickFavourite(int index);
    WebPage* page() const;

    QToolBar* m_toolbar = nullptr;
    QComboBox* m_address = nullptr;
    QComboBox* m_favourites = nullptr;
    QComboBox* m_site = nullptr;
    QComboBox* m_words = nullptr;
    QBoxLayout* m_layout = nullptr;

    std::shared_ptr<QWebEngineProfile> m_profile;
    QWebEngineView* m_view = nullptr; ///< none until the engine is started
    QUrl m_pending;                   ///< what is to be shown once the engine is started
    bool m_isWaitingForDrawing = false;

    Histories m_histories;
    QString m_locationUrl;
    QString m_locationName;
    QString m_folder; ///< of the favourites shown; "" before the first listing
};

} // namespace velloria::browser
