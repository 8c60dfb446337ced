// The image tag maker as a person works it, and pictures that are dropped on the editor.
#include "editor/forms/frmHTMLMakeImage.h"

#include "core/keys.h"
#include "core/setting.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "desktop/up_down.h"
#include "editor_home.h"
#include "platform/file_write.h"
#include "registers/file_register.h"
#include "registers/forms/frmResistFiles.h"

#include <QMimeData>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using editor::frmHTMLMakeImage;

class ImageMaker : public EditorHome {
protected:
    void SetUp() override {
        EditorHome::SetUp();
        writeDay({u"first"_s, u"second"_s});
        clickDay(6);
        clickPane();
    }

    frmHTMLMakeImage& open() {
        clickTool(u"InsertImg"_s);
        auto* maker = context.windows.find<frmHTMLMakeImage>();
        if (!maker)
            throw std::runtime_error("the maker did not open");
        EXPECT_TRUE(becomesActive(*maker));
        return *maker;
    }
    frmHTMLMakeImage& maker() { return *context.windows.find<frmHTMLMakeImage>(); }
    bool isOpen() { return context.windows.find<frmHTMLMakeImage>() != nullptr; }

    QLineEdit& line(const QString& name) { return control<QLineEdit>(maker(), name); }
    void press(const QString& name) {
        auto& button = control<QAbstractButton>(maker(), name);
        QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier, {10, button.height() / 2});
        settle();
    }
    void type(const QString& name, const QString& text) {
        line(name).setFocus();
        line(name).selectAll();
        QTest::keyClick(&line(name), Qt::Key_Backspace);
        keys(line(name), text);
    }
    QString tag() { return control<QPlainTextEdit>(maker(), u"txt_InsertTag"_s).toPlainText(); }
    QString label(const QString& name) { return control<QLabel>(maker(), name).text(); }
    /// Chooses a file by the dialog.
    void choose(const QString& file) {
        answer(file);
        press(u"Btn_Open"_s);
    }
    QString picture(const QString& name, int width = 500, int height = 100) {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::red);
        platform::makeFolder(path(u"in"_s));
        EXPECT_TRUE(image.save(path(u"in/"_s + name), "PNG"));
        return path(u"in/"_s + name);
    }
    QString part(const QString& name) const { return session.DataPath + u"DiaryParts/"_s + name; }
    QStringList registered() {
        QStringList rows;
        for (const store::FileRow& row : registers::FileRegister(session.databaseFile()).ListFiles())
            rows += registers::shownFile(row);
        return rows;
    }
    QString kept(const core::Setting& key) { return core::Settings(session).text(key); }
    void drop(const QList<QUrl>& urls, const QString& text = {}, int index = 0) { dropOn(pane(index), urls, text); }
    void dropOn(desktop::TextPane& target, const QList<QUrl>& urls, const QString& text = {}) {
        QMimeData data;
        if (!urls.isEmpty())
            data.setUrls(urls);
        if (!text.isEmpty())
            data.setText(text);
        const QPoint place(5, 5);
        QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(target.viewport(), &enter);
        isTaken = enter.isAccepted();
        if (isTaken) {
            QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(target.viewport(), &drop);
            action = drop.dropAction();
        }
        settle();
    }
    bool isTaken = false;
    Qt::DropAction action = Qt::IgnoreAction;
};

TEST_F(ImageMaker, OpensInFrontOfTheEditorAndBlocksNothing) {
    frmHTMLMakeImage& maker = open();
    EXPECT_EQ(maker.windowTitle(), u"イメージタグ挿入"_s);
    EXPECT_FALSE(maker.isModal());
    EXPECT_TRUE(top().isEnabled());
    EXPECT_EQ(tag(), u"<IMG SRC=\"\">"_s);
    clickTool(u"InsertImg"_s);
    EXPECT_EQ(&this->maker(), &maker) << "there is one of a kind";
    QTest::keyClick(&maker, Qt::Key_Escape);
    settle();
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(pane().text(), u"text of second"_s);
}

