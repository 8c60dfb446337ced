#include "site/page.h"

#include "platform/code_page.h"
#include "platform/file_write.h"

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
    platform::limitMode(path, m_mode);
    platform::replaceFile(path, platform::toCodePage(page.mapped().text()), platform::Durability::Derived, m_mode);
}

} // namespace velloria::site
