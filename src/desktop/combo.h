// The combo boxes: a value changes when somebody picks one, and never by accident.
#pragma once

#include <QComboBox>

namespace velloria::desktop {

class LineBox;

/// The wheel over a closed box does nothing.
class Combo : public QComboBox {
    Q_OBJECT
    Q_PROPERTY(bool action READ isAction WRITE setAction)
public:
    explicit Combo(QWidget* parent = nullptr);

    /// Picking an item of such a box does something at once, so keys at the closed box open the list instead.
    bool isAction() const { return m_isAction; }
    void setAction(bool isAction) { m_isAction = isAction; }

    /// Free text beside the list: typed text stays as typed, whatever the list holds, and nothing is added to it. The
    /// line bears the box's accessible name of now.
    LineBox& makeEditable();

    /// Room for `minimumContentsLength` characters, whatever the items and the placeholder ask for.
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// Where the text is written.
    QRect field() const;

    bool m_isAction = false;
};

} // namespace velloria::desktop