TEST_F(ImageMaker, TheMenuOpensItToo) {
    top().findChild<QAction*>(u"mnuInsertURL"_s)->trigger();
    EXPECT_TRUE(isOpen());
}

TEST_F(ImageMaker, AChosenPictureIsPreviewedAndNamed) {
    open();
    choose(picture(u"a.gif"_s));
    EXPECT_EQ(line(u"txt_FilePath"_s).text(), path(u"in/a.gif"_s));
    EXPECT_EQ(label(u"lbl_Preview"_s), u"プレビュー[33%]"_s);
    EXPECT_EQ(label(u"lbl_Size"_s), u"Size : 500 x 100"_s);
    EXPECT_EQ(line(u"txt_TagWidth"_s).text(), u"500"_s);
    EXPECT_EQ(line(u"txt_TagHeight"_s).text(), u"100"_s);
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/a.gif"_s);
    EXPECT_EQ(tag(), u"<IMG SRC=\"./DiaryParts/a.gif\">"_s) << "the boxes stay unticked";
    const QImage shown = control<QLabel>(maker(), u"Pic_Preview"_s).pixmap(Qt::ReturnByValue).toImage();
    const int ratio = qRound(maker().devicePixelRatioF());
    EXPECT_EQ(shown.size(), QSize(167, 167) * ratio);
    EXPECT_EQ(shown.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(0, 34 * ratio), QColor(Qt::white));
    EXPECT_EQ(control<QLabel>(maker(), u"Pic_Preview"_s).size(), QSize(167, 167));
}

