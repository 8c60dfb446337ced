// The images that an entry shows.
#pragma once

#include <QString>

#include <vector>

namespace velloria::browser {

struct EntryImage {
    QString fileName;
    QString fullPath; ///< a relative path of the entry counts from the data folder
    bool exists = false;
};

/// One for each "<IMG" tag of the entry's text that has a source, in order.
std::vector<EntryImage> imagesOf(const QString& body, const QString& dataPath);

} // namespace velloria::browser
