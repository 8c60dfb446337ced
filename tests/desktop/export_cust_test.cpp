#include "exchange/forms/frmExportCust.h"

#include "core/ini.h"
#include "core/keys.h"
#include "site/customize_sets.h"
#include "support/desktop_home.h"

#include <QComboBox>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class CustomizeExport : public DesktopHome {
protected:
    CustomizeExport() {
        QDir(home.path()).mkdir(u"out"_s);
        writeFile(folder() + u"mine.ini"_s, "[General]\r\nHPTitle=Mine\r\n");
        writeFile(folder() + u"RSS.ini"_s, "");
        showTop();
    }

    QString folder() const { return session.DataPath + u"Customize/"_s; }
    QString out(const QString& name) const { return path(u"out/"_s + name); }
    exchange::frmExportCust* window() { return context.windows.find<exchange::frmExportCust>(); }
    void open() {
        top().command(u"mnuExportCust"_s)->trigger();
        settle();
        ASSERT_TRUE(window());
        ASSERT_TRUE(window()->isVisible());
    }
    template <class Control = QWidget>
    Control& field(const QString& name) {
        return control<Control>(*window(), name);
    }
    QComboBox& sets() { return field<QComboBox>(u"cmbCustomize"_s); }
    void execute(const QJsonArray& answers) {
        desk.answers = answers;
        field<QPushButton>(u"Btn_Exec"_s).click();
        settle();
    }
    QString kept(const QString& key) const { return core::ReadIni(session.DiaryIniFile, u"ExportCustFile"_s, key); }
};

TEST_F(CustomizeExport, ListsAllSetsAndBeginsWithTheSelectedOne) {
    open();
    QStringList names;
    for (int i = 0; i < sets().count(); ++i)
        names += sets().itemText(i);
    EXPECT_EQ(names, site::allCustomizeSets(session));
    EXPECT_TRUE(names.contains(u"RSS"_s));
    EXPECT_EQ(sets().currentText(), u"Customize"_s);
    EXPECT_EQ(field<QRadioButton>(u"optCst"_s).text(), u"配布用（CST）"_s);
    EXPECT_EQ(field<QRadioButton>(u"optIni"_s).text(), u"バックアップ用（INI）"_s);
    EXPECT_TRUE(field<QRadioButton>(u"optCst"_s).isChecked());
}

TEST_F(CustomizeExport, TheSelectedSetIsFoundWhateverTheCaseInTheSettings) {
    session.CustIniFile = folder() + u"cUSTOMIZE.INI"_s;
    open();
    EXPECT_EQ(sets().currentText(), u"Customize"_s);
}

TEST_F(CustomizeExport, WritesTheChosenSetInEitherFormatAndKeepsItsAuthor) {
    for (const bool isCst : {true, false}) {
        open();
        sets().setCurrentText(u"mine"_s);
        field<QRadioButton>(isCst ? u"optCst"_s : u"optIni"_s).click();
        field<QLineEdit>(u"txtName"_s).setText(u"太郎"_s);
        field<QLineEdit>(u"txtURL"_s).setText(u"http://a.example/"_s);
        field<QLineEdit>(u"txtEmail"_s).setText(u"a@a.example"_s);
        execute({out(u"x"_s)});
        const QString file = out(isCst ? u"x.cst"_s : u"x.ini"_s);
        EXPECT_EQ(core::ReadIni(file, u"General"_s, u"HPTitle"_s), isCst ? u""_s : u"Mine"_s);
        EXPECT_EQ(core::ReadIni(file, u"Author"_s, u"Name"_s), u"太郎"_s);
        EXPECT_EQ(core::ReadIni(file, u"Author"_s, u"URL"_s), u"http://a.example/"_s);
        EXPECT_EQ(core::ReadIni(file, u"Author"_s, u"E-mail"_s), u"a@a.example"_s);
        EXPECT_EQ(panel(), u"カスタマイズファイルの出力に成功しました。"_s);
        EXPECT_FALSE(window());
    }
    EXPECT_EQ(kept(u"Name"_s), u"太郎"_s);
    EXPECT_EQ(kept(u"URL"_s), u"http://a.example/"_s);
    EXPECT_EQ(kept(u"E-Mail"_s), u"a@a.example"_s);
    open();
    EXPECT_EQ(field<QLineEdit>(u"txtName"_s).text(), u"太郎"_s);
    EXPECT_EQ(field<QLineEdit>(u"txtURL"_s).text(), u"http://a.example/"_s);
    EXPECT_EQ(field<QLineEdit>(u"txtEmail"_s).text(), u"a@a.example"_s);
}

