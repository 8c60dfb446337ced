// A line of text that ends in "…" where there is no room for more.
#pragma once

#include <QLabel>

namespace velloria::desktop {

/// Asks for no width. The whole text is its tip.
class ElidedLabel : public QLabel {
    Q_OBJECT
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /// Plain text; line breaks show as blanks.
    void setLine(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace velloria::desktop
