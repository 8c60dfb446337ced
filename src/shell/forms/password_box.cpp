#include "shell/forms/password_box.h"

#include "convert/password_text.h"

#include <QValidator>

namespace velloria::shell {
namespace {

class PasswordText : public QValidator {
public:
    using QValidator::QValidator;

    State validate(QString& text, int&) const override { return convert::isPasswordText(text) ? Acceptable : Invalid; }
};

} // namespace

void makePasswordBox(QLineEdit& box) {
    box.setEchoMode(QLineEdit::Password);
    box.setValidator(new PasswordText(&box));
}

} // namespace velloria::shell
