#include "desktop/browser_home.h"

#include "core/ini.h"
#include "core/keys.h"
#include "core/setting.h"
#include "core/settings.h"
#include "core/settings_change.h"

#include <QInputMethodEvent>

using namespace Qt::StringLiterals;
using namespace velloria::browser;

namespace velloria::tests {
namespace {

class BrowserBoxes : public BrowserHome {
protected:
    void turnOn(const core::Setting& key) { core::writeQuietly(session, key, u"1"_s); }
    QString userFile(const QString& name) const { return session.UserPath + name; }

    QComboBox& shownBox(const QString& name) {
        browser().showChild();
        box(name).setFocus();
        return box(name);
    }
    QStringList favourites() {
        browser().FillFavorites();
        return entriesOf(box(u"CmbFavorite"_s));
    }
    void pick(const QString& text) {
        QComboBox& box = this->box(u"CmbFavorite"_s);
        Q_EMIT box.activated(box.findText(text));
    }
    void writeShortcut(const QString& name, const QByteArray& url) {
        writeFile(session.FavoriteFolderPath + name, "[InternetShortcut]\r\nURL=" + url + "\r\n");
    }
};

TEST_F(BrowserBoxes, GrowByTheTextAheadOfEachKey) {
    QComboBox& words = shownBox(u"cmbFind"_s);
    QTest::keyClicks(&words, u"abc"_s);
    EXPECT_EQ(words.currentText(), u"abc"_s);
    EXPECT_EQ(entriesOf(words), (QStringList{u""_s, u"a"_s, u"ab"_s}));
    QTest::keyClick(&words, Qt::Key_Left);
    EXPECT_EQ(entriesOf(words).size(), 3);
    QTest::keyClick(&words, Qt::Key_Backspace);
    EXPECT_EQ(words.currentText(), u"ac"_s);
    EXPECT_EQ(entriesOf(words), (QStringList{u""_s, u"a"_s, u"ab"_s, u"abc"_s}));
}

TEST_F(BrowserBoxes, KeepTheSelectionThatAKeyReplaces) {
    QComboBox& words = shownBox(u"cmbFind"_s);
    words.setEditText(u"abc"_s);
    words.lineEdit()->setSelection(1, 2);
    QTest::keyClicks(&words, u"x"_s);
    EXPECT_EQ(words.currentText(), u"ax"_s);
    EXPECT_EQ(entriesOf(words), QStringList{u"abc"_s});
}

TEST_F(BrowserBoxes, TakeWhatAnInputMethodCommits) {
    QComboBox& words = shownBox(u"cmbFind"_s);
    QInputMethodEvent preedit(u"にっき"_s, {});
    QApplication::sendEvent(&words, &preedit);
    EXPECT_EQ(entriesOf(words), QStringList());
    QInputMethodEvent commit;
    commit.setCommitString(u"日記"_s);
    QApplication::sendEvent(&words, &commit);
    EXPECT_EQ(words.currentText(), u"日記"_s);
    EXPECT_EQ(entriesOf(words), QStringList{u""_s});
}

TEST_F(BrowserBoxes, SearchWithEnter) {
    core::WriteIni(session.MyPath + u"endpoints.ini"_s, u"Search"_s, u"0"_s, u"http://127.0.0.1:1"_s);
    QComboBox& words = shownBox(u"cmbFind"_s);
    words.setEditText(u"日 b"_s);
    desk.events = {};
    QTest::keyClick(&words, Qt::Key_Return);
    EXPECT_EQ(panel(), u"Webページ表示中..."_s);
    EXPECT_EQ(entriesOf(words), QStringList{u"日 b"_s});
    waitForDocument(); // the page that says that nobody answers
    EXPECT_EQ(browser().LocationURL(),
              u"http://127.0.0.1:1/search?num=50&hl=ja&ie=Shift_JIS&oe=Shift_JIS&q=%93%FA%2Bb"_s);
}

TEST_F(BrowserBoxes, SearchNowhereWithoutASite) {
    core::writeQuietly(session, core::keys::kFindSite, u"9"_s);
    QComboBox& words = shownBox(u"cmbFind"_s);
    EXPECT_EQ(box(u"cmbFindSite"_s).currentIndex(), -1);
    words.setEditText(u"a"_s);
    QTest::keyClick(&words, Qt::Key_Return);
    EXPECT_TRUE(nothingElseComes(0));
}

TEST_F(BrowserBoxes, OpenTheAddressThatIsTyped) {
    writePage(u"a b.htm"_s, "text");
    QComboBox& address = shownBox(u"cmbURL"_s);
    address.setEditText(pagePath(u"a b.htm"_s));
    QTest::keyClick(&address, Qt::Key_Enter);
    EXPECT_EQ(panel(), u"Webページ表示中..."_s);
    waitForDocument();
    EXPECT_EQ(textOf(browser()), u"text"_s);
}

TEST_F(BrowserBoxes, OpenNothingForAnEmptyAddress) {
    QComboBox& address = shownBox(u"cmbURL"_s);
    desk.events = {};
    QTest::keyClick(&address, Qt::Key_Return);
    EXPECT_TRUE(desk.events.isEmpty());
    EXPECT_EQ(entriesOf(address), QStringList());
}

TEST_F(BrowserBoxes, StartWithTheirHistoryAndNoText) {
    turnOn(core::keys::kUrlHistory);
    turnOn(core::keys::kFindHistory);
    writeFile(userFile(u"URLHist.txt"_s), "http://a/\r\nhttp://b/\r\n");
    writeFile(userFile(u"FindHist.txt"_s), "\x93\xFA\r\n");
    EXPECT_EQ(entriesOf(box(u"cmbURL"_s)), (QStringList{u"http://a/"_s, u"http://b/"_s}));
    EXPECT_EQ(entriesOf(box(u"cmbFind"_s)), QStringList{u"日"_s});
    EXPECT_EQ(box(u"cmbURL"_s).currentText(), QString());
    EXPECT_EQ(box(u"cmbFind"_s).currentText(), QString());
}

TEST_F(BrowserBoxes, AreEmptiedWhenTheirHistoryIsGone) {
    turnOn(core::keys::kUrlHistory);
    writeFile(userFile(u"URLHist.txt"_s), "http://a/\r\n");
    browser();
    ASSERT_TRUE(QFile::remove(userFile(u"URLHist.txt"_s)));
    browser().HistoryAdd_URL();
    EXPECT_EQ(entriesOf(box(u"cmbURL"_s)), QStringList());
}

TEST_F(BrowserBoxes, AreKeptByTheKeyOfTheOther) {
    turnOn(core::keys::kUrlHistory);
    writePage(u"a.htm"_s, "a");
    QComboBox& words = shownBox(u"cmbFind"_s);
    QTest::keyClicks(&words, u"ab"_s);
    open(pagePath(u"a.htm"_s));
    box(u"cmbFindSite"_s).setCurrentIndex(4);
    context.windows.unload<frmBrowser>();
    EXPECT_EQ(bytesOf(userFile(u"FindHist.txt"_s)), "\r\na\r\n");
    EXPECT_FALSE(exists(userFile(u"URLHist.txt"_s)));
    EXPECT_EQ(core::Settings(session).text(core::keys::kFindSite), u"4"_s);
    EXPECT_EQ(box(u"cmbFindSite"_s).currentIndex(), 4);
}

TEST_F(BrowserBoxes, OfThirtyOneLinesKeepThirty) {
    turnOn(core::keys::kUrlHistory);
    turnOn(core::keys::kFindHistory);
    QByteArray lines;
    for (int i = 1; i <= 31; ++i)
        lines += QByteArray::number(i) + "\r\n";
    writeFile(userFile(u"URLHist.txt"_s), lines);
    EXPECT_EQ(box(u"cmbURL"_s).count(), 30);
    context.windows.unload<frmBrowser>();
    EXPECT_EQ(bytesOf(userFile(u"URLHist.txt"_s)), lines.chopped(4));
}

TEST_F(BrowserBoxes, OfAnUnreadableHistoryAreEmpty) {
    turnOn(core::keys::kUrlHistory);
    turnOn(core::keys::kFindHistory);
    ASSERT_TRUE(QDir().mkdir(userFile(u"URLHist.txt"_s)));
    EXPECT_EQ(box(u"cmbURL"_s).count(), 0);
    box(u"cmbURL"_s).addItem(u"http://a/"_s);
    context.windows.unload<frmBrowser>();
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(BrowserBoxes, ShowFavouritesOfOneFolderAtATime) {
    session.FavoriteFolderPath = path(u"Favorites/"_s);
    EXPECT_EQ(favourites(), QStringList());
    EXPECT_TRUE(exists(path(u"Favorites"_s)));
    ASSERT_TRUE(QDir().mkpath(path(u"Favorites/sub/deep"_s)));
    writeShortcut(u"b.url"_s, "http://b/");
    writeShortcut(u"A.url"_s, "http://a/");
    EXPECT_EQ(favourites(), (QStringList{u"A"_s, u"b"_s, u"sub"_s}));
    turnOn(core::keys::kFavoriteSort);
    EXPECT_EQ(favourites(), (QStringList{u"sub"_s, u"A"_s, u"b"_s}));
    pick(u"sub"_s);
    EXPECT_EQ(entriesOf(box(u"CmbFavorite"_s)), (QStringList{u".."_s, u"deep"_s}));
    pick(u"deep"_s);
    EXPECT_EQ(entriesOf(box(u"CmbFavorite"_s)), QStringList{u".."_s});
    pick(u".."_s);
    pick(u".."_s);
    EXPECT_EQ(entriesOf(box(u"CmbFavorite"_s)), (QStringList{u"sub"_s, u"A"_s, u"b"_s}));
    EXPECT_EQ(box(u"CmbFavorite"_s).currentIndex(), -1);
}

TEST_F(BrowserBoxes, OpenAFavouriteByTheAddressBox) {
    session.FavoriteFolderPath = path(u"Favorites/"_s);
    ASSERT_TRUE(QDir().mkpath(path(u"Favorites"_s)));
    writePage(u"a.htm"_s, "text");
    writeShortcut(u"page.url"_s, QUrl::fromLocalFile(pagePath(u"a.htm"_s)).toEncoded());
    writeShortcut(u"none.url"_s, "");
    favourites();
    desk.events = {};
    pick(u"none"_s);
    EXPECT_EQ(box(u"cmbURL"_s).currentText(), QString());
    EXPECT_TRUE(desk.events.isEmpty());
    pick(u"page"_s);
    EXPECT_EQ(panel(), u"Webページ表示中..."_s);
    waitForDocument();
    EXPECT_EQ(textOf(browser()), u"text"_s);
    EXPECT_EQ(box(u"cmbURL"_s).count(), 1);
}

TEST_F(BrowserBoxes, StandStillUnderTheWheel) {
    browser().showChild();
    QComboBox& site = box(u"cmbFindSite"_s);
    QWheelEvent wheel({5, 5}, site.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&site, &wheel);
    EXPECT_EQ(site.currentIndex(), 0);
}

} // namespace
} // namespace velloria::tests
