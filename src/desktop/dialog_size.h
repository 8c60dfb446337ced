// How large a dialog comes up.
#pragma once

#include <QDialog>

namespace velloria::desktop {

/// Gives a dialog that was not shown yet the size that its contents ask for. Where `room` is less, they scroll above
/// the last row, the buttons. The rows must be those of a column.
void sizeInto(QDialog& dialog, const QSize& room);

} // namespace velloria::desktop
