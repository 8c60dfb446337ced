#include "site/page.h"

#include "platform/code_page.h"
#include "platform/file_write.h"

namespace velloria::site {

Page& Pages::create(const QString& path) {
    return m_pages.insert_or_assign(path, Page()).first->second;
}

Page& Pages::append(const QString& path) {
    return m_pages.at(path);
}

void Pages::commit(const QString& path) {
    const auto page = m_pages.extract(path);
    platform::replaceFile(path, platform::toCodePage(page.mapped().text()), platform::Durability::Derived);
}

} // namespace velloria::site
