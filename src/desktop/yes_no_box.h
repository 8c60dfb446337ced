// Message boxes with Yes and No.
#pragma once

#include <QMessageBox>

namespace velloria::desktop {

/// The text of a box: line ends as the toolkit has them.
QString shownText(const QString& text);

/// A question that must be answered: Yes is the default, Esc does nothing and the frame has no close button, since No
/// often means to drop what somebody wrote.
class YesNoBox : public QMessageBox {
    Q_OBJECT
public:
    YesNoBox(const QString& title, const QString& text, QWidget* owner);

    /// Shows the box and waits; true for Yes.
    bool isYes();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override {}
};

} // namespace velloria::desktop
