#include "convert/forms/colour_row.h"

#include "desktop/combo.h"
#include "desktop/command.h"
#include "desktop/line_box.h"
#include "platform/failure.h"

#include <QAbstractButton>
#include <QColorDialog>

using namespace Qt::StringLiterals;

namespace velloria::convert {
namespace {

QColor colourOf(OleColour value) {
    return {int(value & 0xFF), int(value >> 8 & 0xFF), int(value >> 16 & 0xFF)};
}

OleColour valueOf(const QColor& colour) {
    return quint32(colour.red()) | quint32(colour.green()) << 8 | quint32(colour.blue()) << 16;
}

} // namespace

ColourRow::ColourRow(desktop::Context& context, desktop::Combo& box, QAbstractButton& exchange, QAbstractButton& dialog,
                     StartsAt startsAt)
    : QObject(&box)
    , m_context(context)
    , m_box(box)
    , m_startsAt(startsAt) {
    const QStringList names = colourNames(context.session.MyPath);
    box.makeEditable();
    box.addItems(names);
    box.setCurrentIndex(-1);
    for (QAbstractButton* button : {&exchange, &dialog})
        button->setMaximumWidth(3 * button->fontMetrics().height()); // a sign is on it, and no word
    connect(&exchange, &QAbstractButton::clicked, this,
            [this] { desktop::runCommand(m_context.desk, [this] { Btn_Color_Exchange_Click(); }); });
    connect(&dialog, &QAbstractButton::clicked, this,
            [this] { desktop::runCommand(m_context.desk, [this] { Btn_GetColorDialog_Click(); }); });
}

void ColourRow::Btn_Color_Exchange_Click() {
    QString text = m_box.currentText();
    const QString answer = exchangeColour(m_context.session.MyPath, text);
    if (answer != kNotInList && answer != kNoColourText)
        show(answer);
}

void ColourRow::Btn_GetColorDialog_Click() {
    const std::optional<OleColour> shown = shownColour();
    if (!shown)
        return;
    const QColor colour = QColorDialog::getColor(colourOf(*shown), m_box.window());
    if (colour.isValid())
        show(u'#' + colourDigits(valueOf(colour)));
}

void ColourRow::show(const QString& colour) {
    m_box.setEditText(colour);
    Q_EMIT chosen();
}

/// Black where there is nothing to start at. Nothing for a text in any form that is no colour, which this command says
/// nothing about.
std::optional<OleColour> ColourRow::shownColour() const {
    QString text = m_box.currentText();
    const bool isStart = m_startsAt == StartsAt::AnyForm ? !text.isEmpty() : text.startsWith(u'#');
    if (!isStart)
        return 0;
    if (m_startsAt == StartsAt::NumberOnly)
        return colourValue(text.sliced(1)).value_or(0);
    try {
        if (!text.startsWith(u'#'))
            text = exchangeColour(m_context.session.MyPath, text);
    } catch (const platform::Failure&) {
        return std::nullopt;
    }
    return colourValue(text.sliced(1));
}

} // namespace velloria::convert
