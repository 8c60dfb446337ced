// The windows with the program's own desk, while a database is updated.
#pragma once

#include "real_keys.h"
#include "shell/forms/frmDBUpdater.h"
#include "shell/forms/updater_view.h"

#include <QElapsedTimer>
#include <QProgressBar>
#include <QThread>

namespace velloria::tests {

/// Fixture: a day in the editor, and the window of an update behind the desk as the program connects them.
class Updating : public RealKeys {
protected:
    Updating() {
        qtDesk.beforeBox = [this] { updates.makeWayForBox(); };
        qtDesk.showUpdaterWindow = [this](const platform::UpdaterWindow& shown) { updates.show(shown); };
        qtDesk.endUpdaterWindow = [this] { updates.close(); };
    }

    /// Copies rows until the condition holds; false when the patience ends first.
    template <class Condition>
    bool workUntil(Condition condition) {
        QElapsedTimer timer;
        timer.start();
        for (int row = 0; !condition(); ++row) {
            if (timer.hasExpired(kPatienceMs))
                return false;
            qtDesk.updaterWindow({QStringLiteral("working"), 100000, row});
            QThread::msleep(1);
        }
        return true;
    }
    /// Copies rows for this long.
    void work(int ms) {
        QElapsedTimer timer;
        timer.start();
        workUntil([&] { return timer.hasExpired(ms); });
    }
    shell::frmDBUpdater* window() { return context.windows.find<shell::frmDBUpdater>(); }
    QPlainTextEdit& status() { return control<QPlainTextEdit>(*window(), QStringLiteral("txtStatus")); }
    QProgressBar& bar() { return control<QProgressBar>(*window(), QStringLiteral("ProgressBar1")); }

    shell::UpdaterView updates{context};
};

} // namespace velloria::tests
