// The registers of files and logs as a person works them.
#include "core/keys.h"
#include "core/setting.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "editor_home.h"
#include "platform/file_write.h"
#include "registers/forms/frmResistFiles.h"
#include "registers/forms/frmResistLogs.h"

#include <QListWidget>
#include <QMimeData>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using registers::frmResistFiles;
using registers::frmResistLogs;

class Registers : public EditorHome {
protected:
    void SetUp() override {
        EditorHome::SetUp();
        platform::makeFolder(path(u"in"_s));
    }

    template <class Window>
    Window& openBy(const QString& command) {
        top().findChild<QAction*>(command)->trigger();
        auto* window = context.windows.find<Window>();
        if (!window)
            throw std::runtime_error("the window did not open");
        EXPECT_TRUE(becomesActive(*window));
        settle();
        shown = window;
        return *window;
    }
    frmResistFiles& openFiles() { return openBy<frmResistFiles>(u"ResistOtherFiles"_s); }
    frmResistLogs& openLogs() { return openBy<frmResistLogs>(u"ResistLogs"_s); }

    QString source(const QString& name, const QByteArray& bytes = "one") {
        writeFile(path(u"in/"_s + name), bytes);
        return path(u"in/"_s + name);
    }
    QLineEdit& line(const QString& name) { return control<QLineEdit>(*shown, name); }
    desktop::Combo& box(const QString& name) { return control<desktop::Combo>(*shown, name); }
    QListWidget& list() { return control<QListWidget>(*shown, u"ResisterdList"_s); }
    QStringList items() {
        QStringList items;
        for (int i = 0; i < list().count(); ++i)
            items += list().item(i)->text();
        return items;
    }
    QStringList days() {
        QStringList items;
        for (int i = 0; i < box(u"cmbResisterdDay"_s).count(); ++i)
            items += box(u"cmbResisterdDay"_s).itemText(i);
        return items;
    }
    void press(const QString& name) {
        QTest::mouseClick(&control<QPushButton>(*shown, name), Qt::LeftButton);
        settle();
    }
    void select(int row) {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::NoModifier,
                          list().visualItemRect(list().item(row)).center());
    }
    QString kept(const core::Setting& key) { return core::Settings(session).text(key); }
    QString pointer() {
        const QStringList shapes = turns().filter(QRegularExpression(u"^(hourglass|default)$"_s));
        return shapes.isEmpty() ? QString() : shapes.last();
    }
    /// Makes a folder of the diary one of the system's, whose files nobody can remove.
    void lend(const QString& name) {
        QDir(session.DataPath + name).removeRecursively();
        ASSERT_TRUE(QFile::link(u"/proc/self"_s, session.DataPath + name));
    }
    QString part(const QString& name) const { return session.DataPath + u"DiaryParts/"_s + name; }

    QWidget* shown = nullptr;
};

TEST_F(Registers, TheChoiceOfDaysBeginsWithAllAndTheNewestDay) {
    writeDay({u"a"_s, u"b"_s}, u"2004/05/06"_s);
    writeDay({u"c"_s}, u"2004/05/07"_s);
    openFiles();
    EXPECT_EQ(shown->windowTitle(), u"Resist Other Files"_s);
    EXPECT_EQ(days(), (QStringList{u"ALL"_s, u"2004/05/07 : 1"_s, u"2004/05/06 : 1"_s, u"2004/05/06 : 2"_s}));
    EXPECT_EQ(box(u"cmbResisterdDay"_s).currentText(), u"ALL"_s);
    writeDay({u"d"_s}, u"2004/05/08"_s);
    line(u"txtOpenFile"_s).setText(source(u"x.gif"_s));
    press(u"BtnResist"_s);
    EXPECT_EQ(days().size(), 4) << "it is filled once";
}

