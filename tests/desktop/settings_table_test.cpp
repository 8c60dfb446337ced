#include "desktop/settings_table.h"

#include "convert/password_text.h"
#include "core/ini.h"
#include "support/desktop_home.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class SettingsTable : public FactoryHome {
protected:
    SettingsTable() {
        session.DiaryIniFile = file;
        combo.setEditable(true);
        table.rows = {
            {&check, section.flag(u"Check"), {}},
            {&text, section.text(u"Text", u"12"), {}},
            {&secret, section.text(u"Secret"), {convert::DecryptPassword, convert::EncryptPassword}},
            {&combo, section.text(u"Combo"), {}},
            {desktop::Choice{{{&japanese, u"Japanese"_s}, {&english, u"English"_s}}}, section.text(u"Language"), {}},
        };
        table.onChange([this] { ++changes; });
    }
    QString stored(const QString& key) const { return core::ReadIni(file, u"S"_s, key); }
    void store(const QString& key, const QString& value) const { core::WriteIni(file, u"S"_s, key, value); }

    static constexpr core::SettingsSection section{core::SettingsFile::Diary, u"S"};
    const QString file = path(u"a.ini"_s);
    QWidget group;
    QCheckBox check;
    QLineEdit text;
    QLineEdit secret;
    QComboBox combo;
    QRadioButton japanese{&group};
    QRadioButton english{&group};
    desktop::SettingsTable table;
    int changes = 0;
};

TEST_F(SettingsTable, ShowsWhatTheFileHolds) {
    store(u"Check"_s, u"1"_s);
    store(u"Secret"_s, u"dcb"_s);
    store(u"Combo"_s, u"free"_s);
    store(u"Language"_s, u"English"_s);
    table.load(session);
    EXPECT_TRUE(check.isChecked());
    EXPECT_EQ(text.text(), u"12"_s);
    EXPECT_EQ(secret.text(), u"abc"_s);
    EXPECT_EQ(combo.currentText(), u"free"_s);
    EXPECT_TRUE(english.isChecked());
    EXPECT_EQ(changes, 0);
}

TEST_F(SettingsTable, ACheckIsOnForOneAlone) {
    for (const QString& value : {u"0"_s, u"2"_s, u"x"_s, u""_s}) {
        check.setChecked(true);
        store(u"Check"_s, value);
        table.load(session);
        EXPECT_FALSE(check.isChecked()) << value.toStdString();
    }
}

TEST_F(SettingsTable, AnUnknownChoiceLeavesAllOffAndTheFileAsItIs) {
    japanese.setChecked(true);
    store(u"Language"_s, u"Klingon"_s);
    table.load(session);
    EXPECT_FALSE(japanese.isChecked());
    EXPECT_FALSE(english.isChecked());
    table.change(session).write();
    EXPECT_EQ(stored(u"Language"_s), u"Klingon"_s);
}

TEST_F(SettingsTable, TellsEachChangeOfSomebody) {
    table.load(session);
    check.click();
    text.setText(u"13"_s);
    combo.setEditText(u"b"_s);
    english.click();
    EXPECT_EQ(changes, 4);
}

TEST_F(SettingsTable, WritesWhatIsShown) {
    table.load(session);
    check.setChecked(true);
    text.setText(u"13"_s);
    secret.setText(u"abc"_s);
    japanese.setChecked(true);
    table.change(session).write();
    EXPECT_EQ(bytesOf(file), "[S]\r\nCheck=1\r\nText=13\r\nSecret=dcb\r\nCombo=\r\nLanguage=Japanese\r\n");
}

} // namespace
} // namespace velloria::tests
