// The row of boxes in which a maker asks for a colour.
#pragma once

#include "convert/colour.h"
#include "desktop/context.h"

#include <QObject>

class QAbstractButton;

namespace velloria::desktop {
class Combo;
}

namespace velloria::convert {

/// A box that takes any text and lists the names of the colours, a button that changes between name and number, and
/// one that opens the colour dialog.
class ColourRow : public QObject {
    Q_OBJECT
public:
    /// Belongs to `box` and starts with no colour in it. Throws platform::Failure when the names can't be read.
    ColourRow(desktop::Context& context, desktop::Combo& box, QAbstractButton& exchange, QAbstractButton& dialog);

private:
    void Btn_Color_Exchange_Click();
    void Btn_GetColorDialog_Click();
    std::optional<OleColour> shownColour() const;

    desktop::Context& m_context;
    desktop::Combo& m_box;
};

} // namespace velloria::convert
