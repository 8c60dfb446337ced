#include "browser/forms/file_guard.h"

#include "browser/page_files.h"

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

using Request = QWebEngineUrlRequestInfo;

FileUse useOf(const Request& request) {
    switch (request.resourceType()) {
    case Request::ResourceTypeImage:
    case Request::ResourceTypeFavicon:
    case Request::ResourceTypeMedia:
    case Request::ResourceTypeFontResource:
        return FileUse::Picture;
    case Request::ResourceTypeStylesheet:
        return FileUse::Style;
    case Request::ResourceTypeScript:
        return FileUse::Script;
    case Request::ResourceTypeSubFrame:
        return FileUse::Frame;
    default:
        return FileUse::Other;
    }
}

bool isMainFrame(const Request& request) {
    return request.resourceType() == Request::ResourceTypeMainFrame;
}

bool isOfTheNet(const QUrl& url) {
    static const QStringList kSchemes{u"http"_s, u"https"_s, u"ws"_s, u"wss"_s, u"ftp"_s};
    return kSchemes.contains(url.scheme());
}

/// A frame of the web within a page of the disk asks for itself. Whoever hides who they are, such as a frame made of
/// an address that is its own text, counts as the page around.
bool isAskedByTheWeb(const Request& request) {
    return isOfTheNet(request.initiator());
}

} // namespace

FileGuard::FileGuard(const core::Session& session, QObject* parent)
    : QWebEngineUrlRequestInterceptor(parent)
    , m_session(session) {}

void FileGuard::interceptRequest(QWebEngineUrlRequestInfo& request) {
    if (!mayHave(request))
        request.block(true);
}

bool FileGuard::mayHave(const QWebEngineUrlRequestInfo& request) const {
    const QUrl url = request.requestUrl();
    if (url.scheme() == u"file"_s) {
        if (isAskedByTheWeb(request))
            return false;
        return isMainFrame(request) || mayHaveFile(m_session, url, useOf(request), request.firstPartyUrl());
    }
    const bool isOfDisk = !isOfTheNet(request.firstPartyUrl()) && !isAskedByTheWeb(request);
    return !isOfDisk || !isOfTheNet(url) || isMainFrame(request) || useOf(request) != FileUse::Other;
}

} // namespace velloria::browser
