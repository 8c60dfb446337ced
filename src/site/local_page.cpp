#include "site/local_page.h"

#include "core/files.h"
#include "core/path_names.h"
#include "core/site_keys.h"
#include "platform/file_write.h"
#include "site/page_head.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::site {

bool isLocalPage(const QString& fileName) {
    namespace files = core::files;
    static const QRegularExpression kPart(
        QRegularExpression::anchoredPattern(u"_c|_d|(_d)?_\\d{2,}|_rss091|_rss100|_rss200|_atom"_s));
    const QString base = core::GetBaseName(fileName).toLower();
    const auto baseOf = [](const core::File& page) { return core::GetBaseName(page.name).toLower(); };
    for (const core::File& page : {files::kSameDayPage, files::kFindPage, files::kInformationPage}) {
        if (base == baseOf(page))
            return true;
    }
    for (const core::File& preview : {files::kPreview, files::kCustomizePreview, files::kSetPicture}) {
        const QString own = baseOf(preview);
        if (base == own || (base.startsWith(own) && kPart.match(base.sliced(own.size())).hasMatch()))
            return true;
    }
    return false;
}

bool isLocalPage(const core::Session& session, const QString& path) {
    return isLocalPage(core::GetFileName(path)) && platform::isSameFile(core::GetParentFolder(path), session.DataPath);
}

unsigned localPageMode(const core::Session& session) {
    constexpr unsigned kOrdinary = 0666;
    constexpr unsigned kOwnerOnly = 0600;
    if (platform::isSameFile(session.FilePath, session.DataPath))
        return kOrdinary;
    return (platform::modeOf(session.databaseFile(), kOwnerOnly) & kOrdinary) | kOwnerOnly;
}

QString headOfSet(const SiteSettings& settings) {
    return styleSheetLink(settings) + settings.piece(keys::general::kHeadTag);
}

void printLocalHead(Page& page, const SiteSettings& settings, const QString& title) {
    page.print(u"<HTML lang=\"ja\"><HEAD><TITLE>"_s, title, u"</TITLE></HEAD>"_s);
    page.print(u"<BODY TEXT='"_s, settings.text(keys::body::kTextColor), u"' BGCOLOR='"_s,
               settings.text(keys::body::kBackColor), u"' background='"_s, settings.text(keys::body::kBackImage),
               u"'>"_s);
    // The window that shows the page catches this navigation and closes itself.
    page.print(u"<p align=center><INPUT type=button name=Close value=\"Close Window\">\r\n"_s,
               u"<SCRIPT LANGUAGE=\"VBScript\">\r\n"_s, u"Sub Close_OnClick()\r\n"_s,
               u"location.HREF = \"Event:Close\"\r\n"_s, u"End Sub\r\n"_s, u"</SCRIPT>\r\n"_s, u"</p>"_s);
}

} // namespace velloria::site
