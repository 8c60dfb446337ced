#include "exchange/forms/frmExport.h"

#include "core/ini.h"
#include "support/desktop_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class ExportWindow : public DesktopHome {
protected:
    void SetUp() override {
        QDir(home.path()).mkdir(u"out"_s);
        for (const QString& name : {u"TEXT.txt"_s, u"HTML.txt"_s, u"mine.dat"_s, u"mine.txt"_s})
            writeFile(session.DataPath + u"ExportFormat/"_s + name, name.toUtf8() + " <--TITLE--> <--CONTENTS-->");
        for (const QString& day : {u"2004/04/30"_s, u"2004/05/01"_s, u"2004/05/06"_s, u"2004/06/01"_s})
            write(day, QString(day.mid(5)).replace(u'/', u'-'), u"<B>b</B>"_s);
        showTop();
        open();
    }

    void open() {
        top().command(u"MnuTextExport"_s)->trigger();
        settle();
        ASSERT_TRUE(window());
        ASSERT_TRUE(window()->isVisible());
    }
    exchange::frmExport* window() { return context.windows.find<exchange::frmExport>(); }
    template <class Control>
    Control& field(const QString& name) {
        return control<Control>(*window(), name);
    }
    void choose(const QString& name) { field<QRadioButton>(name).click(); }
    QString out(const QString& name = {}) const { return path(u"out/"_s + name); }
    /// OK with this answer of the dialog.
    void ok(const QJsonValue& answer) {
        desk.answers.append(answer);
        field<QPushButton>(u"Btn_OK"_s).click();
        settle();
    }
    QByteArray exported() {
        ok(out(u"x.txt"_s));
        const QByteArray bytes = bytesOf(out(u"x.txt"_s));
        open();
        return bytes;
    }
};

TEST_F(ExportWindow, StartsWithThisMonthUpToToday) {
    EXPECT_EQ(window()->windowTitle(), u"Export"_s);
    EXPECT_EQ(field<QDateEdit>(u"DTPickerStart"_s).text(), u"2004/05/01"_s);
    EXPECT_EQ(field<QDateEdit>(u"DTPickerEnd"_s).text(), u"2004/05/06"_s);
    EXPECT_EQ(field<QDateEdit>(u"DTPickerDay"_s).text(), u"2004/05/06"_s);
    EXPECT_EQ(field<QLineEdit>(u"txtYear"_s).text(), u"2004"_s);
    EXPECT_EQ(field<QLineEdit>(u"txtMonth"_s).text(), u"5"_s);
    EXPECT_EQ(field<QComboBox>(u"cmbExportFormat_User"_s).currentText(), u""_s);
    QStringList formats;
    for (int i = 0; i < field<QComboBox>(u"cmbExportFormat_User"_s).count(); ++i)
        formats += field<QComboBox>(u"cmbExportFormat_User"_s).itemText(i);
    EXPECT_EQ(formats, (QStringList{u"HTML.ini"_s, u"mine.dat"_s, u"mine.txt"_s, u"TEXT.ini"_s}));
}

TEST_F(ExportWindow, OptionsExcludeEachOtherWithinTheirGroup) {
    const QStringList groups[] = {{u"optPeriod_User"_s, u"optPeriod_Month"_s, u"optPeriod_Day"_s},
                                  {u"optFormat_Text"_s, u"optFormat_HTML"_s, u"optFormat_User"_s},
                                  {u"optContents_RAW"_s, u"optContents_TEXT"_s},
                                  {u"optFile_Divide"_s, u"optFile_One"_s},
                                  {u"optSortDir_ASC"_s, u"optSortDir_DESC"_s}};
    for (const QStringList& group : groups) {
        for (const QString& chosen : group) {
            choose(chosen);
            for (const QString& name : group)
                EXPECT_EQ(field<QRadioButton>(name).isChecked(), name == chosen) << name.toStdString();
        }
    }
    for (const QStringList& group : groups)
        EXPECT_TRUE(field<QRadioButton>(group.last()).isChecked()) << group.last().toStdString();
}

TEST_F(ExportWindow, TheNameRuleNeedsDividedFiles) {
    const auto isOn = [&] {
        EXPECT_EQ(field<QRadioButton>(u"optFileName_Day"_s).isEnabled(),
                  field<QRadioButton>(u"optFileName_Title"_s).isEnabled());
        return field<QRadioButton>(u"optFileName_Day"_s).isEnabled();
    };
    EXPECT_FALSE(isOn());
    choose(u"optFile_Divide"_s);
    EXPECT_TRUE(isOn());
    choose(u"optFile_One"_s);
    EXPECT_FALSE(isOn());
}

TEST_F(ExportWindow, WritesTheChosenPeriod) {
    EXPECT_EQ(exported(), "TEXT.txt 05-01 b\r\nTEXT.txt 05-06 b\r\n");
    field<QDateEdit>(u"DTPickerStart"_s).setDate({2004, 4, 1});
    field<QDateEdit>(u"DTPickerEnd"_s).setDate({2004, 5, 1});
    EXPECT_EQ(exported(), "TEXT.txt 04-30 b\r\nTEXT.txt 05-01 b\r\n");
    choose(u"optPeriod_Month"_s);
    field<QLineEdit>(u"txtMonth"_s).setText(u"06"_s);
    EXPECT_EQ(exported(), "TEXT.txt 06-01 b\r\n");
    choose(u"optPeriod_Day"_s);
    field<QDateEdit>(u"DTPickerDay"_s).setDate({2004, 4, 30});
    EXPECT_EQ(exported(), "TEXT.txt 04-30 b\r\n");
    field<QDateEdit>(u"DTPickerStart"_s).setDate({2004, 5, 6});
    field<QDateEdit>(u"DTPickerEnd"_s).setDate({2004, 5, 1});
    EXPECT_EQ(exported(), "");
}

