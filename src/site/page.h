// Pages while they are written: line prints into memory, put in place by rename when they are done.
#pragma once

#include <QString>

#include <map>

namespace velloria::site {

/// The text of one page.
class Page {
public:
    /// One print: the parts one after the other and a line end.
    template <typename... Parts>
    void print(const Parts&... parts) {
        (m_text.append(parts), ...);
        m_text.append(u"\r\n");
    }

    /// Text as it stands.
    void add(const QString& text) { m_text.append(text); }

    const QString& text() const { return m_text; }

private:
    QString m_text;
};

/// The pages of one run that are not finished yet, by path. What is never committed leaves the old file untouched.
///
///     pages.create(path).print(u"<HTML>"_s);
///     pages.append(path).print(u"</HTML>"_s); // by another routine, later
///     pages.commit(path);                     // whole, or not at all
class Pages {
public:
    /// The pages get `mode` (POSIX permission bits), old ones no more than that.
    explicit Pages(unsigned mode = 0666)
        : m_mode(mode) {}

    /// A new empty page; it replaces an unfinished one of the same path.
    Page& create(const QString& path);
    /// The unfinished page to go on with, or else the file as it is on disk.
    Page& append(const QString& path);
    bool isUnfinished(const QString& path) const { return m_pages.contains(path); }
    /// Puts the page in place, in code page 932. Throws platform::Failure; the old file then stays.
    void commit(const QString& path);

private:
    unsigned m_mode;
    std::map<QString, Page> m_pages; ///< a page stays where it is while others come and go
};

} // namespace velloria::site
