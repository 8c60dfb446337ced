// The captions of the memo program's window in English.
#pragma once

class QWidget;

namespace velloria::memo {

/// The form's own are Japanese.
void makeEnglish(QWidget& window);

} // namespace velloria::memo
