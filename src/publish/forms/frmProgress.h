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

    void setTitle(const QString& title);
    void setText(const QString& text);
    /// A value above `max` shows a full bar, a `max` of 0 an empty one.
    void setProgress(int value, int max);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void Btn_OK_Click();

    desktop::Context& m_context;
    std::unique_ptr<Ui::frmProgress> ui;
};

} // namespace velloria::publish
