// What the viewer adds to the local pages of entries while it shows them: the files stay as they are.
#pragma once

#include <QString>

#include <optional>

namespace velloria::browser {

/// Makes a link of the date of each entry, to "event:2004/05/06_1".
QString entryLinks();

/// Adds the styles of an HTML text for the page's head, and nothing else of it.
QString stylesOf(const QString& head);

/// Gives links that no style colours these colours of the set, as its month page has them.
QString linkColours(const QString& link, const QString& active, const QString& visited);

/// An entry by the name of such an event.
struct EntryName {
    QString day; ///< "yyyy/mm/dd"
    int number = 0;
};
std::optional<EntryName> entryOf(const QString& event);

} // namespace velloria::browser
