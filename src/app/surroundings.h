// What the program finds on the machine before its first window.
#pragma once

class QApplication;

namespace velloria::app {

/// Whether there is a screen to show windows on; without one the reason is on standard error.
bool hasScreen();

/// The browser engine refuses to run in its sandbox for the superuser. For them alone it runs without, which is said
/// on standard error.
void letBrowserRunAsRoot();

/// Name, the toolkit's own texts in Japanese, and a word on standard error when no font has Japanese.
void prepareApplication(QApplication& application);

} // namespace velloria::app