TEST_F(Registers, FilesAreRegisteredForTheChosenEntry) {
    writeDay({u"a"_s, u"b"_s});
    openFiles();
    press(u"BtnResist"_s);
    EXPECT_TRUE(items().isEmpty()) << "without a file nothing happens";
    line(u"txtOpenFile"_s).setText(source(u"x.gif"_s));
    press(u"BtnResist"_s);
    EXPECT_EQ(items(), QStringList{u"ALL : 0 : x.gif"_s});
    pick(box(u"cmbResisterdDay"_s), 2);
    press(u"BtnResist"_s);
    EXPECT_EQ(items(), (QStringList{u"2004/05/06 : 2 : x.gif"_s, u"ALL : 0 : x.gif"_s}));
    answer(u"no"_s);
    press(u"BtnResist"_s);
    EXPECT_EQ(questions(), QStringList{u"すでに登録済みのファイルです。\r\n上書きしますか？"_s});
    EXPECT_EQ(pointer(), u"default"_s);
    EXPECT_TRUE(exists(part(u"x.gif"_s)));
}

TEST_F(Registers, EnterRegistersAndEscapeCloses) {
    openFiles();
    line(u"txtOpenFile"_s).setText(source(u"x.gif"_s));
    line(u"txtOpenFile"_s).setFocus();
    QTest::keyClick(&line(u"txtOpenFile"_s), Qt::Key_Return);
    EXPECT_EQ(items().size(), 1);
    QTest::keyClick(shown, Qt::Key_Escape);
    settle();
    EXPECT_FALSE(context.windows.find<frmResistFiles>());
}

TEST_F(Registers, ARefusedFileHasItsBoxAndThePointerComesBack) {
    openFiles();
    expectedFailures = 1;
    line(u"txtOpenFile"_s).setText(path(u"in/no.gif"_s));
    press(u"BtnResist"_s);
    EXPECT_TRUE(items().isEmpty());
    EXPECT_EQ(pointer(), u"default"_s);
    EXPECT_TRUE(shown->isVisible());
}

TEST_F(Registers, TheSelectedRowIsTheOneThatGoes) {
    openFiles();
    press(u"BtnDelete"_s);
    for (const QString& name : {u"a.gif"_s, u"b : a.gif"_s, u"c.gif"_s}) {
        line(u"txtOpenFile"_s).setText(source(name));
        press(u"BtnResist"_s);
    }
    press(u"BtnDelete"_s);
    EXPECT_TRUE(questions().isEmpty()) << "nothing is selected";
    select(1);
    answer(u"yes"_s);
    answer(u"yes"_s);
    press(u"BtnDelete"_s);
    EXPECT_EQ(questions(), (QStringList{u"本当に削除しますか？"_s,
                                        u"このファイルは他の日付等で使用されていません。\r\n削除しますか？"_s}));
    EXPECT_EQ(items(), (QStringList{u"ALL : 0 : a.gif"_s, u"ALL : 0 : c.gif"_s}));
    EXPECT_TRUE(exists(part(u"a.gif"_s)));
    EXPECT_FALSE(exists(part(u"b : a.gif"_s)));
    answer(u"no"_s);
    press(u"BtnDelete"_s);
    EXPECT_EQ(items().size(), 2);
}

TEST_F(Registers, ARowIsGoneFromTheListWhenItsFileStays) {
    lend(u"DiaryParts"_s);
    sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES ('status', 'ALL', 0), ('other', 'ALL', 0)"_s);
    openFiles();
    select(1);
    answer(u"yes"_s);
    answer(u"yes"_s);
    expectedFailures = 1;
    press(u"BtnDelete"_s);
    EXPECT_EQ(items(), QStringList{u"ALL : 0 : other"_s});
    const QString told = desk.texts(u"failure"_s).value(0);
    EXPECT_TRUE(told.contains(u"登録は削除しました"_s)) << told.toStdString();
    EXPECT_TRUE(told.contains(u"ファイルは残っています。不要なら"_s)) << told.toStdString();
    EXPECT_TRUE(told.contains(part(u"status"_s))) << told.toStdString();
}

