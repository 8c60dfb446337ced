#include "browser/forms/web_profile.h"

#include "browser/forms/file_guard.h"
#include "core/files.h"
#include "desktop/command.h"

#include <QDir>
#include <QLoggingCategory>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QWebEngineDownloadRequest>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlSchemeHandler>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

/// Answers nothing. The scheme needs a handler all the same: without one the engine shows its own page of refusal
/// instead of asking whether to go there.
class EventHandler : public QWebEngineUrlSchemeHandler {
public:
    using QWebEngineUrlSchemeHandler::QWebEngineUrlSchemeHandler;
    void requestStarted(QWebEngineUrlRequestJob* job) override { job->fail(QWebEngineUrlRequestJob::RequestAborted); }
};

void tellEnd(const QWebEngineDownloadRequest& download, platform::Desk& desk) {
    const QString path = QDir(download.downloadDirectory()).filePath(download.downloadFileName());
    if (download.state() == QWebEngineDownloadRequest::DownloadCompleted)
        desk.status(u"ファイル %1 を保存しました。"_s.arg(path));
    else
        desk.status(u"ファイル %1 を保存できませんでした。"_s.arg(path));
}

void askForPlace(QWebEngineDownloadRequest& download, platform::Desk& desk) {
    platform::PathRequest request;
    request.mode = platform::PathMode::Save;
    request.title = u"ファイルの保存..."_s;
    request.folder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    request.name = download.suggestedFileName();
    const std::optional<QString> path = desk.choosePath(request);
    if (!path) {
        download.cancel();
        return;
    }
    const QFileInfo file(*path);
    download.setDownloadDirectory(file.path());
    download.setDownloadFileName(file.fileName());
    if (download.isSavePageDownload() && file.suffix().startsWith(u"htm"_s, Qt::CaseInsensitive))
        download.setSavePageFormat(QWebEngineDownloadRequest::CompleteHtmlSaveFormat);
    QObject::connect(&download, &QWebEngineDownloadRequest::isFinishedChanged, &download,
                     [&download, &desk] { tellEnd(download, desk); });
    download.accept();
}

/// What has to be said before the engine starts; said again later it changes nothing.
void prepareEngine() {
    // A page drawn by the graphics card would need another kind of main window: the one on the screen would be taken
    // away and made anew, with the focus lost, as soon as the first page comes into it.
    const QString software = u"software"_s;
    if (QQuickWindow::sceneGraphBackend() != software)
        QQuickWindow::setSceneGraphBackend(software);
    // Old pages do not name their encoding, and the engine guesses by language. Its own pages are Japanese with that.
    constexpr char kFlags[] = "QTWEBENGINE_CHROMIUM_FLAGS";
    constexpr char kJapanese[] = "--lang=ja";
    const QByteArray flags = qgetenv(kFlags);
    if (!flags.contains(kJapanese))
        qputenv(kFlags, flags + ' ' + kJapanese);
    // It would tell its whole configuration to the terminal of whoever started the program there.
    QLoggingCategory::setFilterRules(u"qt.webenginecontext.info=false\nqt.webenginecontext.debug=false"_s);
}

} // namespace

std::shared_ptr<QWebEngineProfile> makeProfile(const core::Session& session, platform::Desk& desk) {
    prepareEngine();
    auto profile = std::make_shared<QWebEngineProfile>(u"velloria"_s);
    profile->setPersistentStoragePath(core::files::kBrowserFolder.in(session));
    profile->setCachePath(core::files::kBrowserCache.in(session));
    // A service forgets a login with the end of the browser, unless a box on its page asks it to remember: a post of
    // tomorrow would log in once more.
    profile->setPersistentCookiesPolicy(QWebEngineProfile::ForcePersistentCookies);
    profile->setUrlRequestInterceptor(new FileGuard(session, profile.get()));
    profile->installUrlSchemeHandler("event", new EventHandler(profile.get()));
    QObject::connect(profile.get(), &QWebEngineProfile::downloadRequested, profile.get(),
                     [&desk](QWebEngineDownloadRequest* download) {
                         desktop::runCommand(desk, [&] { askForPlace(*download, desk); });
                     });
    return profile;
}

} // namespace velloria::browser
