#include "blog/forms/frmBlogManager.h"

#include "blog/blog_template.h"
#include "blog/blog_user_data.h"
#include "convert/password_text.h"
#include "core/blog_keys.h"
#include "core/files.h"
#include "core/ini.h"
#include "desktop/combo.h"
#include "desktop/line_box.h"
#include "shell/forms/folder_change.h"
#include "support/desktop_home.h"
#include "support/disk_watch.h"

#include <QAccessible>
#include <QInputMethodEvent>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys::blog_user;

const QStringList kBoxes{u"txtLoginID"_s, u"txtPassword"_s, u"txtPostURL"_s, u"txtNextURL"_s, u"txtAccessURL"_s};
const QByteArray kBothRequired = "[Simple]\r\nPostURL=Required\r\nNextURL=Required\r\n";

class BlogManager : public DesktopHome {
protected:
    BlogManager() { showTop(); }

    QString templateOf(const QString& name) const { return session.DataPath + u"BlogTemplate/"_s + name + u".ini"_s; }
    void writeTemplate(const QString& name, const QByteArray& text = kBothRequired) const {
        writeFile(templateOf(name), text);
    }
    QString dataFile() const { return core::files::kBlogUserData.in(session); }
    blog::BlogUserData dataOf(const QString& name) const { return {session, name}; }

    blog::frmBlogManager* window() { return context.windows.find<blog::frmBlogManager>(); }
    void open() { shownWindow<blog::frmBlogManager>(context); }
    template <class Control = QWidget>
    Control& field(const QString& name) {
        return control<Control>(*window(), name);
    }
    desktop::Combo& blogs() { return field<desktop::Combo>(u"cmbBlog"_s); }
    desktop::LineBox& box(const QString& name) { return field<desktop::LineBox>(name); }
    void pick(const QString& name) {
        const int index = blogs().findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
        ASSERT_GE(index, 0) << name.toStdString();
        blogs().setCurrentIndex(index);
        Q_EMIT blogs().activated(index);
        settle();
    }
    void press(const QString& name) {
        field<QPushButton>(name).click();
        settle();
    }
    bool isSaveOn() { return field(u"Btn_Save"_s).isEnabled(); }
    QStringList shown() {
        QStringList texts;
        for (const QString& name : kBoxes)
            texts += box(name).text();
        return texts;
    }
    QString ofWindow(const QString& key) const {
        return core::ReadIniDef(session.DiaryIniFile, u"BlogManager"_s, key, u"none"_s);
    }
    void expectNothingPicked() {
        EXPECT_EQ(blogs().currentIndex(), -1);
        EXPECT_EQ(shown().join(QString()), QString());
        for (const QString& name : kBoxes)
            EXPECT_FALSE(box(name).isEnabled()) << name.toStdString();
        EXPECT_FALSE(isSaveOn());
    }
    /// The ground of the box, now and in the state that it might come into.
    QColor groundOf(const QString& name) { return box(name).palette().color(QPalette::Base); }
};

TEST_F(BlogManager, HasItsBoxesUnderTheirLabels) {
    writeTemplate(u"mixi"_s);
    open();
    QStringList labels;
    for (const QString& name : kBoxes)
        labels += field<QLabel>(u"label"_s + name.mid(3)).text().remove(u'&');
    EXPECT_EQ(labels.join(u'/'), u"Login ID/Password/投稿URL/投稿URL2/閲覧用URL"_s);
    EXPECT_EQ(field<QPushButton>(u"Btn_Save"_s).text(), u"保存"_s);
    EXPECT_EQ(field<QPushButton>(u"Btn_Close"_s).text(), u"閉じる"_s);
    EXPECT_EQ(box(u"txtPassword"_s).echoMode(), QLineEdit::Normal);
    QStringList mnemonics;
    for (const auto* label : window()->findChildren<QLabel*>()) {
        ASSERT_TRUE(label->buddy()) << label->objectName().toStdString();
        mnemonics += QKeySequence::mnemonic(label->text()).toString();
    }
    EXPECT_EQ(mnemonics.removeDuplicates(), 0) << mnemonics.join(u' ').toStdString();
}

