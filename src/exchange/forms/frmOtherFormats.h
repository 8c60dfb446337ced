// The choice of another program's format for an import.
#pragma once

#include "desktop/tool_window.h"
#include "exchange/formats/foreign_diary.h"

#include <memory>

namespace Ui {
class frmOtherFormats;
}

namespace velloria::exchange {

class frmOtherFormats : public desktop::ToolWindow {
    Q_OBJECT
public:
    explicit frmOtherFormats(desktop::Context& context);
    ~frmOtherFormats() override;

private:
    const ForeignFormat& format() const;
    void showPlaces();
    std::optional<QString> choosePath() const;
    void Btn_OK_Click();

    std::unique_ptr<Ui::frmOtherFormats> ui;
};

} // namespace velloria::exchange
