// The one progress window of long network work.
#pragma once

#include "desktop/context.h"

#include <QWidget>

#include <memory>

namespace Ui {
class frmProgress;
}

namespace velloria::publish {

/// The frame closes it only while `EnableBatsuBtn` is set: the message of a run stays until somebody has read it.
/// Whoever unloads it through the registry closes it in any case.
class frmProgress : public QWidget {
    Q_OBJECT
public:
    explicit frmProgress(desktop::Context& context);
    ~frmProgress() override;

    bool EnableBatsuBtn = false;

    /// Whether the work that is shown can be stopped, and whether the user wants that.
    bool isStopEnabled() const { return m_isStopEnabled; }
    bool isStopWanted() const { return m_isStopEnabled && m_isStopWanted; }

    /// Shows all of this at once, in the middle of the main window when it was not on the screen. It is drawn when this
    /// returns.
    void display(const platform::ProgressWindow& shown);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void Btn_OK_Click();
    void Btn_Stop_Click();
    void growToText();

    std::unique_ptr<Ui::frmProgress> ui;
    bool m_isStopEnabled = false;
    bool m_isStopWanted = false;
};

} // namespace velloria::publish
