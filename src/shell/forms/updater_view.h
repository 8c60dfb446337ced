// frmDBUpdater behind the ports, with the windows around it while a database is updated.
#pragma once

#include "desktop/context.h"
#include "desktop/input_block.h"

#include <QElapsedTimer>

#include <memory>

namespace velloria::shell {

/// From the first word of an update to its end the windows paint and nobody's hand reaches them (desktop::InputBlock).
/// A word a row is taken: most of them cost no more than a look at the clock.
class UpdaterView {
public:
    explicit UpdaterView(desktop::Context& context)
        : m_context(context) {}

    void show(const platform::UpdaterWindow& shown);

    /// A box is about to come up: what has been done up to now does not answer it, and the hourglass goes.
    void makeWayForBox();

    void close();

private:
    bool isNews(const platform::UpdaterWindow& shown) const;

    desktop::Context& m_context;
    std::unique_ptr<desktop::InputBlock> m_block; ///< while the window is shown
    platform::UpdaterWindow m_shown;
    QElapsedTimer m_sinceShown;
};

} // namespace velloria::shell
