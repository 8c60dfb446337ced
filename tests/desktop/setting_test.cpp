#include "site/forms/frmSetting.h"

#include "blog/forms/frmBlogManager.h"
#include "core/ini.h"
#include "core/keys.h"
#include "core/program_keys.h"
#include "site/log_archive.h"
#include "site/save_html.h"
#include "support/desktop_home.h"
#include "support/disk_watch.h"

#include <QComboBox>
#include <QTabWidget>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys;

/// A control of the window, its key, and what it is given.
struct Row {
    QString control;
    core::Setting setting;
    QString value;
};

const std::vector<Row>& rows() {
    static const std::vector<Row> kRows{
        {u"chkDiaryDivide"_s, keys::divide::kDiaryDivide, u"1"_s},
        {u"cmbDiaryTerm"_s, keys::divide::kDiaryTerm, u"7"_s},
        {u"chkDiaryOnTop"_s, keys::divide::kDiaryOnTop, u"1"_s},
        {u"chkLogDivide"_s, keys::divide::kLogDivide, u"1"_s},
        {u"optTopLink_TopPage"_s, keys::divide::kTopLink, u"TopPage"_s},
        {u"chkUseFileName2Day"_s, keys::divide::kUseFileName2Day, u"1"_s},
        {u"chkUseFrame"_s, keys::frame::kFrameOn, u"1"_s},
        {u"txtCalenderFrameSize"_s, keys::frame::kCalenderFrameSize, u"20%"_s},
        {u"txtFRAMEBORDER"_s, keys::frame::kBorder, u"x"_s},
        {u"chkScrolling"_s, keys::frame::kScrolling, u"1"_s},
        {u"chkResize"_s, keys::frame::kResize, u"1"_s},
        {u"chkUseRSS"_s, keys::rss::kRSSOn, u"1"_s},
        {u"txtRSS_Title"_s, keys::rss::kTitle, u"題"_s},
        {u"txtRSS_HPURL"_s, keys::rss::kHPURL, u"http://a.example/"_s},
        {u"txtRSS_DiaryURL"_s, keys::rss::kDiaryURL, u"http://a.example/d.htm"_s},
        {u"txtRSS_Description"_s, keys::rss::kDescription, u"説明"_s},
        {u"txtRSS_ManagingAuthor"_s, keys::rss::kManagingAuthor, u"a@a.example"_s},
        {u"txtRSS_WebMaster"_s, keys::rss::kWebMaster, u"w@a.example"_s},
        {u"txtATOM_Author"_s, keys::rss::kAuthor, u"Taro"_s},
        {u"chkUseHaloScan"_s, keys::halo_scan::kHaloScanOn, u"1"_s},
        {u"txtHaloScanUserName"_s, keys::halo_scan::kUserName, u"taro"_s},
        {u"chkBlog_Status"_s, keys::blog::kStatus, u"0"_s},
        {u"chkBlog_AcceptComment"_s, keys::blog::kAcceptComment, u"0"_s},
        {u"chkBlog_AcceptTrackBack"_s, keys::blog::kAcceptTrackBack, u"0"_s},
        {u"chkBlog_PandBRTag"_s, keys::blog::kPandBRTag, u"0"_s},
    };
    return kRows;
}

class SiteStructure : public DesktopHome {
protected:
    SiteStructure() {
        for (const QString& file : files())
            writeFile(file, "");
        showTop();
    }

