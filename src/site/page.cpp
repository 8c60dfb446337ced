#include "site/page.h"

#include "platform/code_page.h"
#include "platform/file_write.h"

#include <QFileInfo>

namespace velloria::site {

Page& Pages::create(const QString& path) {
    return m_pages.insert_or_assign(path, Page()).first->second;
}

Page& Pages::append(const QString& path) {
    const auto [page, isNew] = m_pages.try_emplace(path);
    // The file of a day may have taken the month file's own name and be finished already.
    if (isNew)
        page->second.add(platform::fromCodePage(platform::readFileIfThere(path).value_or(QByteArray())));
    return page->second;
}

void Pages::commit(const QString& path) {
    const auto page = m_pages.extract(path);
    if (!QFileInfo(path).isSymLink()) // the page takes the place of a link; the file behind it is another's
        platform::limitMode(path, m_mode);
    platform::placeBytes(path, platform::toCodePage(page.mapped().text()), m_mode);
}

} // namespace velloria::site
