// The sections of a profile file that is a list of its own: one section for each thing in it.
#pragma once

#include <QString>
#include <QStringList>

namespace velloria::platform {

/// The names of all sections in the file's order, each whole and each once, however many there are; none of them empty.
/// Of names that differ in ASCII case alone the first one counts, as it does for their keys. A missing file has none.
/// Throws Failure when it is there and can't be read.
QStringList profileSections(const QString& file);

} // namespace velloria::platform