TEST_F(BlogManager, ListsTheTemplatesOfTheFolder) {
    for (const QString& name : {u"Bee"_s, u"ant"_s, u"日記"_s})
        writeTemplate(name);
    writeFile(session.DataPath + u"BlogTemplate/other.txt"_s, "");
    open();
    QStringList names;
    for (int i = 0; i < blogs().count(); ++i)
        names += blogs().itemText(i);
    EXPECT_EQ(names, blog::blogNames(session));
    EXPECT_TRUE(names.contains(u"日記"_s) && names.contains(u"Bee"_s));
    EXPECT_FALSE(names.join(u' ').contains(u"other"_s));
}

TEST_F(BlogManager, WithoutTheStoredBlogNothingIsPickedAndNothingCanBeSaved) {
    writeTemplate(u"Mixi"_s);
    open();
    expectNothingPicked();
    EXPECT_TRUE(boxes().isEmpty());
    press(u"Btn_Close"_s);
    EXPECT_EQ(ofWindow(u"Blog"_s), u"none"_s) << "the blog is picked again when its template is back";
    writeTemplate(u"mixi"_s);
    open();
    EXPECT_EQ(blogs().currentText(), u"mixi"_s);
    EXPECT_FALSE(isSaveOn());
}

TEST_F(BlogManager, AnEmptyFolderGivesAnEmptyList) {
    QDir(session.DataPath + u"BlogTemplate"_s).removeRecursively();
    open();
    EXPECT_EQ(blogs().count(), 0);
    expectNothingPicked();
    EXPECT_TRUE(desk.texts(u"failure"_s).isEmpty());
}

