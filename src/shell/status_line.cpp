#include "shell/status_line.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {

QString StatusLine::tell(const QString& text) {
    if (text.startsWith(u"Webページ表示"_s))
        return tellPage(text);
    m_done = text;
    m_isNotice = m_hasInput = m_isPageOnItsWay = false;
    return text;
}

QString StatusLine::notice(const QString& text) {
    tell(text);
    m_isNotice = true;
    return text;
}

QString StatusLine::tellPage(const QString& text) {
    const bool isStart = text.startsWith(u"Webページ表示中"_s);
    // A page that was on its way when somebody typed on is still the one that the command shows.
    if (m_hasInput && (m_isNotice || isStart || !m_isPageOnItsWay))
        m_done.clear();
    m_isPageOnItsWay = isStart;
    if (m_done.isEmpty())
        return text;
    return m_isNotice ? m_done : m_done + u'　' + text;
}

} // namespace velloria::shell