TEST_F(Registers, TheHourglassStandsWhileListsFillAndFilesAreRegistered) {
    const QString ask = u"すでに登録済みのファイルです。\r\n上書きしますか？"_s;
    const QStringList wait{u"hourglass"_s, u"default"_s};
    desk.events = {};
    openFiles();
    EXPECT_EQ(turns(), wait + wait) << "the choice of days, and the list";
    line(u"txtOpenFile"_s).setText(source(u"x.gif"_s));
    press(u"BtnResist"_s);
    desk.events = {};
    answer(u"no"_s);
    press(u"BtnResist"_s);
    EXPECT_EQ(turns(), (QStringList{u"hourglass"_s, ask, u"default"_s}) + wait);
    select(0);
    desk.events = {};
    answer(u"yes"_s);
    answer(u"no"_s);
    press(u"BtnDelete"_s);
    EXPECT_EQ(turns().sliced(2), wait);
    desk.events = {};
    openLogs();
    EXPECT_EQ(turns(), wait);
    line(u"txtOpenFile"_s).setText(source(u"x.htm"_s));
    pick(box(u"cmbMonth"_s), 2);
    press(u"BtnResist"_s);
    desk.events = {};
    answer(u"no"_s);
    press(u"BtnResist"_s);
    EXPECT_EQ(turns(), (QStringList{u"hourglass"_s, ask, u"default"_s}) + wait);
}

TEST_F(Registers, TheFolderOfTheBoxIsKeptOnEveryClose) {
    openFiles();
    line(u"txtOpenFile"_s).setText(path(u"in/x.gif"_s));
    press(u"BtnClose"_s);
    EXPECT_EQ(kept(core::keys::kDefaultLoadPath), path(u"in"_s));
    openFiles();
    desk.answers = {QJsonValue()};
    press(u"BtnOpenFolder"_s);
    EXPECT_EQ(lastFileEvent()[u"folder"_s].toString(), path(u"in"_s));
    const QStringList parts = lastFileEvent()[u"filter"_s].toString().split(u'|');
    EXPECT_EQ((QStringList{parts[0], parts[2], parts[4], parts[6], parts[8], parts[10]}),
              (QStringList{u"Resist Files(*.gif,*.jpg,*.png,*.css)"_s, u"GIF Files(*.gif)"_s, u"JPG Files(*.jpg)"_s,
                           u"PNG Files(*.png)"_s, u"CSS Files(*.css)"_s, u"ALL Files(*.*)"_s}));
    EXPECT_EQ((QStringList{parts[1], parts[3], parts[5], parts[7], parts[9], parts[11]}),
              (QStringList{u"*.gif;*.jpg;*.png;*.css"_s, u"*.gif"_s, u"*.jpg"_s, u"*.png"_s, u"*.css"_s, u"*"_s}));
    EXPECT_EQ(line(u"txtOpenFile"_s).text(), u""_s);
    shown->close();
    settle();
    EXPECT_EQ(kept(core::keys::kDefaultLoadPath), u""_s) << "the empty one too";
    openFiles();
    answer(source(u"y.css"_s));
    press(u"BtnOpenFolder"_s);
    EXPECT_EQ(line(u"txtOpenFile"_s).text(), path(u"in/y.css"_s));
    desk.answers = {QJsonValue()};
    press(u"BtnOpenFolder"_s);
    EXPECT_EQ(lastFileEvent()[u"folder"_s].toString(), path(u"in"_s));
    context.windows.closeAll();
    EXPECT_EQ(kept(core::keys::kDefaultLoadPath), path(u"in"_s)) << "also when the program ends";
}