    QStringList files() const {
        return {session.FrameIniFile, session.RSSIniFile, session.HaloScanIniFile, session.BlogIniFile};
    }
    site::frmSetting* window() { return context.windows.find<site::frmSetting>(); }
    void open() {
        top().command(u"mnuEnvironment"_s)->trigger();
        settle();
        ASSERT_TRUE(window());
        ASSERT_TRUE(window()->isVisible());
    }
    template <class Control = QWidget>
    Control& field(const QString& name) {
        return control<Control>(*window(), name);
    }
    void press(const QString& name) {
        field<QPushButton>(name).click();
        settle();
    }
    bool isApplyOn() { return field(u"Btn_Apply"_s).isEnabled(); }
    QString stored(const core::Setting& setting) const {
        return core::ReadIniDef(core::Settings(session).file(setting.file), setting.section.toString(),
                                setting.name.toString(), u"none"_s);
    }
    void give(const QString& name, const QString& value) {
        QWidget& widget = field(name);
        if (auto* box = qobject_cast<QCheckBox*>(&widget))
            box->setChecked(value == u"1"_s);
        else if (auto* option = qobject_cast<QRadioButton*>(&widget))
            option->click();
        else if (auto* list = qobject_cast<QComboBox*>(&widget))
            list->setCurrentText(value);
        else
            field<QLineEdit>(name).setText(value);
    }
    QString shown(const QString& name) {
        QWidget& widget = field(name);
        if (auto* button = qobject_cast<QAbstractButton*>(&widget))
            return button->isChecked() ? u"1"_s : u"0"_s;
        if (auto* list = qobject_cast<QComboBox*>(&widget))
            return list->currentText();
        return field<QLineEdit>(name).text();
    }
};

TEST_F(SiteStructure, HasFiveTabsAndOpensAtTheFirst) {
    open();
    EXPECT_EQ(window()->windowTitle(), u"Environment"_s);
    const auto& tabs = field<QTabWidget>(u"TabStrip1"_s);
    QStringList names;
    for (int i = 0; i < tabs.count(); ++i)
        names += tabs.widget(i)->objectName() + u' ' + tabs.tabText(i);
    EXPECT_EQ(names.join(u'/'), u"FrameDivide 日記分割設定/FrameSetting Frame設定/FrameRSS RSS設定/"
                                "FrameHaloScanSetting HaloScan設定/Frame1 Blog設定"_s);
    EXPECT_EQ(tabs.currentIndex(), 0);
    field<QTabWidget>(u"TabStrip1"_s).setCurrentIndex(3);
    press(u"Btn_Cancel"_s);
    open();
    EXPECT_EQ(field<QTabWidget>(u"TabStrip1"_s).currentIndex(), 0);
}

TEST_F(SiteStructure, EmptyFilesShowTheDefaultsOfTheDialog) {
    open();
    const QMap<QString, QString> others{{u"cmbDiaryTerm"_s, u"31"_s},
                                        {u"txtRSS_Title"_s, u"日記"_s},
                                        {u"txtRSS_Description"_s, u"日記です。"_s},
                                        {u"chkBlog_Status"_s, u"1"_s},
                                        {u"chkBlog_AcceptComment"_s, u"1"_s},
                                        {u"chkBlog_AcceptTrackBack"_s, u"1"_s},
                                        {u"chkBlog_PandBRTag"_s, u"1"_s}};
    for (const Row& row : rows()) {
        const QString plain = qobject_cast<QLineEdit*>(&field(row.control)) ? u""_s : u"0"_s;
        EXPECT_EQ(shown(row.control), others.value(row.control, plain)) << row.control.toStdString();
    }
    EXPECT_TRUE(field<QRadioButton>(u"optTopLink_PageTop"_s).isChecked());
    EXPECT_FALSE(isApplyOn());
}

