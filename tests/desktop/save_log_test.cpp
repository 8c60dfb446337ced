#include "site/forms/frmSaveLog.h"

#include "core/ini.h"
#include "registers/file_register.h"
#include "registers/log_register.h"
#include "support/desktop_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class SaveLog : public DesktopHome {
protected:
    void SetUp() override {
        useSite();
        write(u"2004/04/02"_s, u"四月"_s);
        showTop();
    }

    void open() {
        top().command(u"MnuMakeLog"_s)->trigger();
        settle();
        ASSERT_TRUE(window());
        ASSERT_TRUE(window()->isVisible());
    }
    site::frmSaveLog* window() { return context.windows.find<site::frmSaveLog>(); }
    template <class Control>
    Control& field(const QString& name) {
        return control<Control>(*window(), name);
    }
    void save() {
        desk.events = {};
        field<QPushButton>(u"btn_Save"_s).click();
        settle();
    }
    QStringList logs() const {
        QStringList rows;
        for (const store::LogRow& log : registers::LogRegister(session.databaseFile()).listLogs())
            rows += log.month + u' ' + log.fileName;
        return rows;
    }
};

TEST_F(SaveLog, OffersTheMonthInFrontOfThePresentOne) {
    open();
    EXPECT_EQ(window()->windowTitle(), u"Logファイル化"_s);
    EXPECT_EQ(field<QLineEdit>(u"txtYear"_s).text(), u"2004"_s);
    EXPECT_EQ(field<QLineEdit>(u"txtMonth"_s).text(), u"4"_s);
    EXPECT_EQ(field<QPushButton>(u"btn_Save"_s).text(), u"保存"_s);
    EXPECT_EQ(field<QCheckBox>(u"chkAutoResist"_s).text(), u"ログを自動で登録"_s);
    EXPECT_EQ(field<QCheckBox>(u"chkAutoUpdate"_s).text(), u"ログを自動でFTPする"_s);
}

TEST_F(SaveLog, MakesTheLogSaysSoShowsThePreviewAndUnloads) {
    open();
    session.EnterDay = u"2004/04/02"_s;
    save();
    EXPECT_EQ(logs(), QStringList{u"2004/04 200404.htm"_s});
    EXPECT_TRUE(pageOf(session.DataPath + u"DiaryLog/200404.htm"_s).contains(u"四月"_s));
    EXPECT_TRUE(exists(path(u"site/DiaryLog/200404.htm"_s)));
    QStringList events;
    for (const QJsonValue& event : desk.events) {
        const QString name = event[u"event"_s].toString();
        if (name != u"pointer"_s)
            events += name + u' ' + event[u"text"_s].toString() + event[u"url"_s].toString();
    }
    EXPECT_EQ(events, (QStringList{u"status 2004/04の日記をLog化しました。"_s, u"message Logファイル化しました。"_s,
                                   u"status Webページ表示中..."_s,
                                   u"navigate "_s + session.DataPath + u"tmp.htm#2004/04/02"_s}));
    EXPECT_EQ(desk.events.first()[u"shape"_s], u"hourglass"_s);
    EXPECT_EQ(desk.events.last()[u"shape"_s], u"default"_s);
    EXPECT_TRUE(exists(session.DataPath + u"tmp.htm"_s));
    EXPECT_FALSE(window());
}

TEST_F(SaveLog, TheHourglassStandsUntilThePreviewIsShown) {
    open();
    save();
    QStringList events;
    for (const QJsonValue& event : desk.events) {
        if (event[u"event"_s] != u"status"_s)
            events += event[u"event"_s].toString() + u' ' + event[u"shape"_s].toString();
    }
    EXPECT_EQ(events, (QStringList{u"pointer hourglass"_s, u"message "_s, u"navigate "_s, u"pointer default"_s}));
}

TEST_F(SaveLog, WithoutASiteFolderThePanelSaysSoAtTheEnd) {
    class PanelDesk : public ScriptedDesk {
    public:
        explicit PanelDesk(shell::MDIFormTop& top)
            : m_top(top) {}
        void status(const QString& text) override { m_top.setStatus(text); }
        void notice(const QString& text) override { m_top.setNotice(text); }

    private:
        shell::MDIFormTop& m_top;
    } shown(top());
    desktop::Context other{{session, clock, shown}};
    other.mdi = context.mdi;
    const auto panelAtTheEnd = [&] {
        other.windows.get<site::frmSaveLog>().showWindow();
        control<QPushButton>(other.windows.get<site::frmSaveLog>(), u"btn_Save"_s).click();
        settle();
        EXPECT_FALSE(other.windows.find<site::frmSaveLog>());
        return control<QLabel>(top(), u"StatusPanel1"_s).text();
    };
    EXPECT_EQ(panelAtTheEnd(), u"2004/04の日記をLog化しました。　Webページ表示中..."_s);
    session.FilePath = u""_s;
    EXPECT_EQ(panelAtTheEnd(),
              u"保存先のフォルダが決まっていないので、2004/04のログはデータフォルダにだけ作成しました。"_s);
}

