// The options dialog on a screen, and words to work it.
#pragma once

#include "core/ini.h"
#include "editor_home.h"
#include "shell/forms/frmOptions.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>

namespace velloria::tests {

/// Fixture: the editor's home, whose unexpected failure boxes fail the test.
class OptionsHome : public EditorHome {
protected:
    static QString s(const char* text) { return QString::fromUtf8(text); }

    shell::frmOptions* window() { return context.windows.find<shell::frmOptions>(); }
    void open() {
        top().command(s("MnuPref"))->trigger();
        settle();
        ASSERT_TRUE(window());
        ASSERT_TRUE(becomesActive(*window()));
        desk.events = {};
    }
    template <class Control>
    Control& box(const char* name) {
        return control<Control>(*window(), s(name));
    }
    QLineEdit& line(const char* name) { return box<QLineEdit>(name); }
    QPushButton& button(const char* name) { return box<QPushButton>(name); }
    void press(const char* name) {
        button(name).click();
        settle();
    }
    bool isOpen() {
        settle();
        return window();
    }
    QString key(const char* section, const char* name) const {
        return core::ReadIniDef(session.DiaryIniFile, s(section), s(name), s("(missing)"));
    }
    void setKey(const char* section, const char* name, const QString& value) {
        core::WriteIni(session.DiaryIniFile, s(section), s(name), value);
    }
    QByteArray settingsFile() const { return bytesOf(session.DiaryIniFile); }
};

} // namespace velloria::tests