TEST_F(Registers, FilesDroppedOnTheWindowFillTheBox) {
    openFiles();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path(u"in/x y.css"_s)), QUrl::fromLocalFile(path(u"in/z.css"_s))});
    data.setText(u"file:///nonsense"_s);
    EXPECT_FALSE(line(u"txtOpenFile"_s).acceptDrops()) << "what is dropped on the box goes to the window";
    QDragEnterEvent enter({5, 5}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(shown, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(shown, &drop);
    EXPECT_EQ(line(u"txtOpenFile"_s).text(), path(u"in/x y.css"_s));
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the file manager keeps its file";
    QMimeData text;
    text.setText(u"file:///etc/passwd"_s);
    QDragEnterEvent other({5, 5}, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    other.ignore();
    QCoreApplication::sendEvent(shown, &other);
    EXPECT_FALSE(other.isAccepted());
}

TEST_F(Registers, ADiaryThatCantBeReadOpensNoRegister) {
    expectedFailures = 2;
    sql(u"DROP TABLE FileDB"_s);
    sql(u"DROP TABLE LogDB"_s);
    desk.events = {};
    top().findChild<QAction*>(u"ResistOtherFiles"_s)->trigger();
    top().findChild<QAction*>(u"ResistLogs"_s)->trigger();
    EXPECT_FALSE(context.windows.find<frmResistFiles>());
    EXPECT_FALSE(context.windows.find<frmResistLogs>());
    EXPECT_EQ(turns(), (QStringList{u"hourglass"_s, u"default"_s, u"hourglass"_s, u"default"_s, u"failure"_s,
                                    u"hourglass"_s, u"default"_s, u"failure"_s}))
        << "the failure comes while a list fills, and the pointer before its box";
}

// -- logs -------------------------------------------------------------------------------------------------------------

TEST_F(Registers, LogsAreRegisteredForAMonth) {
    openLogs();
    EXPECT_EQ(shown->windowTitle(), u"Resist Diary Logs"_s);
    EXPECT_EQ(line(u"txtYear"_s).text(), u"2004"_s);
    EXPECT_EQ(box(u"cmbMonth"_s).currentText(), u""_s);
    EXPECT_EQ(box(u"cmbMonth"_s).count(), 12);
    const QString file = source(u"x.htm"_s);
    line(u"txtOpenFile"_s).setText(file);
    press(u"BtnResist"_s);
    EXPECT_TRUE(items().isEmpty()) << "without a month nothing is registered";
    EXPECT_EQ(boxes(), QStringList{u"critical: ログの月が選択されていません。\r\n月を選択してください。"_s});
    EXPECT_TRUE(box(u"cmbMonth"_s).hasFocus());
    EXPECT_EQ(kept(core::keys::kLogResistPath), u""_s);
    pick(box(u"cmbMonth"_s), 2);
    press(u"BtnResist"_s);
    EXPECT_EQ(items(), QStringList{u"2004/03 : x.htm"_s});
    EXPECT_EQ(kept(core::keys::kLogResistPath), path(u"in"_s));
    pick(box(u"cmbMonth"_s), 3);
    answer(u"yes"_s);
    press(u"BtnResist"_s);
    EXPECT_EQ(items(), QStringList{u"2004/03 : x.htm"_s});
    EXPECT_EQ(pointer(), u"default"_s);
}

TEST_F(Registers, TheDialogOfLogsBeginsWhereTheLastOneWas) {
    core::writeQuietly(session, core::keys::kLogResistPath, path(u"in"_s));
    openLogs();
    answer(source(u"x.htm"_s));
    press(u"BtnOpenFolder"_s);
    EXPECT_EQ(lastFileEvent()[u"folder"_s].toString(), path(u"in"_s));
    EXPECT_EQ(line(u"txtOpenFile"_s).text(), path(u"in/x.htm"_s));
    const QStringList parts = lastFileEvent()[u"filter"_s].toString().split(u'|');
    EXPECT_EQ(parts.first(4), (QStringList{u"HTML Files(*.htm,*.html,*.shtm,*.shtml)"_s,
                                           u"*.htm;*.html;*.shtm;*.shtml"_s, u"ALL Files(*.*)"_s, u"*"_s}));
}

TEST_F(Registers, ALogIsDeletedByItsRow) {
    openLogs();
    line(u"txtOpenFile"_s).setText(source(u"a : b.htm"_s));
    pick(box(u"cmbMonth"_s), 0);
    press(u"BtnResist"_s);
    press(u"BtnDelete"_s);
    EXPECT_TRUE(questions().isEmpty()) << "nothing is selected";
    select(0);
    for (const char* yes : {"yes", "yes", "yes"})
        answer(QLatin1StringView(yes));
    press(u"BtnDelete"_s);
    EXPECT_EQ(questions(),
              (QStringList{u"本当に削除しますか？"_s, u"ファイルも削除しますか？"_s, u"本当に削除しますか？"_s}));
    EXPECT_TRUE(items().isEmpty());
    EXPECT_FALSE(exists(session.DataPath + u"DiaryLog/a : b.htm"_s));
}

TEST_F(Registers, ALogIsGoneFromTheListWhenItsPageStays) {
    lend(u"DiaryLog"_s);
    sql(u"INSERT INTO LogDB (LogMonth, LogFileName) VALUES ('2004/03', 'status'), ('2004/02', 'other')"_s);
    openLogs();
    select(0);
    for (const char* yes : {"yes", "yes", "yes"})
        answer(QLatin1StringView(yes));
    expectedFailures = 1;
    press(u"BtnDelete"_s);
    EXPECT_EQ(items(), QStringList{u"2004/02 : other"_s});
    const QString told = desk.texts(u"failure"_s).value(0);
    EXPECT_TRUE(told.contains(u"登録は削除しました"_s)) << told.toStdString();
    EXPECT_TRUE(told.contains(u"ファイルは残っています。不要なら"_s)) << told.toStdString();
}

TEST_F(Registers, AWrongYearCallsTheFocusBack) {
    openLogs();
    const std::vector<std::pair<QString, QString>> cases{
        {u"abc"_s, u"不正な文字が入力されました。半角数字を入力してください。"_s},
        {u"-1"_s, u"不正な文字が入力されました。半角で西暦を入力してください。"_s},
        {u"12"_s, u"不正な文字が入力されました。半角で4桁の西暦を入力してください。"_s},
        {u"123"_s, {}}};
    for (const auto& [year, text] : cases) {
        line(u"txtYear"_s).setFocus();
        line(u"txtYear"_s).setText(year);
        desk.events = {};
        QTest::keyClick(&line(u"txtYear"_s), Qt::Key_Tab);
        settle();
        EXPECT_EQ(boxes(), text.isEmpty() ? QStringList() : QStringList{u"critical: "_s + text}) << year.toStdString();
        EXPECT_EQ(line(u"txtYear"_s).hasFocus(), !text.isEmpty());
    }
}

TEST_F(Registers, AWrongYearIsTestedOnceAndNotOnTheWayOut) {
    openLogs();
    line(u"txtOpenFile"_s).setText(source(u"x.htm"_s));
    pick(box(u"cmbMonth"_s), 0);
    line(u"txtYear"_s).setText(u"abc"_s);
    line(u"txtYear"_s).setFocus();
    desk.events = {};
    press(u"BtnResist"_s);
    settle();
    EXPECT_EQ(boxes().size(), 1);
    EXPECT_TRUE(items().isEmpty());
    EXPECT_TRUE(line(u"txtYear"_s).hasFocus());
    press(u"BtnClose"_s);
    settle();
    EXPECT_EQ(boxes().size(), 1);
    EXPECT_FALSE(context.windows.find<frmResistLogs>());
}

TEST_F(Registers, AMissingAnswerIsAskedForAndHasTheFocus) {
    openLogs();
    pick(box(u"cmbMonth"_s), 2);
    press(u"BtnResist"_s);
    EXPECT_EQ(boxes().last(),
              u"critical: 登録するログのファイルが指定されていません。\r\nファイルを指定してください。"_s);
    EXPECT_TRUE(line(u"txtOpenFile"_s).hasFocus());
    line(u"txtOpenFile"_s).setText(source(u"x.htm"_s));
    line(u"txtYear"_s).clear();
    press(u"BtnResist"_s);
    EXPECT_EQ(boxes().last(), u"critical: ログの年が入力されていません。\r\n年を入力してください。"_s);
    EXPECT_TRUE(line(u"txtYear"_s).hasFocus());
    EXPECT_TRUE(items().isEmpty());
    EXPECT_EQ(kept(core::keys::kLogResistPath), u""_s);
    shown->close();
    settle();

    openFiles();
    press(u"BtnResist"_s);
    EXPECT_EQ(boxes().last(), u"critical: 登録するファイルが指定されていません。\r\nファイルを指定してください。"_s);
    EXPECT_TRUE(line(u"txtOpenFile"_s).hasFocus());
    press(u"BtnDelete"_s);
    EXPECT_EQ(panel(), u"削除するファイルが選択されていません。"_s);
    EXPECT_TRUE(list().hasFocus());
}

TEST_F(Registers, AreOneOfAKind) {
    frmResistFiles& files = openFiles();
    frmResistLogs& logs = openLogs();
    EXPECT_EQ(&openFiles(), &files);
    EXPECT_EQ(&openLogs(), &logs);
    EXPECT_TRUE(top().isEnabled());
}

} // namespace
} // namespace velloria::tests