TEST_F(SaveLog, TheCheckBoxesHaveNoEffect) {
    for (const bool isOn : {false, true}) {
        open();
        field<QCheckBox>(u"chkAutoResist"_s).setChecked(isOn);
        field<QCheckBox>(u"chkAutoUpdate"_s).setChecked(isOn);
        field<QLineEdit>(u"txtMonth"_s).setText(isOn ? u"1"_s : u"2"_s);
        save();
    }
    EXPECT_EQ(logs(), (QStringList{u"2004/02 200402.htm"_s, u"2004/01 200401.htm"_s}));
    EXPECT_EQ(bytesOf(session.UserPath + u"uploadlog.tmp"_s).count("\r\n"), 2);
}

TEST_F(SaveLog, TheWindowIsHiddenInFrontOfTheBoxAndSaveIsOffMeanwhile) {
    class WatchedDesk : public ScriptedDesk {
    public:
        void status(const QString& text) override {
            ScriptedDesk::status(text);
            isSaveOn |= button->isEnabled();
            button->click();
            button->window()->close();
        }
        void message(platform::MessageKind kind, const QString& text, const QString& title) override {
            ScriptedDesk::message(kind, text, title);
            isVisible = button->window()->isVisible();
            button->click();
        }
        QPushButton* button = nullptr;
        bool isSaveOn = false;
        bool isVisible = true;
    } watched;
    desktop::Context other{{session, clock, watched}};
    other.mdi = context.mdi;
    auto& shown = other.windows.get<site::frmSaveLog>();
    shown.showWindow();
    watched.button = &control<QPushButton>(shown, u"btn_Save"_s);
    watched.button->click();
    EXPECT_FALSE(watched.isSaveOn);
    EXPECT_FALSE(watched.isVisible);
    EXPECT_EQ(watched.texts(u"message"_s).size(), 1);
    EXPECT_EQ(bytesOf(session.UserPath + u"uploadlog.tmp"_s).count("\r\n"), 1);
    settle();
    EXPECT_FALSE(other.windows.find<site::frmSaveLog>());
}

TEST_F(SaveLog, AMonthThatIsNoneFailsAndKeepsTheWindow) {
    open();
    for (const QString& month : {u"13"_s, u"ab"_s, u""_s, u"../x"_s}) {
        field<QLineEdit>(u"txtMonth"_s).setText(month);
        save();
        EXPECT_EQ(desk.texts(u"failure"_s).size(), 1) << month.toStdString();
        EXPECT_TRUE(boxes().isEmpty());
        ASSERT_TRUE(window());
        EXPECT_TRUE(window()->isVisible());
        EXPECT_TRUE(field<QPushButton>(u"btn_Save"_s).isEnabled());
        EXPECT_EQ(logs(), QStringList());
    }
    EXPECT_TRUE(exists(session.DataPath + u"DiaryLog/200413.htm"_s));
    field<QLineEdit>(u"txtMonth"_s).setText(u"04"_s);
    save();
    EXPECT_EQ(logs().size(), 1);
    EXPECT_FALSE(window());
}

TEST_F(SaveLog, AMissingFileHasItsBoxAndTheLogIsMade) {
    registers::FileRegister(session.databaseFile()).addFile({0, u"gone.gif"_s, u"2004/04/02"_s, 1});
    open();
    save();
    EXPECT_EQ(boxes(),
              (QStringList{u"critical: 04月分として登録されたファイル[gone.gif]が見つかりません。\r\n"
                           "[UserData\\DiaryParts]フォルダに該当ファイルをコピーして、再度ログ化して下さい。"_s,
                           u"information: Logファイル化しました。"_s}));
    EXPECT_EQ(logs().size(), 1);
}

TEST_F(SaveLog, APreviewThatFailsBehindTheLogUnloadsAllTheSame) {
    QFile::remove(session.DataPath + u"tmp.htm"_s);
    ASSERT_TRUE(QDir(session.DataPath).mkdir(u"tmp.htm"_s));
    open();
    save();
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_EQ(logs().size(), 1);
    EXPECT_FALSE(window());
}

TEST_F(SaveLog, CancelWritesNothingButThePlace) {
    open();
    window()->move(90, 130);
    settle();
    const QPoint place = window()->pos();
    field<QPushButton>(u"BtnCancel"_s).click();
    settle();
    EXPECT_FALSE(window());
    EXPECT_EQ(core::ReadIniInt(session.DiaryIniFile, u"Log"_s, u"Top"_s), place.y() * 15);
    EXPECT_EQ(core::ReadIniInt(session.DiaryIniFile, u"Log"_s, u"Left"_s), place.x() * 15);
    EXPECT_FALSE(exists(session.DataPath + u"DiaryLog/200404.htm"_s));
    open();
    EXPECT_EQ(window()->pos(), place);
}

} // namespace
} // namespace velloria::tests
