// Texts of a Jet file.
#pragma once

#include <QByteArray>
#include <QString>

namespace velloria::store::jet {

/// Of version 4: units of UTF-16, or behind FF FE runs of one byte and of two bytes a unit in turn, each ended by a
/// zero byte. A lone surrogate becomes U+FFFD. Throws JetError for half a unit.
QString textOfUnits(QByteArrayView bytes);

/// Of version 3, in the code page of the file's head; 0 is 932. Throws JetError for a code page that nobody knows.
QString textOfCodePage(QByteArrayView bytes, int codePage);

} // namespace velloria::store::jet