TEST_F(ExportWindow, WritesFormatContentsAndOrder) {
    choose(u"optContents_RAW"_s);
    choose(u"optSortDir_DESC"_s);
    choose(u"optFormat_HTML"_s);
    EXPECT_EQ(exported(), "HTML.txt 05-06 <B>b</B>\r\nHTML.txt 05-01 <B>b</B>\r\n");
    choose(u"optFormat_User"_s);
    field<QComboBox>(u"cmbExportFormat_User"_s).setCurrentText(u"mine.dat"_s);
    choose(u"optFile_Divide"_s);
    choose(u"optFileName_Title"_s);
    choose(u"optContents_RAW"_s);
    choose(u"optPeriod_Day"_s);
    ok(out(u"chosen"_s));
    EXPECT_FALSE(window());
    EXPECT_EQ(bytesOf(out(u"05-06.dat"_s)), "mine.txt 05-06 <B>b</B>\r\n");
}

TEST_F(ExportWindow, WritesDividedFiles) {
    choose(u"optFormat_User"_s);
    field<QComboBox>(u"cmbExportFormat_User"_s).setCurrentText(u"mine.dat"_s);
    choose(u"optFile_Divide"_s);
    ok(path(u"out"_s));
    EXPECT_EQ(QDir(out()).entryList(QDir::Files), (QStringList{u"2004_05_01.dat"_s, u"2004_05_06.dat"_s}));
    EXPECT_EQ(bytesOf(out(u"2004_05_06.dat"_s)), "mine.txt 05-06 b\r\n");
}

TEST_F(ExportWindow, UnloadsBehindTheBox) {
    ok(out(u"x.txt"_s));
    EXPECT_EQ(boxes(), QStringList{u"information: 完了！"_s});
    EXPECT_EQ(panel(), u"2件の日記をエクスポートしました。"_s);
    EXPECT_FALSE(window());
}

TEST_F(ExportWindow, StaysAfterACancelARefusalAndAFailure) {
    choose(u"optPeriod_Month"_s);
    ok(QJsonValue());
    EXPECT_EQ(boxes(), QStringList{u"information: キャンセルしました"_s});
    choose(u"optFormat_User"_s);
    field<QPushButton>(u"Btn_OK"_s).click();
    settle();
    EXPECT_EQ(boxes().last(), u"critical: 定義ファイルが指定されていません。"_s);
    choose(u"optFormat_Text"_s);
    ok(path(u"nowhere/x"_s));
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    ASSERT_TRUE(QFile::remove(path(u"HTML2TXT.ini"_s)));
    ok(out(u"x"_s));
    EXPECT_EQ(boxes().last(), u"critical: HTML2TXT Initializeファイル読み込みエラー"_s);
    ASSERT_TRUE(window());
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(field<QRadioButton>(u"optPeriod_Month"_s).isChecked());
    EXPECT_TRUE(field<QPushButton>(u"Btn_OK"_s).isEnabled());
    EXPECT_EQ(QDir(out()).entryList(QDir::Files), QStringList());
}

TEST_F(ExportWindow, OkIsOffAndTheWindowStaysWhileItWrites) {
    sql(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 600) "
        "INSERT INTO Contents (Day, Number, Title) SELECT '2004/05/02', i, 't' FROM n"_s);
    class WatchedDesk : public ScriptedDesk {
    public:
        void progress(const QString& text, int value, int max) override {
            ScriptedDesk::progress(text, value, max);
            isOkOn = button->isEnabled();
            button->click();
            button->window()->close();
        }
        QPushButton* button = nullptr;
        bool isOkOn = true;
    } watched;
    window()->reject();
    settle();
    desktop::Context other{{session, clock, watched}};
    other.mdi = context.mdi;
    watched.answers.append(out(u"x.txt"_s));
    auto& shown = other.windows.get<exchange::frmExport>();
    shown.showWindow();
    watched.button = &control<QPushButton>(shown, u"Btn_OK"_s);
    watched.button->click();
    EXPECT_FALSE(watched.isOkOn);
    EXPECT_EQ(watched.texts(u"message"_s), QStringList{u"完了！"_s});
    EXPECT_TRUE(watched.answers.isEmpty());
    settle();
    EXPECT_FALSE(other.windows.find<exchange::frmExport>());
}

TEST_F(ExportWindow, OneWindowThatKeepsItsPlace) {
    auto* first = window();
    open();
    EXPECT_EQ(window(), first);
    first->move(150, 120);
    settle();
    const QPoint place = first->pos();
    QTest::keyClick(first, Qt::Key_Escape);
    settle();
    EXPECT_FALSE(window());
    EXPECT_EQ(core::ReadIniInt(session.DiaryIniFile, u"Export"_s, u"Left"_s), place.x() * 15);
    EXPECT_EQ(core::ReadIniInt(session.DiaryIniFile, u"Export"_s, u"Top"_s), place.y() * 15);
    EXPECT_EQ(core::ReadIni(session.DiaryIniFile, u"Export"_s, u"Height"_s), u""_s);
    open();
    EXPECT_EQ(window()->pos(), place);
    EXPECT_TRUE(boxes().isEmpty());
}

} // namespace
} // namespace velloria::tests