TEST_F(CustomizeExport, ACancelIsToldKeepsTheAuthorAndUnloads) {
    open();
    field<QLineEdit>(u"txtName"_s).setText(u"太郎"_s);
    execute({QJsonValue()});
    EXPECT_EQ(panel(), u"カスタマイズファイルの出力に失敗しました。"_s);
    EXPECT_FALSE(window());
    EXPECT_EQ(kept(u"Name"_s), u"太郎"_s);
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(CustomizeExport, AFailureKeepsTheWindowAndWhatIsInIt) {
    open();
    sets().setCurrentText(u"mine"_s);
    field<QLineEdit>(u"txtName"_s).setText(u"太郎"_s);
    ASSERT_TRUE(QFile::remove(folder() + u"mine.ini"_s));
    execute({out(u"x"_s)});
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    ASSERT_TRUE(window());
    EXPECT_EQ(field<QLineEdit>(u"txtName"_s).text(), u"太郎"_s);
    EXPECT_EQ(kept(u"Name"_s), u""_s);
    sets().setCurrentText(u"Customize"_s);
    execute({out(u"x"_s)});
    EXPECT_FALSE(window());
}

TEST_F(CustomizeExport, TheCancelButtonForgetsWhatWasTyped) {
    open();
    field<QLineEdit>(u"txtName"_s).setText(u"太郎"_s);
    field<QPushButton>(u"Btn_Cancel"_s).click();
    settle();
    EXPECT_FALSE(window());
    EXPECT_EQ(kept(u"Name"_s), u""_s);
}

TEST_F(CustomizeExport, WithoutASetThereIsNothingToWrite) {
    ASSERT_TRUE(QDir(folder()).removeRecursively());
    writeFile(folder().chopped(1), "a file in the folder's place");
    open();
    EXPECT_EQ(sets().count(), 0);
    EXPECT_FALSE(field(u"Btn_Exec"_s).isEnabled());
}

TEST_F(CustomizeExport, SettingsThatCantBeWrittenStopNoExport) {
    ASSERT_TRUE(QFile::setPermissions(session.DiaryIniFile, QFile::ReadOwner));
    open();
    sets().setCurrentText(u"mine"_s);
    execute({out(u"x"_s)});
    EXPECT_TRUE(QFile::exists(out(u"x.cst"_s)));
    EXPECT_TRUE(desk.texts(u"failure"_s).isEmpty());
}

TEST_F(CustomizeExport, KeepsItsPlace) {
    open();
    window()->move(150, 120);
    settle();
    const QPoint place = window()->pos();
    window()->reject();
    settle();
    EXPECT_EQ(kept(u"Left"_s), QString::number(place.x() * 15));
    EXPECT_EQ(kept(u"Top"_s), QString::number(place.y() * 15));
    open();
    EXPECT_EQ(window()->pos(), place);
}

TEST_F(CustomizeExport, TheImportIsACommandOfTheMenu) {
    writeFile(out(u"look.cst"_s), "[Body]\r\nTextColor=red\r\n");
    desk.answers = {out(u"look.cst"_s)};
    top().command(u"mnuImportCust"_s)->trigger();
    EXPECT_EQ(panel(), u"カスタマイズファイルの読み込みに成功しました。"_s);
    EXPECT_TRUE(QFile::exists(folder() + u"look.ini"_s));
    EXPECT_EQ(site::selectedCustomizeSet(session), u"Customize"_s);
    desk.answers = {QJsonValue()};
    top().command(u"mnuImportCust"_s)->trigger();
    EXPECT_EQ(panel(), u"カスタマイズファイルの読み込みに失敗しました。"_s);
}

} // namespace
} // namespace velloria::tests
