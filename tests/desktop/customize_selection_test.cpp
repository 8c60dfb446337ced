#include "site/forms/frmCustomizeSelection.h"

#include "core/files.h"
#include "core/ini.h"
#include "desktop/browser_home.h"
#include "site/customize_sets.h"
#include "site/forms/set_picture.h"

#include <QScreen>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Selection : public BrowserHome {
protected:
    Selection() {
        writeSet(u"red"_s, "#ff0000");
        writeSet(u"blue"_s, "#0000ff");
        writeFile(folder() + u"RSS.ini"_s, "");
    }

    QString folder() const { return session.DataPath + u"Customize/"_s; }
    void writeSet(const QString& name, const QByteArray& colour) const {
        writeFile(folder() + name + u".ini"_s, "[Body]\r\nBackColor=" + colour + "\r\nTextColor=" + colour + "\r\n");
    }
    site::frmCustomizeSelection* window() { return context.windows.find<site::frmCustomizeSelection>(); }
    void open() {
        top().command(u"MnuCustomizeSelect"_s)->trigger();
        settle();
        ASSERT_TRUE(window());
        ASSERT_TRUE(window()->isVisible());
        desk.events = {};
    }
    QComboBox& sets() { return control<QComboBox>(*window(), u"cmbSelectCustomize"_s); }
    void press(const QString& name) {
        control<QPushButton>(*window(), name).click();
        settle();
    }
    QString selected() const { return core::ReadIni(session.DiaryIniFile, u"Customize"_s, u"IniFileName"_s); }
    QString preview() const { return pageOf(session.DataPath + u"tmp.htm"_s); }
    QStringList previewStep() const {
        return {u"status: Webページ表示中..."_s, u"navigate: "_s + session.DataPath + u"tmp.htm#"_s + session.EnterDay};
    }
    QString picture() const { return core::files::kSetPicture.in(session); }
    /// Whether the picture is drawn in this colour: the page's text is too, so that all of it is.
    bool showsColour(QColor colour) {
        auto& shown = *window()->findChild<site::SetPicture*>();
        return waitFor([&] {
            QTest::qWait(20); // pictures of the screen leave it no time to draw
            const QImage image = window()->screen()->grabWindow(window()->winId()).toImage();
            return image.pixelColor(shown.mapTo(window(), shown.rect().center())) == colour;
        });
    }
};

TEST_F(Selection, ListsTheSetsWithoutTheFeedsAndShowsTheSelectedOne) {
    open();
    EXPECT_EQ(window()->windowTitle(), u"Customize Select"_s);
    EXPECT_TRUE(window()->isModal());
    EXPECT_EQ(entriesOf(sets()), site::customizeSets(session));
    EXPECT_FALSE(entriesOf(sets()).contains(u"RSS"_s));
    EXPECT_EQ(sets().currentText(), u"Customize"_s);
}

TEST_F(Selection, TheSelectedSetIsFoundWhateverTheCaseInTheSettings) {
    session.CustIniFile = folder() + u"cUSTOMIZE.INI"_s;
    open();
    EXPECT_EQ(sets().currentText(), u"Customize"_s);
}

TEST_F(Selection, OkSelectsTheSetAndShowsItsPreview) {
    open();
    sets().setCurrentText(u"red"_s);
    EXPECT_EQ(site::selectedCustomizeSet(session), u"Customize"_s);
    press(u"Btn_OK"_s);
    EXPECT_FALSE(window());
    EXPECT_EQ(session.CustIniFile, folder() + u"red.ini"_s);
    EXPECT_EQ(selected(), folder() + u"red.ini"_s);
    EXPECT_EQ(told(), previewStep());
    EXPECT_TRUE(preview().contains(u"#ff0000"_s));
}

TEST_F(Selection, CancelSelectsNothingAndShowsThePreviewAllTheSame) {
    for (const bool byKey : {false, true}) {
        open();
        QFile::remove(session.DataPath + u"tmp.htm"_s);
        sets().setCurrentText(u"red"_s);
        if (byKey)
            QTest::keyClick(window(), Qt::Key_Escape);
        else
            press(u"Btn_Cancel"_s);
        settle();
        EXPECT_FALSE(window());
        EXPECT_EQ(site::selectedCustomizeSet(session), u"Customize"_s);
        EXPECT_EQ(told(), previewStep());
        EXPECT_FALSE(preview().contains(u"#ff0000"_s));
    }
}

