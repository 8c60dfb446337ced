// What a run does to the page, each step a line of the protocol.
#pragma once

#include "blog/blog_page.h"
#include "blog/blog_protocol.h"
#include "blog/blog_template.h"

#include <QStringView>

#include <chrono>

namespace velloria::blog {

/// An element, and the key of the template that tells of it.
struct Target {
    QStringView key;
    ElementPlace place;
};

/// An element by the place that the template gives it, a whole number. Throws platform::Failure, which names the key,
/// when it is none of 16 bits.
Target byIndex(ElementPlace::By by, QStringView key, const QString& value);
/// The element of that name among the controls of a form.
Target byName(QStringView key, const QString& value, int form);
/// The element by its name where the template says "NAME", else by its place among the INPUT tags.
Target byNameOrInput(QStringView key, const TemplateElement& element, int form);

/// Throws what the page throws.
class PageDriver {
public:
    /// All of these outlive this.
    PageDriver(BlogPage& page, BlogProtocol& protocol, std::chrono::milliseconds waitLimit);

    BlogPage& page() { return m_page; }
    void note(const QString& line) { m_protocol.add(line); }

    /// Throws platform::Failure for an address that is not of the web.
    void navigate(const QString& address);
    /// Whether a page has come before the time was over; lastEnd() tells what else has ended the wait.
    bool WaitPageComplete();
    PageEnd lastEnd() const { return m_lastEnd; }

    void setValue(const Target& target, const QString& text);
    void setChecked(const Target& target, bool isChecked);
    void click(const Target& target);
    void submit(int form);
    void clickLink(int index);
    /// Selects the first option of that text by its index, which can't select the first of all. Without such an option
    /// nothing is changed.
    void choose(const Target& select, const QString& text);

private:
    QString reached();

    BlogPage& m_page;
    BlogProtocol& m_protocol;
    std::chrono::milliseconds m_waitLimit;
    PageEnd m_lastEnd = PageEnd::Complete;
};

} // namespace velloria::blog
