// The splash picture of the start.
#pragma once

#include "desktop/context.h"

#include <QSplashScreen>

namespace velloria::shell {

/// In front of all other windows. Shows "title.bmp" of the program's folder if it is there, otherwise name and version.
class StartForm : public QSplashScreen {
    Q_OBJECT
public:
    explicit StartForm(desktop::Context& context);
};

} // namespace velloria::shell