TEST_F(Selection, ASetThatVanishedMeanwhileIsToldAndTheWindowGoesOn) {
    open();
    sets().setCurrentText(u"red"_s);
    ASSERT_TRUE(QFile::remove(folder() + u"red.ini"_s));
    press(u"Btn_OK"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    ASSERT_TRUE(window());
    EXPECT_FALSE(entriesOf(sets()).contains(u"red"_s));
    EXPECT_EQ(sets().currentText(), u"Customize"_s);
    EXPECT_EQ(site::selectedCustomizeSet(session), u"Customize"_s);
    sets().setCurrentText(u"blue"_s);
    press(u"Btn_OK"_s);
    EXPECT_FALSE(window());
    EXPECT_EQ(site::selectedCustomizeSet(session), u"blue"_s);
}

TEST_F(Selection, SettingsThatCantBeWrittenKeepTheOldSetAndTheWindow) {
    ASSERT_TRUE(QFile::setPermissions(session.DiaryIniFile, QFile::ReadOwner));
    open();
    sets().setCurrentText(u"red"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    ASSERT_TRUE(window());
    EXPECT_EQ(site::selectedCustomizeSet(session), u"Customize"_s);
    press(u"Btn_Cancel"_s);
    EXPECT_FALSE(window());
}

TEST_F(Selection, WithoutASetThereIsNothingToSelect) {
    ASSERT_TRUE(QDir(folder()).removeRecursively());
    writeFile(folder().chopped(1), "a file in the folder's place");
    open();
    EXPECT_EQ(sets().count(), 0);
    EXPECT_FALSE(control(*window(), u"Btn_OK"_s).isEnabled());
    press(u"Btn_Cancel"_s);
    EXPECT_FALSE(window());
}

TEST_F(Selection, KeepsItsPlace) {
    open();
    window()->move(150, 120);
    settle();
    const QPoint place = window()->pos();
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(core::ReadIniInt(session.DiaryIniFile, u"Customize"_s, u"CstSlct_WindowPosLeft"_s), place.x() * 15);
    EXPECT_EQ(core::ReadIniInt(session.DiaryIniFile, u"Customize"_s, u"CstSlct_WindowPosTop"_s), place.y() * 15);
    open();
    EXPECT_EQ(window()->pos(), place);
}

TEST_F(Selection, ThePictureIsOfTheChosenSetAndGoesWithTheWindow) {
    open();
    sets().setCurrentText(u"red"_s);
    EXPECT_TRUE(showsColour(Qt::red));
    sets().setCurrentText(u"blue"_s);
    EXPECT_TRUE(showsColour(Qt::blue));
    writeSet(u"blue"_s, "#00ff00");
    window()->findChild<site::SetPicture*>()->showSet(u"blue"_s);
    EXPECT_TRUE(showsColour(Qt::green)) << "made anew";
    press(u"Btn_Cancel"_s);
    EXPECT_FALSE(QFile::exists(picture()));
}

TEST_F(Selection, ThePictureIsOneLocalPageWithoutPrivateEntriesFramesPagesAndFeeds) {
    setSetting(core::keys::frame::kFrameOn, u"1"_s);
    setSetting(core::keys::divide::kDiaryDivide, u"1"_s);
    setSetting(core::keys::divide::kDiaryTerm, u"1"_s);
    setSetting(core::keys::divide::kUseFileName2Day, u"1"_s);
    setSetting(core::keys::rss::kRSSOn, u"1"_s);
    setSetting(core::keys::rss::kDiaryURL, u"http://a.example/d.htm"_s);
    write(session.Today, u"shown"_s, u"<script>alert('no')</script>"_s);
    store::Entry hidden = entryOf(session.Today, u"hidden"_s);
    hidden.isPrivate = true;
    write(hidden);
    const QStringList before = QDir(session.DataPath).entryList(QDir::Files);
    open();
    ASSERT_TRUE(waitFor([&] { return QFile::exists(picture()); }));
    EXPECT_TRUE(pageOf(picture()).contains(u"shown"_s));
    EXPECT_FALSE(pageOf(picture()).contains(u"hidden"_s));
    sets().setCurrentText(u"red"_s);
    EXPECT_TRUE(showsColour(Qt::red));
    QStringList after = QDir(session.DataPath).entryList(QDir::Files);
    EXPECT_TRUE(after.removeOne(u"CustomizeSet.htm"_s));
    EXPECT_EQ(after, before);
    EXPECT_TRUE(boxes().isEmpty()) << "no script of an entry runs";
}

TEST_F(Selection, ThePictureTakesNeitherMouseNorKeys) {
    open();
    sets().setCurrentText(u"red"_s);
    EXPECT_TRUE(showsColour(Qt::red));
    auto& shown = *window()->findChild<site::SetPicture*>();
    QTest::mouseClick(window()->windowHandle(), Qt::LeftButton, {}, shown.mapTo(window(), shown.rect().center()));
    QTest::mouseClick(window()->windowHandle(), Qt::RightButton, {}, shown.mapTo(window(), shown.rect().center()));
    settle();
    EXPECT_FALSE(shown.isAncestorOf(QApplication::focusWidget()));
    EXPECT_FALSE(QApplication::activePopupWidget());
}

TEST_F(Selection, APictureThatCantBeMadeIsEmptyAndBreaksNothing) {
    open();
    sets().setCurrentText(u"red"_s);
    EXPECT_TRUE(showsColour(Qt::red));
    writeFile(folder() + u"blue.ini"_s, "[DayList]\r\nMarginLeft=99999\r\n");
    sets().setCurrentText(u"blue"_s);
    EXPECT_FALSE(control(*window(), u"SetPictureView"_s).isVisible());
    sets().setCurrentText(u"red"_s);
    EXPECT_TRUE(control(*window(), u"SetPictureView"_s).isVisible());
    ASSERT_TRUE(QFile::remove(folder() + u"blue.ini"_s));
    sets().setCurrentText(u"blue"_s);
    EXPECT_FALSE(control(*window(), u"SetPictureView"_s).isVisible());
    writeSet(u"blue"_s, "#0000ff");
    ASSERT_TRUE(QFile::resize(folder() + u"blue.ini"_s, qint64(10) << 30)); // takes no room
    sets().setCurrentText(u"red"_s);
    sets().setCurrentText(u"blue"_s);
    EXPECT_FALSE(control(*window(), u"SetPictureView"_s).isVisible());
    EXPECT_TRUE(desk.texts(u"failure"_s).isEmpty());
}

} // namespace
} // namespace velloria::tests
