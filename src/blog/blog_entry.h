// The entry that a run posts, as the editor shows it, saved or not.
#pragma once

#include <QString>

namespace velloria::blog {

struct BlogEntry {
    bool isOpen = false; ///< a day is loaded
    QString day;         ///< "yyyy/mm/dd"
    int number = 0;
    QString title;
    QString body; ///< the first pane; lines end in CR LF
    QString genre;
    bool isPrivate = false;
};

} // namespace velloria::blog
