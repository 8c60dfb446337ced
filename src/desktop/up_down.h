// A box of free text whose number two arrows count up and down.
#pragma once

#include <QAbstractSpinBox>

namespace velloria::desktop {

class LineBox;

/// The text stays as typed, whatever it is. The arrows count from its number, from 0 when it is none, and not below 0.
/// The wheel does nothing.
class UpDown : public QAbstractSpinBox {
    Q_OBJECT
public:
    explicit UpDown(QWidget* parent = nullptr);

    LineBox& box() const { return *m_box; }

    void stepBy(int steps) override;

protected:
    StepEnabled stepEnabled() const override { return StepUpEnabled | StepDownEnabled; }
    void wheelEvent(QWheelEvent* event) override;

private:
    LineBox* m_box;
};

} // namespace velloria::desktop
