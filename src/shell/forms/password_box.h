// What the boxes for passwords take.
#pragma once

#include <QLineEdit>

namespace velloria::shell {

/// Shows nothing of what is typed, and takes no character that would not come back from the user file.
void makePasswordBox(QLineEdit& box);

} // namespace velloria::shell
