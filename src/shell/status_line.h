// What the first panel of the status bar shows of all that is told.
#pragma once

#include <QString>

namespace velloria::shell {

/// The last text is what counts, but the page that a command shows comes within a second of what the command has done:
/// both stay, the page's text behind the other, until another page is asked for. A notice is something unusual, and
/// the page's texts wait until the next key or click.
class StatusLine {
public:
    /// The line to show now.
    QString tell(const QString& text);
    QString notice(const QString& text);

    /// A key or a click: somebody goes on.
    void takeInput() { m_hasInput = true; }
    /// Whether a key or click makes a difference.
    bool waitsForInput() const { return !m_hasInput && !m_done.isEmpty(); }

private:
    QString tellPage(const QString& text);

    QString m_done; ///< what was told last that is not about a page
    bool m_isNotice = false;
    bool m_hasInput = false;
    bool m_isPageOnItsWay = false; ///< the one that belongs to m_done
};

} // namespace velloria::shell