TEST_F(ImageMaker, TheDialogTellsItsFiltersAndBeginsAtThePictures) {
    open();
    desk.answers = {QJsonValue()};
    press(u"Btn_Open"_s);
    EXPECT_EQ(lastFileEvent()[u"folder"_s].toString(),
              QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    const QStringList parts = lastFileEvent()[u"filter"_s].toString().split(u'|');
    EXPECT_EQ(parts[0], u"Resist Files(*.gif,*.jpg,*.png,*.bmp)"_s);
    EXPECT_EQ((QStringList{parts[1], parts[3], parts[5], parts[7], parts[9], parts[11]}),
              (QStringList{u"*.gif;*.jpg;*.png;*.bmp"_s, u"*.gif"_s, u"*.jpg"_s, u"*.png"_s, u"*.bmp"_s, u"*"_s}));
    EXPECT_EQ((QStringList{parts[2], parts[4], parts[6], parts[8], parts[10]}),
              (QStringList{u"GIF Files(*.gif)"_s, u"JPG Files(*.jpg)"_s, u"PNG Files(*.png)"_s, u"BMP Files(*.bmp)"_s,
                           u"ALL Files(*.*)"_s}));
    EXPECT_EQ(line(u"txt_FilePath"_s).text(), u""_s) << "a cancelled dialog changes nothing";
    core::writeQuietly(session, core::keys::kImagePath, u"c:\\"_s);
    desk.answers = {QJsonValue()};
    press(u"Btn_Open"_s);
    EXPECT_EQ(lastFileEvent()[u"folder"_s].toString(),
              QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    core::writeQuietly(session, core::keys::kImagePath, path(u"kept"_s));
    desk.answers = {QJsonValue()};
    press(u"Btn_Open"_s);
    EXPECT_EQ(lastFileEvent()[u"folder"_s].toString(), path(u"kept"_s));
    choose(picture(u"a.gif"_s));
    desk.answers = {QJsonValue()};
    press(u"Btn_Open"_s);
    EXPECT_EQ(lastFileEvent()[u"folder"_s].toString(), path(u"in"_s));
}

TEST_F(ImageMaker, TypingAPathNamesItAndPreviewsNothing) {
    open();
    type(u"txt_FilePath"_s, picture(u"a.gif"_s));
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/a.gif"_s);
    EXPECT_EQ(label(u"lbl_Size"_s), u"Size : "_s);
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(ImageMaker, APictureThatCantBeShownLeavesTheRestUsable) {
    open();
    platform::makeFolder(path(u"in"_s));
    writeFile(path(u"in/a.gif"_s), "GIF or not");
    choose(path(u"in/a.gif"_s));
    EXPECT_EQ(boxes(), QStringList{u"critical: イメージの取得に失敗しました"_s});
    choose(path(u"in/no.gif"_s));
    EXPECT_EQ(boxes().last(), u"critical: イメージファイルのパスが不正です。"_s);
    for (const QJsonValue& event : desk.events) {
        const bool isBox = event[u"event"_s] == u"message"_s;
        EXPECT_EQ(isBox ? event[u"title"_s].toString() : u"Velloria for GDI+"_s, u"Velloria for GDI+"_s);
    }
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/no.gif"_s);
    choose(picture(u"b.gif"_s));
    EXPECT_EQ(label(u"lbl_Size"_s), u"Size : 500 x 100"_s);
    choose(path(u"in/no.gif"_s));
    EXPECT_EQ(label(u"lbl_Size"_s), u"Size : "_s) << "the last picture stands for no other one";
    EXPECT_TRUE(control<QLabel>(maker(), u"Pic_Preview"_s).pixmap(Qt::ReturnByValue).isNull());
    press(u"chk_TagAlt"_s);
    type(u"txt_TagAlt"_s, u"x"_s);
    EXPECT_EQ(tag(), u"<IMG SRC=\"./DiaryParts/no.gif\" alt=\"x\">"_s);
}

TEST_F(ImageMaker, TheTagGrowsInItsOrderWhateverIsTickedFirst) {
    open();
    choose(picture(u"a.gif"_s));
    for (const QString& box : {u"chk_TagOther"_s, u"chk_TagAlt"_s, u"chk_TagVspace"_s, u"chk_TagHspace"_s,
                               u"chk_TagBorder"_s, u"chk_TagAlign"_s, u"chk_TagHeight"_s, u"chk_TagWidth"_s})
        press(box);
    type(u"txt_TagOther"_s, u"ismap"_s);
    type(u"txt_TagAlt"_s, u"絵"_s);
    type(u"txt_TagWidth"_s, u"50"_s);
    auto& unit = control<desktop::Combo>(maker(), u"cmb_TagWidth"_s);
    pick(unit, 1);
    EXPECT_EQ(unit.currentText(), u"%"_s);
    pick(control<desktop::Combo>(maker(), u"cmb_TagAlign"_s), 1);
    auto& border = control<desktop::UpDown>(maker(), u"UpDown_Border"_s);
    border.setFocus();
    QTest::keyClick(&border, Qt::Key_Up);
    QTest::keyClick(&border, Qt::Key_Up);
    type(u"txt_TagHspace"_s, u"5"_s);
    type(u"txt_TagVspace"_s, u"any"_s);
    EXPECT_EQ(tag(), u"<IMG SRC=\"./DiaryParts/a.gif\" width=\"50%\" height=\"100\" align=\"right\" border=\"2\" "
                     u"hspace=\"5\" vspace=\"any\" alt=\"絵\" ismap>"_s);
    press(u"chk_AddDiv"_s);
    type(u"txt_AddDiv"_s, u"class=p"_s);
    EXPECT_TRUE(tag().startsWith(u"<div class=p><IMG SRC="_s) && tag().endsWith(u" ismap></div>"_s));
}

TEST_F(ImageMaker, TheArrowsCountFromWhatIsThere) {
    open();
    auto& box = control<desktop::UpDown>(maker(), u"UpDown_hspace"_s);
    line(u"txt_TagHspace"_s).setText(u"x"_s);
    box.stepBy(1);
    EXPECT_EQ(line(u"txt_TagHspace"_s).text(), u"1"_s);
    box.stepBy(-5);
    EXPECT_EQ(line(u"txt_TagHspace"_s).text(), u"0"_s);
    line(u"txt_TagHspace"_s).setText(u"1e300"_s);
    box.stepBy(1);
    EXPECT_EQ(line(u"txt_TagHspace"_s).text(), u"9999"_s);
    line(u"txt_TagHspace"_s).setFocus();
    line(u"txt_TagVspace"_s).setFocus();
    line(u"txt_TagHspace"_s).setText(u"free text"_s);
    line(u"txt_TagHspace"_s).setFocus();
    line(u"txt_TagVspace"_s).setFocus();
    EXPECT_EQ(line(u"txt_TagHspace"_s).text(), u"free text"_s);
}

TEST_F(ImageMaker, TheAddressNamesWhatAnOkWillRegister) {
    open();
    choose(picture(u"a.gif"_s));
    auto& automatic = control<QCheckBox>(maker(), u"chk_AutoFileName"_s);
    EXPECT_FALSE(automatic.isEnabled());
    EXPECT_FALSE(line(u"txt_RenamedFileName"_s).isEnabled());
    press(u"chk_FileRename"_s);
    EXPECT_TRUE(automatic.isEnabled());
    EXPECT_EQ(line(u"txt_RenamedFileName"_s).text(), u"a.gif"_s);
    type(u"txt_RenamedFileName"_s, u"b.gif"_s);
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/b.gif"_s);
    press(u"chk_AutoFileName"_s);
    EXPECT_EQ(line(u"txt_RenamedFileName"_s).text(), u"dimage20040506_01.gif"_s);
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/dimage20040506_01.gif"_s);
    EXPECT_TRUE(line(u"txt_RenamedFileName"_s).isReadOnly());
    press(u"chk_FileRename"_s);
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/a.gif"_s) << "without renaming the automatic name is none";
}

TEST_F(ImageMaker, ANewPictureTakesItsOwnNameWithIt) {
    open();
    press(u"chk_FileRename"_s);
    choose(picture(u"a.gif"_s));
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/a.gif"_s);
    choose(picture(u"b.gif"_s));
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/b.gif"_s);
    type(u"txt_RenamedFileName"_s, u"mine.gif"_s);
    choose(picture(u"c.gif"_s));
    EXPECT_EQ(line(u"txt_RenamedFileName"_s).text(), u"c.gif"_s) << "a typed name was that of the last picture";
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/c.gif"_s);
    type(u"txt_RenamedFileName"_s, u"mine.gif"_s);
    dropOn(pane(), {QUrl::fromLocalFile(path(u"in/b.gif"_s))});
    EXPECT_EQ(line(u"txt_RenamedFileName"_s).text(), u"b.gif"_s) << "a dropped one is chosen as well";
}

TEST_F(ImageMaker, WithoutRenamingTheNameToBeIsThatOfTheFile) {
    open();
    choose(picture(u"a.gif"_s));
    EXPECT_EQ(line(u"txt_RenamedFileName"_s).text(), u"a.gif"_s);
    type(u"txt_FilePath"_s, picture(u"b.gif"_s));
    press(u"chk_FileRename"_s);
    EXPECT_EQ(line(u"txt_RenamedFileName"_s).text(), u"b.gif"_s);
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/b.gif"_s);
}

/// The machine's folder for what does not last, elsewhere than around the test's home.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const QString& folder) { qputenv("TMPDIR", folder.toUtf8()); }
    ~TemporaryFolder() {
        if (m_before.isNull())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", m_before);
    }

private:
    const QByteArray m_before = qgetenv("TMPDIR");
};

TEST_F(ImageMaker, ATemporaryFolderIsNoPlaceToLookForPictures) {
    const TemporaryFolder temporary(path(u""_s));
    core::writeQuietly(session, core::keys::kImagePath, u"kept"_s);
    open();
    choose(picture(u"a.gif"_s));
    press(u"Btn_OK"_s);
    EXPECT_EQ(registered(), QStringList{u"2004/05/06 : 2 : a.gif"_s});
    EXPECT_EQ(kept(core::keys::kImagePath), u"kept"_s);
}

TEST_F(ImageMaker, OkInsertsRegistersAndKeepsItsTexts) {
    const TemporaryFolder temporary(path(u"tmp"_s));
    ASSERT_TRUE(QDir().mkpath(path(u"tmp"_s)));
    pane().moveCursor(QTextCursor::Start);
    open();
    choose(picture(u"a.gif"_s));
    type(u"txt_AddDiv"_s, u"class=p"_s);
    type(u"txt_TagOther"_s, u"ismap"_s);
    EXPECT_EQ(kept(core::keys::kTagOtherText), u""_s);
    press(u"Btn_OK"_s);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(pane().text(), u"<IMG SRC=\"./DiaryParts/a.gif\">text of second"_s);
    EXPECT_EQ(registered(), QStringList{u"2004/05/06 : 2 : a.gif"_s});
    EXPECT_EQ(bytesOf(part(u"a.gif"_s)), bytesOf(path(u"in/a.gif"_s)));
    EXPECT_EQ(kept(core::keys::kAddDivText), u"class=p"_s);
    EXPECT_EQ(kept(core::keys::kTagOtherText), u"ismap"_s);
    EXPECT_EQ(kept(core::keys::kImagePath), path(u"in"_s));
    EXPECT_TRUE(contents().ChangeYesNo());
    open();
    EXPECT_EQ(line(u"txt_AddDiv"_s).text(), u"class=p"_s);
    EXPECT_EQ(line(u"txt_TagOther"_s).text(), u"ismap"_s);
    EXPECT_EQ(tag(), u"<IMG SRC=\"\">"_s);
}

TEST_F(ImageMaker, CancelKeepsNothing) {
    open();
    choose(picture(u"a.gif"_s));
    type(u"txt_TagOther"_s, u"ismap"_s);
    press(u"Btn_Cancel"_s);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(kept(core::keys::kTagOtherText), u""_s);
    EXPECT_EQ(kept(core::keys::kImagePath), u""_s);
    EXPECT_EQ(pane().text(), u"text of second"_s);
    EXPECT_TRUE(registered().isEmpty());
}

TEST_F(ImageMaker, ASelectionIsNotReplacedAndTheTagGoesToTheContents) {
    QTextCursor cursor = pane().textCursor();
    cursor.setPosition(5);
    cursor.setPosition(7, QTextCursor::KeepAnchor);
    pane().setTextCursor(cursor);
    clickTab(1);
    clickPane(1);
    open();
    choose(picture(u"a.gif"_s));
    press(u"chk_Resist"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"text <IMG SRC=\"./DiaryParts/a.gif\">of second"_s);
    EXPECT_EQ(pane(1).text(), u""_s);
    EXPECT_EQ(tabs().currentIndex(), 0);
    EXPECT_TRUE(registered().isEmpty()) << "the box for registering was not ticked";
    EXPECT_FALSE(exists(part(u"a.gif"_s)));
}

TEST_F(ImageMaker, AnotherNameIsRegisteredAndTheAutomaticOneRises) {
    for (const char* expected : {"dimage20040506_01.gif", "dimage20040506_02.gif"}) {
        open();
        choose(picture(u"a.gif"_s));
        press(u"chk_FileRename"_s);
        press(u"chk_AutoFileName"_s);
        press(u"Btn_OK"_s);
        EXPECT_TRUE(exists(part(QLatin1StringView(expected)))) << expected;
        EXPECT_TRUE(pane().text().contains(QLatin1StringView(expected))) << expected;
    }
    EXPECT_EQ(registered(),
              (QStringList{u"2004/05/06 : 2 : dimage20040506_01.gif"_s, u"2004/05/06 : 2 : dimage20040506_02.gif"_s}));
    EXPECT_FALSE(exists(part(u"a.gif"_s)));
}

TEST_F(ImageMaker, TheAutomaticNameIsThatOfTheDayAndRegisterAtTheOk) {
    open();
    choose(picture(u"a.gif"_s));
    press(u"chk_FileRename"_s);
    press(u"chk_AutoFileName"_s);
    registers::FileRegister(session.databaseFile()).addFile({0, u"dimage20040507_04.gif"_s, u"2004/05/07"_s, 1});
    clickDay(7);
    press(u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<IMG SRC=\"./DiaryParts/dimage20040507_05.gif\">"_s);
    EXPECT_EQ(registered().last(), u"2004/05/07 : 1 : dimage20040507_05.gif"_s);
}

TEST_F(ImageMaker, ATypedAddressGoesInAsTypedBesideTheAutomaticName) {
    open();
    choose(picture(u"a.gif"_s));
    press(u"chk_FileRename"_s);
    press(u"chk_AutoFileName"_s);
    type(u"txt_TagSRC"_s, u"http://www.example.org/mine.gif"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"text of second<IMG SRC=\"http://www.example.org/mine.gif\">"_s);
    EXPECT_EQ(registered(), QStringList{u"2004/05/06 : 2 : dimage20040506_01.gif"_s});
}

TEST_F(ImageMaker, ATypedTagGoesInAsTypedBesideTheAutomaticName) {
    open();
    choose(picture(u"a.gif"_s));
    press(u"chk_FileRename"_s);
    press(u"chk_AutoFileName"_s);
    type(u"txt_TagSRC"_s, u"mine.gif"_s);
    const QString typed = u"<A HREF=\"./DiaryParts/dimage20040506_01.gif\">my picture</A>"_s;
    control<desktop::TextPane>(maker(), u"txt_InsertTag"_s).setText(typed);
    press(u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"text of second"_s + typed);
}

TEST_F(ImageMaker, ANewAutomaticNameReplacesTheOldOneAloneInWhatWasTyped) {
    open();
    choose(picture(u"a.gif"_s));
    press(u"chk_FileRename"_s);
    press(u"chk_AutoFileName"_s);
    type(u"txt_TagSRC"_s, u"./DiaryParts/dimage20040506_01.gif?new"_s);
    control<desktop::TextPane>(maker(), u"txt_InsertTag"_s)
        .setText(u"<A HREF=\"./DiaryParts/dimage20040506_01.gif\"><IMG SRC=\"./DiaryParts/dimage20040506_01.gif\">"
                 u"not dimage20040506_01.gif nor ./DiaryParts/a.gif</A>"_s);
    registers::FileRegister(session.databaseFile()).addFile({0, u"dimage20040506_01.gif"_s, kDay, 1});
    // A folder stands in the way of the copy, so that the window stays to be looked at.
    platform::makeFolder(part(u"dimage20040506_02.gif"_s));
    expectedFailures = 1;
    press(u"Btn_OK"_s);
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(line(u"txt_RenamedFileName"_s).text(), u"dimage20040506_02.gif"_s);
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/dimage20040506_02.gif?new"_s);
    EXPECT_EQ(tag(), u"<A HREF=\"./DiaryParts/dimage20040506_02.gif\"><IMG SRC=\"./DiaryParts/dimage20040506_02.gif\">"
                     u"not dimage20040506_01.gif nor ./DiaryParts/a.gif</A>"_s);
}

TEST_F(ImageMaker, ANameThatTheRegisterCouldNotTellIsTakenAtTheOk) {
    open();
    press(u"chk_FileRename"_s);
    press(u"chk_AutoFileName"_s);
    sql(u"ALTER TABLE FileDB RENAME TO Away"_s);
    choose(picture(u"a.gif"_s));
    expectedFailures = desk.texts(u"failure"_s).size();
    EXPECT_GT(expectedFailures, 0);
    EXPECT_EQ(line(u"txt_RenamedFileName"_s).text(), u""_s);
    sql(u"ALTER TABLE Away RENAME TO FileDB"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"text of second<IMG SRC=\"./DiaryParts/dimage20040506_01.gif\">"_s);
    EXPECT_EQ(registered(), QStringList{u"2004/05/06 : 2 : dimage20040506_01.gif"_s});
}

TEST_F(ImageMaker, TheHourglassStandsWhileAnOkRegisters) {
    for (int i = 0; i < 2; ++i) {
        open();
        choose(picture(u"a.gif"_s));
        desk.events = {};
        if (i == 1)
            answer(u"no"_s);
        press(u"Btn_OK"_s);
    }
    EXPECT_EQ(turns(),
              (QStringList{u"hourglass"_s, u"すでに登録済みのファイルです。\r\n上書きしますか？"_s, u"default"_s}));
}

TEST_F(ImageMaker, WithoutADayNothingIsInsertedOrRegistered) {
    open();
    choose(picture(u"a.gif"_s));
    type(u"txt_TagOther"_s, u"ismap"_s);
    contents().Contents_Initialize();
    press(u"Btn_OK"_s);
    EXPECT_EQ(panel(), u"日記が開かれていないため、画像の挿入も登録もしませんでした。"_s);
    EXPECT_TRUE(registered().isEmpty());
    EXPECT_EQ(pane().text(), u""_s);
    EXPECT_EQ(kept(core::keys::kTagOtherText), u""_s);
    EXPECT_TRUE(isOpen()) << "what was filled in is not lost";
}

TEST_F(ImageMaker, ARegistrationThatFailsInsertsNoTagAndKeepsTheWindow) {
    open();
    choose(picture(u"a.gif"_s));
    press(u"chk_FileRename"_s);
    type(u"txt_RenamedFileName"_s, u"é.gif"_s);
    expectedFailures = 1;
    press(u"Btn_OK"_s);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(pane().text(), u"text of second"_s);
    EXPECT_TRUE(registered().isEmpty());
    EXPECT_EQ(desk.events.last()[u"event"_s].toString(), u"status"_s);
    type(u"txt_RenamedFileName"_s, u"e.gif"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(registered(), QStringList{u"2004/05/06 : 2 : e.gif"_s});
    EXPECT_EQ(pane().text().count(u"<IMG"_s), 1);
}

TEST_F(ImageMaker, ARegisteredPictureIsAskedAboutAndTheTagGoesInAnyway) {
    for (const char* answered : {"", "no", "yes"}) {
        open();
        choose(picture(u"a.gif"_s));
        if (*answered)
            answer(QLatin1StringView(answered));
        press(u"Btn_OK"_s);
    }
    EXPECT_EQ(questions(), (QStringList{2, u"すでに登録済みのファイルです。\r\n上書きしますか？"_s}));
    EXPECT_EQ(pane().text().count(u"<IMG"_s), 3);
    EXPECT_EQ(registered().size(), 1);
}

TEST_F(ImageMaker, TheOpenRegisterShowsWhatWasRegistered) {
    auto& files = context.windows.get<registers::frmResistFiles>();
    files.showWindow();
    open();
    choose(picture(u"a.gif"_s));
    press(u"Btn_OK"_s);
    EXPECT_EQ(control<QListWidget>(files, u"ResisterdList"_s).count(), 1);
}

TEST_F(ImageMaker, TheResizeGroupIsInert) {
    open();
    for (const QString& name : {u"chk_Resize"_s, u"chk_ResizeWidth"_s, u"chk_ResizeHeight"_s, u"txt_ResizeWidth"_s,
                                u"txt_ResizeHeight"_s, u"cmb_ResizeWidth"_s, u"cmb_ResizeHeight"_s})
        EXPECT_FALSE(control<QWidget>(maker(), name).isEnabled()) << name.toStdString();
}

// -- drops ------------------------------------------------------------------------------------------------------------

TEST_F(ImageMaker, APictureDroppedOnAPaneOpensIt) {
    for (const QString& ending : {u"gif"_s, u"JPG"_s, u"jpeg"_s, u"png"_s, u"bmp"_s}) {
        const QString file = picture(u"a b."_s + ending);
        drop({QUrl::fromLocalFile(file)}, u"file://"_s + file);
        ASSERT_TRUE(isTaken && isOpen()) << ending.toStdString();
        EXPECT_EQ(action, Qt::CopyAction) << "the file manager keeps its file";
        EXPECT_EQ(line(u"txt_FilePath"_s).text(), file);
        EXPECT_EQ(label(u"lbl_Size"_s), u"Size : 500 x 100"_s);
        EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/a b."_s + ending);
        press(u"Btn_Cancel"_s);
    }
    EXPECT_EQ(pane().text(), u"text of second"_s);
}

TEST_F(ImageMaker, ADropReplacesThePictureOfTheOpenWindow) {
    open();
    choose(picture(u"a.gif"_s));
    clickTab(1);
    drop({QUrl::fromLocalFile(picture(u"b.gif"_s, 30, 60))}, {}, 1);
    EXPECT_EQ(label(u"lbl_Size"_s), u"Size : 30 x 60"_s);
    EXPECT_EQ(line(u"txt_TagSRC"_s).text(), u"./DiaryParts/b.gif"_s);
}

TEST_F(ImageMaker, APictureDroppedOnItsTagIsChosenThere) {
    open();
    choose(picture(u"a.gif"_s));
    const QString file = picture(u"b.gif"_s, 30, 60);
    dropOn(control<desktop::TextPane>(maker(), u"txt_InsertTag"_s), {QUrl::fromLocalFile(file)}, u"file://"_s + file);
    EXPECT_TRUE(isTaken);
    EXPECT_EQ(action, Qt::CopyAction);
    EXPECT_EQ(line(u"txt_FilePath"_s).text(), file);
    EXPECT_EQ(label(u"lbl_Size"_s), u"Size : 30 x 60"_s);
    EXPECT_EQ(tag(), u"<IMG SRC=\"./DiaryParts/b.gif\">"_s);
}

TEST_F(ImageMaker, ABrokenPictureThatIsDroppedHasItsBox) {
    platform::makeFolder(path(u"in"_s));
    writeFile(path(u"in/a.gif"_s), "no picture");
    drop({QUrl::fromLocalFile(path(u"in/a.gif"_s))});
    EXPECT_EQ(boxes(), QStringList{u"critical: イメージの取得に失敗しました"_s});
}

TEST_F(ImageMaker, OtherFilesDroppedOnAPaneDoNothing) {
    writeFile(path(u"a.txt"_s), "text");
    for (const QString& name : {u"a.txt"_s, u"gif"_s, u"a.gif.css"_s, u"folder/"_s}) {
        drop({QUrl::fromLocalFile(path(name))}, u"file://"_s + path(name));
        EXPECT_FALSE(isTaken) << name.toStdString();
        EXPECT_FALSE(isOpen());
    }
    EXPECT_EQ(pane().text(), u"text of second"_s);
}

TEST_F(ImageMaker, TextDroppedOnAPaneIsInsertedAsText) {
    drop({}, u"<b>dropped</b>"_s);
    EXPECT_TRUE(isTaken);
    EXPECT_EQ(pane().text(), u"<b>dropped</b>text of second"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    drop({QUrl(u"http://www.example.org/a.gif"_s)}, u"http://www.example.org/a.gif"_s);
    EXPECT_TRUE(pane().text().startsWith(u"http://www.example.org/a.gif<b>"_s)) << pane().text().toStdString();
    EXPECT_FALSE(isOpen());
}

TEST_F(ImageMaker, FitsASmallScreen) {
    open();
    EXPECT_LE(maker().width(), 800);
    EXPECT_LE(maker().height(), 700);
}

} // namespace
} // namespace velloria::tests
