// The converter's last steps: line ends, runs of line breaks, entities.
#pragma once

#include <QString>

namespace velloria::convert {

enum class LineEnds {
    AsTheyAre,
    Normal,    ///< CR LF, CR and LF become CR LF
    Collapsed, ///< the same, and while three breaks stand in a row they become one: of three one stays, of four two
};

/// `text` with these line ends, and "&amp;", "&lt;" and "&gt;" replaced in this order, one pass each, so that
/// "&amp;lt;" ends as "<". No other entity is touched. Linear in time.
QString finishedText(QString text, LineEnds lineEnds);

} // namespace velloria::convert
