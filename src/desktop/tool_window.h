// A window beside the main window: a maker, a register, a dialog that stays open while the user works.
//
//     frmNew::frmNew(desktop::Context& context)
//         : ToolWindow(context, u"frmNew"_s, Blocks::Nothing, &core::keys::kNewPlace) {}
//
//     context.windows.get<frmNew>().showWindow();
//
// Its place is a row of core/keys.h, and it stands in the list of tests/desktop/every_window.h.
#pragma once

#include "core/setting.h"
#include "desktop/context.h"

#include <QDialog>

#include <functional>

namespace velloria::desktop {

/// One of a kind through the registry of windows. It belongs to the main window and stays above it. However it closes
/// (its buttons, Esc, its frame), it unloads: it is destroyed, and what it holds is forgotten.
class ToolWindow : public QDialog {
    Q_OBJECT
public:
    ~ToolWindow() override;

    /// Shows the window, raised and active when it is open already.
    void showWindow();

    /// A blocking window alone: where the focus goes when it closes. Until then the main window looks as it did, and
    /// takes no input.
    void giveBackTo(std::function<void()> focus) { m_giveBack = std::move(focus); }

    void done(int result) override;

protected:
    /// Into a group of options the keyboard comes at the chosen one.
    bool focusNextPrevChild(bool next) override;

    enum class Blocks { Nothing, MainWindow };

    /// The main window must be there. With `settings`, which outlive it, the window comes up where it was left, the
    /// first time in the middle of the main window. On a small screen its contents scroll above its last row, the
    /// buttons.
    ToolWindow(Context& context, const QString& name, Blocks blocks, const core::PlaceSettings* settings = nullptr);

    /// A slot's body: a failure becomes its box.
    void run(const std::function<void()>& action) const;

    Context& m_context;

private:
    void takeItsPlace();

    const core::PlaceSettings* m_settings;
    std::function<void()> m_giveBack;
    bool m_wasShown = false;
};

} // namespace velloria::desktop
