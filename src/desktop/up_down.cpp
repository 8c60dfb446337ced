#include "desktop/up_down.h"

#include "core/numbers.h"
#include "desktop/line_box.h"

#include <QWheelEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::desktop {

UpDown::UpDown(QWidget* parent)
    : QAbstractSpinBox(parent)
    , m_box(new LineBox(this)) {
    setLineEdit(m_box);
    m_box->setText(u"0"_s);
}

void UpDown::stepBy(int steps) {
    constexpr double kMost = 9999;
    const double number = core::numericValue(m_box->text()).value_or(0) + steps;
    m_box->setText(QString::number(int(std::clamp(number, 0.0, kMost))));
    m_box->selectAll();
}

void UpDown::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

} // namespace velloria::desktop
