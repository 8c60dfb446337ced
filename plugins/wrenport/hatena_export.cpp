#include "wrenport/hatena_export.h"

#include "wrenport/own_notation.h"
#include "wrenport/text_marks.h"

#include <algorithm>
#include <utility>

namespace velloria::plugins::wrenport {
namespace {

/// Stands before the text, so that an end that gets lost does not make a private entry public.
std::string keptXml(const KeptEntry& kept) {
    std::string xml = "<velloria-entry check=\"" + kept.check + "\"";
    if (kept.isPrivate)
        xml += " private=\"1\"";
    std::string missing;
    for (const std::string& name : kept.missing)
        missing += (missing.empty() ? "" : " ") + name;
    if (!missing.empty())
        xml += " missing=\"" + missing + "\"";
    if (kept.fields.empty())
        return xml + "/>\n";
    xml += ">\n";
    for (const auto& [name, text] : kept.fields)
        xml += "<velloria-field name=\"" + name + "\">" + escaped(text) + "</velloria-field>\n";
    return xml + "</velloria-entry>\n";
}

} // namespace

HatenaWriter::HatenaWriter(std::function<void(std::string_view)> write)
    : m_write(std::move(write)) {
    m_write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<diary>\n");
}

void HatenaWriter::add(const Entry& entry) {
    if (entry.day != m_day)
        endDay();
    m_day = entry.day;
    const OwnNotation own = notationOf(entry);
    m_kept += keptXml(own.kept);
    m_body += escaped(own.text);
    ++m_written;
}

void HatenaWriter::finish() {
    endDay();
    m_write("</diary>\n");
}

void HatenaWriter::endDay() {
    if (m_body.empty())
        return;
    std::string date = m_day;
    std::ranges::replace(date, '/', '-');
    m_write("<day date=\"" + date + "\" title=\"\">\n" + m_kept + "<body>\n" + m_body + "</body>\n</day>\n");
    m_kept.clear();
    m_body.clear();
}

} // namespace velloria::plugins::wrenport