TEST_F(BlogManager, RequiredAloneMakesAnAddressTheUsers) {
    dataOf(u"mixi"_s).store(keys::kPostURL, u"http://p.example/"_s);
    dataOf(u"mixi"_s).store(keys::kNextURL, u"http://n.example/"_s);
    const struct {
        const char* text;
        bool isPost, isNext;
    } cases[] = {{"PostURL=Required\r\nNextURL=Required\r\n", true, true},
                 {"PostURL=Required\r\nNextURL=Nothing\r\n", true, false},
                 {"PostURL=http://x.example/\r\nNextURL=Required\r\n", false, true},
                 {"PostURL=required\r\nNextURL=REQUIRED\r\n", false, false},
                 {"", false, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        writeTemplate(u"mixi"_s, QByteArray("[Simple]\r\n") + c.text);
        open();
        for (const auto& [name, isOn, url] : {std::tuple(u"txtPostURL"_s, c.isPost, u"http://p.example/"_s),
                                              std::tuple(u"txtNextURL"_s, c.isNext, u"http://n.example/"_s)}) {
            EXPECT_EQ(box(name).isEnabled(), isOn);
            EXPECT_EQ(box(name).text(), isOn ? url : QString());
            const QPalette& palette = window()->palette();
            EXPECT_EQ(groundOf(name), palette.color(QPalette::Active, isOn ? QPalette::Base : QPalette::Button));
        }
        press(u"Btn_Close"_s);
    }
}

TEST_F(BlogManager, ShowsWhatIsStoredThePasswordInClear) {
    writeTemplate(u"mixi"_s);
    const QStringList texts{u"花子"_s, u"ひみつ secret"_s, u"http://p.example/"_s, u"http://n.example/"_s,
                            u"http://a.example/"_s};
    const blog::BlogUserData stored = dataOf(u"mixi"_s);
    stored.store({{keys::kLoginID, texts[0]},
                  {keys::kPassword, texts[1]},
                  {keys::kPostURL, texts[2]},
                  {keys::kNextURL, texts[3]},
                  {keys::kAccessURL, texts[4]}});
    ASSERT_FALSE(bytesOf(dataFile()).contains("secret"));
    open();
    EXPECT_EQ(shown(), texts);
    EXPECT_FALSE(isSaveOn()) << "the program's own filling is no change";
    EXPECT_EQ(box(u"txtPostURL"_s).cursorPosition(), 0);
}

TEST_F(BlogManager, AChangeOfEachBoxEnablesSave) {
    writeTemplate(u"mixi"_s);
    for (const QString& name : kBoxes) {
        open();
        EXPECT_FALSE(isSaveOn());
        QTest::keyClicks(&box(name), u"x"_s);
        EXPECT_TRUE(isSaveOn()) << name.toStdString();
        press(u"Btn_Close"_s);
    }
    EXPECT_FALSE(exists(dataFile()));
}

TEST_F(BlogManager, SaveWritesFiveTextsInOrderAsOneChange) {
    writeTemplate(u"mixi"_s, "[Simple]\r\nPostURL=Required\r\n");
    dataOf(u"mixi"_s).store(keys::kManagementURL, u"http://m.example/"_s);
    dataOf(u"mixi"_s).store(keys::kNextURL, u"http://old.example/"_s);
    writeFile(dataFile(), bytesOf(dataFile()).replace("NextURL=http://old.example/\r\n", ""));
    open();
    for (const QString& name : kBoxes)
        box(name).setText(name.mid(3));
    box(u"txtNextURL"_s).clear(); // it is not the user's
    ASSERT_TRUE(isSaveOn());
    const DiskWatch watch;
    press(u"Btn_Save"_s);
    EXPECT_EQ(watch.synced().filter(u".velltmp-"_s).size(), 1);
    EXPECT_FALSE(isSaveOn());
    EXPECT_TRUE(window());
    const QByteArray password = convert::EncryptPassword(u"Password"_s).toUtf8();
    EXPECT_EQ(bytesOf(dataFile()), "[mixi]\r\nManagementURL=http://m.example/\r\nLoginID=LoginID\r\nPassword=" +
                                       password + "\r\nPostURL=PostURL\r\nNextURL=\r\nAccessURL=AccessURL\r\n");
    EXPECT_EQ(modeOf(dataFile()), 0600U);
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(BlogManager, SaveEmptiesTheAddressesThatAreNotTheUsers) {
    writeTemplate(u"mixi"_s, "");
    dataOf(u"mixi"_s).store({{keys::kPostURL, u"http://p.example/"_s}, {keys::kNextURL, u"http://n.example/"_s}});
    open();
    box(u"txtAccessURL"_s).setText(u"http://a.example/"_s);
    press(u"Btn_Save"_s);
    EXPECT_EQ(core::ReadIniDef(dataFile(), u"mixi"_s, u"PostURL"_s, u"none"_s), QString());
    EXPECT_EQ(core::ReadIniDef(dataFile(), u"mixi"_s, u"NextURL"_s, u"none"_s), QString());
}

TEST_F(BlogManager, SaveGoesToTheBlogThatIsPickedNow) {
    writeTemplate(u"mixi"_s);
    writeTemplate(u"other"_s);
    open();
    pick(u"other"_s);
    box(u"txtLoginID"_s).setText(u"me"_s);
    press(u"Btn_Save"_s);
    EXPECT_EQ(dataOf(u"other"_s).value(keys::kLoginID), u"me"_s);
    EXPECT_EQ(dataOf(u"mixi"_s).value(keys::kLoginID), QString());
}

TEST_F(BlogManager, ABlogThatAScreenReaderPicksIsShownAndSaved) {
    writeTemplate(u"mixi"_s);
    writeTemplate(u"other"_s);
    dataOf(u"mixi"_s).store(keys::kLoginID, u"taro"_s);
    dataOf(u"other"_s).store(keys::kLoginID, u"jiro"_s);
    open();
    blogs().setCurrentIndex(blogs().findText(u"other"_s)); // without the signal of a person's choice
    EXPECT_EQ(box(u"txtLoginID"_s).text(), u"jiro"_s);
    box(u"txtPassword"_s).setText(u"p"_s);
    press(u"Btn_Save"_s);
    EXPECT_EQ(dataOf(u"other"_s).value(keys::kLoginID), u"jiro"_s);
    EXPECT_EQ(dataOf(u"mixi"_s).value(keys::kPassword), QString());
}

TEST_F(BlogManager, AnotherBlogDropsWhatWasTypedAndLeavesSaveAsItWas) {
    writeTemplate(u"mixi"_s);
    writeTemplate(u"other"_s);
    dataOf(u"other"_s).store(keys::kLoginID, u"jiro"_s);
    open();
    pick(u"other"_s);
    EXPECT_FALSE(isSaveOn());
    pick(u"mixi"_s);
    box(u"txtLoginID"_s).setText(u"typed"_s);
    pick(u"other"_s);
    EXPECT_EQ(box(u"txtLoginID"_s).text(), u"jiro"_s);
    EXPECT_TRUE(isSaveOn());
    pick(u"mixi"_s);
    EXPECT_EQ(box(u"txtLoginID"_s).text(), QString());
    EXPECT_TRUE(boxes().isEmpty());
    EXPECT_EQ(desk.texts(u"question"_s), QStringList());
}

TEST_F(BlogManager, KeysAtTheClosedListOpenItInsteadOfDroppingText) {
    writeTemplate(u"mixi"_s);
    writeTemplate(u"other"_s);
    open();
    box(u"txtLoginID"_s).setText(u"typed"_s);
    blogs().setFocus();
    QTest::keyClick(&blogs(), Qt::Key_Down);
    settle();
    EXPECT_TRUE(QApplication::activePopupWidget());
    QTest::keyClick(blogs().view(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(blogs().currentText(), u"mixi"_s);
    EXPECT_EQ(box(u"txtLoginID"_s).text(), u"typed"_s);
}

TEST_F(BlogManager, CloseAsksNothingAndKeepsPlaceAndBlog) {
    writeTemplate(u"mixi"_s);
    writeTemplate(u"other"_s);
    open();
    pick(u"other"_s);
    box(u"txtLoginID"_s).setText(u"typed"_s);
    window()->move(170, 130);
    settle();
    const QPoint place = window()->pos();
    press(u"Btn_Close"_s);
    EXPECT_FALSE(window());
    EXPECT_TRUE(boxes().isEmpty());
    EXPECT_FALSE(exists(dataFile()));
    EXPECT_EQ(ofWindow(u"Left"_s).toInt(), place.x() * 15);
    EXPECT_EQ(ofWindow(u"Top"_s).toInt(), place.y() * 15);
    EXPECT_EQ(ofWindow(u"Blog"_s), u"other"_s);
    open();
    EXPECT_EQ(blogs().currentText(), u"other"_s);
    EXPECT_EQ(window()->pos(), place);
    EXPECT_EQ(core::ReadIniDef(session.DiaryIniFile, u"Calender"_s, u"Blog"_s, u"none"_s), u"none"_s)
        << "the calendar's choice is another key";
}

TEST_F(BlogManager, WhatTheFileWouldNotGiveBackIsRefusedAndKeepsItsText) {
    writeTemplate(u"mixi"_s);
    dataOf(u"mixi"_s).store(keys::kLoginID, u"before"_s);
    const QByteArray before = bytesOf(dataFile());
    const QString text = u"critical: 「%1」は、長すぎるか、設定に書けない文字を含んでいます。"_s;
    const std::tuple<QString, QString, QString> cases[] = {
        {u"txtLoginID"_s, u"Login ID"_s, QString(256, u'x')},
        {u"txtLoginID"_s, u"Login ID"_s, u"&#128049;"_s},
        {u"txtPassword"_s, u"Password"_s, u"\U0001F431"_s},
        {u"txtPassword"_s, u"Password"_s, QString(256, u'x')},
        {u"txtPassword"_s, u"Password"_s, u"a\tb"_s},
        {u"txtPostURL"_s, u"投稿URL"_s, u"http://x.example/"_s + QString(250, u'x')},
        {u"txtNextURL"_s, u"投稿URL2"_s, u"http://x.example/&#128049;"_s},
        {u"txtAccessURL"_s, u"閲覧用URL"_s, QString(128, u'あ')},
    };
    for (const auto& [name, label, value] : cases) {
        SCOPED_TRACE(name.toStdString());
        desk.events = {};
        open();
        box(u"txtAccessURL"_s).setText(u"http://a.example/"_s);
        box(name).setText(value);
        press(u"Btn_Save"_s);
        EXPECT_EQ(boxes(), QStringList{text.arg(label)});
        ASSERT_TRUE(window());
        EXPECT_EQ(box(name).text(), value);
        EXPECT_TRUE(box(name).hasFocus());
        EXPECT_TRUE(isSaveOn());
        EXPECT_EQ(bytesOf(dataFile()), before);
        press(u"Btn_Close"_s);
    }
    open();
    box(u"txtPostURL"_s).setText(QString(255, u'x'));
    box(u"txtAccessURL"_s).setText(u" http://x.example/ "_s); // pasted
    press(u"Btn_Save"_s);
    EXPECT_EQ(dataOf(u"mixi"_s).value(keys::kPostURL).size(), 255);
    EXPECT_EQ(dataOf(u"mixi"_s).value(keys::kAccessURL), u"http://x.example/"_s);
}

TEST_F(BlogManager, AFileThatRefusesKeepsTheWindowAndSave) {
    writeTemplate(u"mixi"_s);
    dataOf(u"mixi"_s).store(keys::kLoginID, u"before"_s);
    const QByteArray before = bytesOf(dataFile());
    open();
    box(u"txtLoginID"_s).setText(u"me"_s);
    ASSERT_TRUE(QFile::setPermissions(dataFile(), QFile::ReadOwner));
    press(u"Btn_Save"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    ASSERT_TRUE(window() && window()->isVisible());
    EXPECT_TRUE(isSaveOn());
    EXPECT_EQ(box(u"txtLoginID"_s).text(), u"me"_s);
    EXPECT_EQ(bytesOf(dataFile()), before);
    ASSERT_TRUE(QFile::setPermissions(dataFile(), QFile::ReadOwner | QFile::WriteOwner));
    press(u"Btn_Save"_s);
    EXPECT_FALSE(isSaveOn());
    EXPECT_EQ(dataOf(u"mixi"_s).value(keys::kLoginID), u"me"_s);
}

TEST_F(BlogManager, ANameThatNoSectionBearsIsToldAndNothingIsWritten) {
    writeTemplate(u"a]b"_s);
    open();
    pick(u"a]b"_s);
    box(u"txtLoginID"_s).setText(u"me"_s);
    press(u"Btn_Save"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_TRUE(isSaveOn());
    EXPECT_FALSE(exists(dataFile()));
}

/// A save after it would give this blog the data of the last one.
TEST_F(BlogManager, DataThatCantBeReadPickNoBlog) {
    writeTemplate(u"mixi"_s);
    writeTemplate(u"other"_s);
    dataOf(u"mixi"_s).store(keys::kLoginID, u"me"_s);
    open();
    box(u"txtAccessURL"_s).setText(u"typed"_s);
    ASSERT_TRUE(QFile::rename(dataFile(), path(u"aside"_s)));
    ASSERT_TRUE(QDir().mkpath(dataFile()));
    pick(u"other"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    expectNothingPicked();
    ASSERT_TRUE(QDir().rmdir(dataFile()));
    ASSERT_TRUE(QFile::rename(path(u"aside"_s), dataFile()));
    pick(u"mixi"_s);
    EXPECT_EQ(box(u"txtLoginID"_s).text(), u"me"_s);
}

TEST_F(BlogManager, OpensAlsoWhereItsDataCantBeRead) {
    writeTemplate(u"mixi"_s);
    ASSERT_TRUE(QDir().mkpath(dataFile()));
    open();
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    expectNothingPicked();
}

TEST_F(BlogManager, AHugeTemplateIsToldAndPicksNoBlog) {
    writeTemplate(u"huge"_s, QByteArray(10'000'000, 'x'));
    writeTemplate(u"mixi"_s);
    open();
    pick(u"huge"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    expectNothingPicked();
    pick(u"mixi"_s);
    EXPECT_TRUE(box(u"txtLoginID"_s).isEnabled());
}

TEST_F(BlogManager, AFaultElsewhereInTheTemplateIsNoHindrance) {
    writeTemplate(u"mixi"_s, kBothRequired + "FORM_POST=99999\r\n");
    open();
    EXPECT_TRUE(desk.texts(u"failure"_s).isEmpty());
    EXPECT_TRUE(box(u"txtPostURL"_s).isEnabled());
    writeTemplate(u"mixi"_s, QByteArray("\0\xFF[Simple\r\n\x81", 12));
    pick(u"mixi"_s);
    EXPECT_TRUE(desk.texts(u"failure"_s).isEmpty());
    EXPECT_FALSE(box(u"txtPostURL"_s).isEnabled());
    EXPECT_TRUE(box(u"txtLoginID"_s).isEnabled());
}

TEST_F(BlogManager, ATemplateThatChangedOrWentShowsWhenItIsPickedAgain) {
    writeTemplate(u"mixi"_s);
    dataOf(u"mixi"_s).store({{keys::kLoginID, u"me"_s}, {keys::kPostURL, u"http://p.example/"_s}});
    open();
    writeTemplate(u"mixi"_s, "[Simple]\r\nPostURL=http://x.example/\r\nNextURL=Required\r\n");
    pick(u"mixi"_s);
    EXPECT_FALSE(box(u"txtPostURL"_s).isEnabled());
    EXPECT_TRUE(box(u"txtNextURL"_s).isEnabled());
    ASSERT_TRUE(QFile::remove(templateOf(u"mixi"_s)));
    pick(u"mixi"_s);
    EXPECT_FALSE(box(u"txtNextURL"_s).isEnabled());
    EXPECT_EQ(box(u"txtLoginID"_s).text(), u"me"_s);
    box(u"txtAccessURL"_s).setText(u"http://a.example/"_s);
    press(u"Btn_Save"_s);
    EXPECT_EQ(dataOf(u"mixi"_s).value(keys::kAccessURL), u"http://a.example/"_s);
    EXPECT_TRUE(desk.texts(u"failure"_s).isEmpty());
}

TEST_F(BlogManager, AHugeListStaysOnTheScreen) {
    for (int i = 0; i < 2000; ++i)
        writeTemplate(u"blog"_s + QString::number(i), "");
    writeTemplate(QString(80, u'長'), "");
    open();
    EXPECT_GE(blogs().count(), 2001);
    EXPECT_LT(window()->width(), 700) << "no name is as wide as the screen";
    blogs().showPopup();
    settle();
    const QRect list = blogs().view()->window()->frameGeometry();
    EXPECT_TRUE(window()->screen()->geometry().contains(list));
    blogs().hidePopup();
}

TEST_F(BlogManager, DataThatChangedElsewhereShowWhereNobodyHasTyped) {
    writeTemplate(u"mixi"_s, "[Simple]\r\nPostURL=Required\r\n");
    open();
    window()->readAgain();
    QTest::keyClicks(&box(u"txtLoginID"_s), u"me"_s);
    QAccessible::queryAccessibleInterface(&box(u"txtAccessURL"_s))
        ->editableTextInterface()
        ->insertText(0, u"http://a/"_s);
    dataOf(u"mixi"_s).store({{keys::kLoginID, u"you"_s},
                             {keys::kPassword, u"secret"_s},
                             {keys::kAccessURL, u"http://b/"_s},
                             {keys::kPostURL, u"http://p.example/"_s},
                             {keys::kNextURL, u"http://n.example/"_s}});
    window()->readAgain();
    EXPECT_EQ(shown(), (QStringList{u"me"_s, u"secret"_s, u"http://p.example/"_s, u""_s, u"http://a/"_s}));
    EXPECT_TRUE(isSaveOn());
    press(u"Btn_Save"_s);
    EXPECT_EQ(dataOf(u"mixi"_s).value(keys::kPassword), u"secret"_s);
    dataOf(u"mixi"_s).store(keys::kLoginID, u"you"_s);
    window()->readAgain();
    EXPECT_EQ(box(u"txtLoginID"_s).text(), u"you"_s) << "what is saved is nobody's typing any more";
    EXPECT_FALSE(isSaveOn());
    blogs().setCurrentIndex(-1);
    window()->readAgain();
    EXPECT_TRUE(desk.texts(u"failure"_s).isEmpty());
}

TEST_F(BlogManager, SaveTakesWhatAnInputMethodIsComposing) {
    writeTemplate(u"mixi"_s);
    open();
    box(u"txtLoginID"_s).setText(u"me"_s);
    box(u"txtAccessURL"_s).setFocus();
    QInputMethodEvent compose(u"にっき"_s, {});
    QCoreApplication::sendEvent(&box(u"txtAccessURL"_s), &compose);
    press(u"Btn_Save"_s);
    EXPECT_EQ(dataOf(u"mixi"_s).value(keys::kAccessURL), u"にっき"_s);
    EXPECT_FALSE(isSaveOn());
}

TEST_F(BlogManager, EnterSavesAndEscCloses) {
    writeTemplate(u"mixi"_s);
    open();
    box(u"txtLoginID"_s).setFocus();
    QTest::keyClick(&box(u"txtLoginID"_s), Qt::Key_Return);
    EXPECT_TRUE(window()) << "nothing is there to save";
    QTest::keyClicks(&box(u"txtLoginID"_s), u"me"_s);
    QTest::keyClick(&box(u"txtLoginID"_s), Qt::Key_Return);
    settle();
    EXPECT_EQ(dataOf(u"mixi"_s).value(keys::kLoginID), u"me"_s);
    ASSERT_TRUE(window());
    EXPECT_TRUE(box(u"txtLoginID"_s).hasFocus());
    QTest::keyClicks(&box(u"txtLoginID"_s), u"x"_s);
    QTest::keyClick(&box(u"txtLoginID"_s), Qt::Key_Escape);
    settle();
    EXPECT_FALSE(window());
    EXPECT_EQ(dataOf(u"mixi"_s).value(keys::kLoginID), u"me"_s);
}

TEST_F(BlogManager, ItsColoursAreThoseOfTheDesktop) {
    writeTemplate(u"mixi"_s, "[Simple]\r\nPostURL=Required\r\n");
    open();
    const QPalette before = QApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::Base, QColor(1, 2, 3));
    dark.setColor(QPalette::Button, QColor(4, 5, 6));
    QApplication::setPalette(dark);
    settle();
    EXPECT_EQ(groundOf(u"txtPostURL"_s), QColor(1, 2, 3));
    EXPECT_EQ(groundOf(u"txtNextURL"_s), QColor(4, 5, 6));
    QApplication::setPalette(before);
    settle();
    EXPECT_EQ(groundOf(u"txtPostURL"_s), before.color(QPalette::Active, QPalette::Base));
}

TEST_F(BlogManager, FollowsTheDataFolder) {
    writeTemplate(u"mixi"_s);
    dataOf(u"mixi"_s).store(keys::kLoginID, u"old"_s);
    open();
    box(u"txtLoginID"_s).setText(u"typed"_s);
    const QString before = std::exchange(session.DataPath, path(u"other/"_s));
    ASSERT_TRUE(QDir().mkpath(session.DataPath + u"BlogTemplate"_s));
    writeTemplate(u"mixi"_s);
    writeTemplate(u"new"_s);
    dataOf(u"mixi"_s).store(keys::kLoginID, u"there"_s);
    shell::followDataFolder(context, before);
    EXPECT_EQ(blogs().currentText(), u"mixi"_s);
    EXPECT_GE(blogs().findText(u"new"_s), 0);
    EXPECT_EQ(box(u"txtLoginID"_s).text(), u"there"_s);
    EXPECT_FALSE(isSaveOn());
    session.DataPath = path(u"third/"_s);
    shell::followDataFolder(context, path(u"other/"_s));
    expectNothingPicked();
    session.DataPath = before;
    shell::followDataFolder(context, path(u"third/"_s));
    EXPECT_EQ(box(u"txtLoginID"_s).text(), u"old"_s);
}

} // namespace
} // namespace velloria::tests
