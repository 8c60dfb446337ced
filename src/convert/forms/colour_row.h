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
    /// Where the colour dialog starts: at the colour of the box in any form, or at a number alone.
    enum class StartsAt { AnyForm, NumberOnly };

    /// Belongs to `box` and starts with no colour in it. Throws platform::Failure when the names can't be read.
    ColourRow(desktop::Context& context, desktop::Combo& box, QAbstractButton& exchange, QAbstractButton& dialog,
              StartsAt startsAt = StartsAt::AnyForm);

Q_SIGNALS:
    /// One of the buttons has put another text into the box.
    void chosen();

private:
    void Btn_Color_Exchange_Click();
    void Btn_GetColorDialog_Click();
    void show(const QString& colour);
    std::optional<OleColour> shownColour() const;

    desktop::Context& m_context;
    desktop::Combo& m_box;
    const StartsAt m_startsAt;
};

} // namespace velloria::convert