TEST_F(SiteStructure, EachControlEnablesApplyAndReachesItsOwnKey) {
    for (const Row& changed : rows()) {
        SCOPED_TRACE(changed.control.toStdString());
        for (const QString& file : files())
            writeFile(file, "");
        open();
        QMap<QString, QString> before;
        press(u"Btn_OK"_s);
        for (const Row& row : rows())
            before[row.control] = stored(row.setting);
        open();
        EXPECT_FALSE(isApplyOn());
        give(changed.control, changed.value);
        EXPECT_TRUE(isApplyOn());
        EXPECT_EQ(stored(changed.setting), before[changed.control]) << "nothing is written before Apply";
        press(u"Btn_Apply"_s);
        EXPECT_FALSE(isApplyOn());
        for (const Row& row : rows())
            EXPECT_EQ(stored(row.setting), row.control == changed.control ? changed.value : before[row.control])
                << row.control.toStdString();
        press(u"Btn_Cancel"_s);
        open();
        EXPECT_EQ(shown(changed.control),
                  qobject_cast<QRadioButton*>(&field(changed.control)) ? u"1"_s : changed.value);
        press(u"Btn_Cancel"_s);
    }
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(SiteStructure, ApplyWritesEveryKeyInTheOrderOfTheTableAlsoOfDisabledControls) {
    open();
    EXPECT_FALSE(field(u"cmbDiaryTerm"_s).isEnabled());
    press(u"Btn_OK"_s);
    QByteArray names;
    for (const QString& file : files()) {
        for (const QByteArray& line : bytesOf(file).split('\n')) {
            if (line.startsWith('['))
                names += line.trimmed();
            else if (line.contains('='))
                names += line.left(line.indexOf('=')) + ' ';
        }
    }
    EXPECT_EQ(names, "[Divide]DiaryDivide DiaryTerm DiaryOnTop LogDivide TopLink UseFileName2Day "
                     "[Frame]FrameOn CalenderFrameSize Border Scrolling Resize "
                     "[General]RSSOn [Setting]Title HPURL DiaryURL Description [RSS2.0]ManagingAuthor WebMaster "
                     "[ATOM]Author [GENERAL]HaloScanOn UserName "
                     "[SIMPLE]Status AcceptComment AcceptTrackBack [PandBRTag]Type ");
}

TEST_F(SiteStructure, RssOnIsOneKeyHoweverItsSectionIsSpelt) {
    writeFile(session.RSSIniFile, "[General]\r\nRSSOn=1\r\n");
    open();
    EXPECT_TRUE(field<QCheckBox>(u"chkUseRSS"_s).isChecked());
    give(u"chkUseRSS"_s, u"0"_s);
    press(u"Btn_OK"_s);
    EXPECT_TRUE(bytesOf(session.RSSIniFile).startsWith("[General]\r\nRSSOn=0\r\n[Setting]"));
}

TEST_F(SiteStructure, ATermOfNoMonthShowsAs31) {
    for (const char* term : {"0", "", "32", "-1", "x"}) {
        writeFile(session.FrameIniFile, "[Divide]\r\nDiaryTerm=" + QByteArray(term) + "\r\n");
        open();
        EXPECT_EQ(shown(u"cmbDiaryTerm"_s), u"31"_s) << term;
        press(u"Btn_Cancel"_s);
    }
}

TEST_F(SiteStructure, ATopLinkThatIsNotTopPageShowsPageTop) {
    for (const char* link : {"PageTop", "", "toppage", "x"}) {
        writeFile(session.FrameIniFile, "[Divide]\r\nTopLink=" + QByteArray(link) + "\r\n");
        open();
        EXPECT_TRUE(field<QRadioButton>(u"optTopLink_PageTop"_s).isChecked()) << link;
        EXPECT_FALSE(field<QRadioButton>(u"optTopLink_TopPage"_s).isChecked());
        press(u"Btn_OK"_s);
        EXPECT_EQ(stored(keys::divide::kTopLink), u"PageTop"_s);
    }
}

TEST_F(SiteStructure, DivideOffDisablesItsControlsAndTheDayFileNeedsATermOfOne) {
    open();
    const auto enabled = [this] {
        QString names;
        for (const QString& name : {u"cmbDiaryTerm"_s, u"chkDiaryOnTop"_s, u"chkUseFileName2Day"_s})
            names += field(name).isEnabled() ? u"1"_s : u"0"_s;
        return names;
    };
    EXPECT_EQ(enabled(), u"000"_s);
    give(u"chkDiaryDivide"_s, u"1"_s);
    EXPECT_EQ(enabled(), u"110"_s);
    give(u"cmbDiaryTerm"_s, u"1"_s);
    EXPECT_EQ(enabled(), u"111"_s);
    give(u"cmbDiaryTerm"_s, u"2"_s);
    EXPECT_EQ(enabled(), u"110"_s);
    give(u"cmbDiaryTerm"_s, u"1"_s);
    give(u"chkDiaryDivide"_s, u"0"_s);
    EXPECT_EQ(enabled(), u"000"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(stored(keys::divide::kDiaryTerm), u"1"_s);
    open();
    EXPECT_EQ(enabled(), u"000"_s) << "from the start on";
}

TEST_F(SiteStructure, FrameOffDisablesItsSixControls) {
    open();
    const QStringList six{u"lblCalenderFrameSize"_s, u"txtCalenderFrameSize"_s, u"lblFRAMEBORDER"_s,
                          u"txtFRAMEBORDER"_s,       u"chkScrolling"_s,         u"chkResize"_s};
    for (const bool isOn : {false, true, false}) {
        give(u"chkUseFrame"_s, isOn ? u"1"_s : u"0"_s);
        for (const QString& name : six)
            EXPECT_EQ(field(name).isEnabled(), isOn) << name.toStdString();
    }
}

TEST_F(SiteStructure, ChangesAreAskedAboutAndWrittenForAYes) {
    for (const bool isYes : {false, true}) {
        open();
        give(u"txtRSS_Title"_s, u"題"_s);
        desk.events = {};
        desk.answers = {isYes ? u"yes"_s : u"no"_s};
        QTest::keyClick(window(), Qt::Key_Escape);
        settle();
        EXPECT_FALSE(window());
        EXPECT_EQ(boxes(), QStringList{u"question: 変更されていますが、保存しますか？"_s});
        EXPECT_EQ(stored(keys::rss::kTitle), isYes ? u"題"_s : u"none"_s);
    }
}

TEST_F(SiteStructure, NothingIsGeneratedAndAWordlessBorderShowsWithTheNextPage) {
    useSite();
    write(u"2004/05/06"_s, u"today"_s);
    open();
    give(u"chkUseFrame"_s, u"1"_s);
    give(u"txtFRAMEBORDER"_s, u"x"_s);
    press(u"Btn_OK"_s);
    EXPECT_FALSE(QFile::exists(session.FilePath + u"index.htm"_s));
    EXPECT_TRUE(desk.texts(u"navigate"_s).isEmpty());
    site::SaveHtml(context).SaveHTML();
    EXPECT_TRUE(pageOf(session.FilePath + u"index.htm"_s).contains(u"FRAMEBORDER=\"\">"_s));
    // Frames off again leave their files, which are somebody's pages by now.
    open();
    give(u"chkUseFrame"_s, u"0"_s);
    press(u"Btn_OK"_s);
    site::SaveHtml(context).SaveHTML();
    EXPECT_FALSE(pageOf(session.FilePath + u"index.htm"_s).contains(u"FRAMESET"_s));
    EXPECT_TRUE(QFile::exists(session.FilePath + u"index_C.htm"_s));
    EXPECT_TRUE(QFile::exists(session.FilePath + u"index_D.htm"_s));
}

/// What a control changes in the site: it says `effect` with the value and not before. The keys of posts come with
/// these.
TEST_F(SiteStructure, EachControlHasItsEffectOnTheSite) {
    using Settings = std::vector<std::pair<core::Setting, QString>>;
    namespace divide = keys::divide;
    const Settings frames{{keys::frame::kFrameOn, u"1"_s}};
    const Settings feeds{{keys::rss::kRSSOn, u"1"_s}, {keys::rss::kDiaryURL, u"http://a.example/d.htm"_s}};
    const auto days = [](const QString& isDivided, const QString& term, const QString& isNamed, const QString& onTop) {
        return Settings{{divide::kDiaryDivide, isDivided},
                        {divide::kDiaryTerm, term},
                        {divide::kUseFileName2Day, isNamed},
                        {divide::kDiaryOnTop, onTop}};
    };
    const struct {
        QString control;
        QString value;
        Settings before;
        QString effect;
    } cases[] = {
        {u"chkDiaryDivide"_s, u"1"_s, days(u"0"_s, u"1"_s, u"1"_s, u"0"_s), u"2004_05_05.htm"_s},
        {u"cmbDiaryTerm"_s, u"1"_s, days(u"1"_s, u"31"_s, u"1"_s, u"0"_s), u"2004_05_05.htm"_s},
        {u"chkUseFileName2Day"_s, u"1"_s, days(u"1"_s, u"1"_s, u"0"_s, u"0"_s), u"2004_05_05.htm"_s},
        {u"chkDiaryOnTop"_s, u"0"_s, days(u"1"_s, u"1"_s, u"1"_s, u"1"_s), u"2004_05_06.htm"_s},
        {u"optTopLink_TopPage"_s, u"1"_s, days(u"1"_s, u"1"_s, u"0"_s, u"0"_s), u"top of month"_s},
        {u"chkUseFrame"_s, u"1"_s, {}, u"<FRAMESET"_s},
        {u"txtCalenderFrameSize"_s, u"20%"_s, frames, u"COLS=20%,*"_s},
        {u"txtFRAMEBORDER"_s, u"1"_s, frames, u"FRAMEBORDER=\"YES\""_s},
        {u"chkScrolling"_s, u"1"_s, frames, u"Scrolling=\"YES\""_s},
        {u"chkResize"_s, u"1"_s, frames, u"\" RESIZE>"_s},
        {u"chkUseRSS"_s, u"1"_s, {feeds[1]}, u"<rss version=\"2.0\""_s},
        {u"txtRSS_DiaryURL"_s, u"http://b.example/d.htm"_s, {feeds[0]}, u"http://b.example/d"_s},
        {u"txtRSS_Title"_s, u"FeedTitle"_s, feeds, u"FeedTitle"_s},
        {u"txtRSS_HPURL"_s, u"http://home.example/"_s, feeds, u"http://home.example/"_s},
        {u"txtRSS_Description"_s, u"FeedWords"_s, feeds, u"FeedWords"_s},
        {u"txtRSS_ManagingAuthor"_s, u"m@a.example"_s, feeds, u"m@a.example"_s},
        {u"txtRSS_WebMaster"_s, u"w@a.example"_s, feeds, u"w@a.example"_s},
        {u"txtATOM_Author"_s, u"FeedAuthor"_s, feeds, u"FeedAuthor"_s},
        {u"chkUseHaloScan"_s, u"1"_s, {{keys::halo_scan::kUserName, u"tarouser"_s}}, u"tarouser"_s},
        {u"txtHaloScanUserName"_s, u"tarouser"_s, {{keys::halo_scan::kHaloScanOn, u"1"_s}}, u"tarouser"_s},
    };
    useSite();
    write(u"2004/05/05"_s, u"yesterday"_s);
    write(u"2004/05/06"_s, u"today"_s);
    const auto site = [this] {
        QDir(session.FilePath).removeRecursively();
        QDir().mkpath(session.FilePath);
        site::SaveHtml(context).SaveHTML();
        const QMap<QString, QByteArray> pages = contentOf(session.FilePath);
        return QString::fromLatin1(pages.keys().join(u' ').toLatin1() + pages.values().join());
    };
    for (const auto& c : cases) {
        for (const QString& file : files())
            writeFile(file, "");
        for (const auto& [setting, value] : c.before)
            setSetting(setting, value);
        EXPECT_FALSE(site().contains(c.effect)) << c.control.toStdString();
        open();
        give(c.control, c.value);
        press(u"Btn_OK"_s);
        EXPECT_TRUE(site().contains(c.effect)) << c.control.toStdString();
    }
}

TEST_F(SiteStructure, DividedLogsAreDividedWithTheNextLog) {
    write(u"2004/04/05"_s, u"a"_s);
    write(u"2004/04/06"_s, u"b"_s);
    useSite();
    writeFile(session.FrameIniFile, "[Divide]\r\nDiaryDivide=1\r\nDiaryTerm=1\r\nUseFileName2Day=1\r\n");
    const auto hasDayPage = [this] {
        site::LogArchive(context).save(u"2004"_s, u"4"_s);
        return !contentOf(session.FilePath).keys().filter(u"2004_04_05.htm"_s).isEmpty();
    };
    EXPECT_FALSE(hasDayPage());
    open();
    give(u"chkLogDivide"_s, u"1"_s);
    press(u"Btn_OK"_s);
    EXPECT_TRUE(hasDayPage());
}

TEST_F(SiteStructure, TheLinkLeadsTheBrowserToTheCommentService) {
    core::WriteIni(path(u"endpoints.ini"_s), u"HaloScan"_s, u"Home"_s, u"https://c.example/"_s);
    open();
    Q_EMIT field<QLabel>(u"lblURL"_s).linkActivated(u"home"_s);
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{u"https://c.example/"_s});
    EXPECT_TRUE(window());
    EXPECT_FALSE(isApplyOn());
}

TEST_F(SiteStructure, TheBlogManagerComesUpBesideItAndIsOneOfAKind) {
    open();
    press(u"Btn_BlogManager"_s);
    const QPointer<blog::frmBlogManager> manager = context.windows.find<blog::frmBlogManager>();
    ASSERT_TRUE(manager);
    EXPECT_TRUE(becomesActive(*manager));
    EXPECT_FALSE(isApplyOn());
    window()->activateWindow();
    press(u"Btn_BlogManager"_s);
    EXPECT_TRUE(becomesActive(*manager));
    press(u"Btn_Cancel"_s);
    EXPECT_TRUE(manager && manager->isVisible()) << "it is a window of its own";
}

TEST_F(SiteStructure, AFileThatRefusesKeepsApplyOnAndEveryFileWhole) {
    open();
    give(u"txtRSS_Title"_s, u"題"_s);
    const QByteArray before = bytesOf(session.RSSIniFile);
    ASSERT_TRUE(QFile::setPermissions(session.RSSIniFile, QFile::ReadOwner));
    press(u"Btn_OK"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    ASSERT_TRUE(window());
    EXPECT_TRUE(isApplyOn());
    EXPECT_EQ(bytesOf(session.RSSIniFile), before);
    ASSERT_TRUE(QFile::setPermissions(session.RSSIniFile, QFile::ReadOwner | QFile::WriteOwner));
    press(u"Btn_OK"_s);
    EXPECT_FALSE(window());
    EXPECT_EQ(stored(keys::rss::kTitle), u"題"_s);
}

TEST_F(SiteStructure, AnApplyReplacesEachOfTheFourFilesOnce) {
    open();
    press(u"Btn_Apply"_s); // off: nothing has changed
    give(u"txtRSS_Title"_s, u"題"_s);
    const DiskWatch watch;
    press(u"Btn_Apply"_s);
    EXPECT_EQ(watch.synced().filter(u".velltmp-"_s).size(), 4);
}

TEST_F(SiteStructure, ANumberBeyond16BitsIsToldInsteadOfAWindow) {
    writeFile(session.FrameIniFile, "[Frame]\r\nFrameOn=99999\r\n");
    top().command(u"mnuEnvironment"_s)->trigger();
    settle();
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    writeFile(session.FrameIniFile, "");
    open();
}

TEST_F(SiteStructure, KeepsItsPlace) {
    open();
    window()->move(150, 120);
    settle();
    const QPoint place = window()->pos();
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(core::ReadIniInt(session.DiaryIniFile, u"Frame"_s, u"WindowPosLeft"_s), place.x() * 15);
    EXPECT_EQ(core::ReadIniInt(session.DiaryIniFile, u"Frame"_s, u"WindowPosTop"_s), place.y() * 15);
    open();
    EXPECT_EQ(window()->pos(), place);
}

} // namespace
} // namespace velloria::tests
