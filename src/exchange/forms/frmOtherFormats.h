// The choice of a format of another program, to bring a diary in or out.
#pragma once

#include "desktop/tool_window.h"
#include "exchange/formats/foreign_diary.h"

#include <functional>
#include <memory>
#include <vector>

namespace Ui {
class frmOtherFormats;
}

namespace velloria::exchange {

class frmOtherFormats : public desktop::ToolWindow {
    Q_OBJECT
public:
    /// For an import until it is told otherwise.
    explicit frmOtherFormats(desktop::Context& context);
    ~frmOtherFormats() override;

    enum class Direction { Import, Export };
    void showFor(Direction direction);

private:
    struct Choice {
        QString name;
        ForeignFormat::Place place;
        platform::PathRequest file;                     ///< the dialog for a file
        std::function<bool(const QString& path)> start; ///< false when the person has said No
    };

    void offer(Direction direction);
    /// What they start may outlive the window.
    std::vector<Choice> imports() const;
    std::vector<Choice> exports() const;
    const Choice& choice() const;
    void showPlaces();
    std::optional<QString> choosePath() const;
    void Btn_OK_Click();

    std::unique_ptr<Ui::frmOtherFormats> ui;
    std::vector<Choice> m_choices;
};

} // namespace velloria::exchange
