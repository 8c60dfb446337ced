// Two people share the program, and one gives the look of their site to the other: the settings windows in a row.
#include "exchange/forms/frmExportCust.h"
#include "shell/forms/desktop_start.h"
#include "shell/forms/frmLogin.h"
#include "shell/forms/frmUserManager.h"
#include "site/customize_sets.h"
#include "site/forms/frmCustomizeSelection.h"
#include "site/forms/frmSetting.h"
#include "support/desktop_home.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class SettingsWalk : public DesktopHome {
protected:
    SettingsWalk() {
        setSetting(site::keys::body::kTextColor, u"#123456"_s);
        write(u"2004/05/06"_s, u"first"_s);
    }

    void answer(const QStringList& answers) { desk.answers = QJsonArray::fromStringList(answers); }

    void startAs(const QString& id, const QString& password) {
        context.windows.closeAll();
        whenShown<shell::frmLogin>([=](shell::frmLogin& login) {
            control<QLineEdit>(login, u"txtUID"_s).setText(id);
            control<QLineEdit>(login, u"txtPassword"_s).setText(password);
            control<QPushButton>(login, u"Btn_Login"_s).click();
        });
        ASSERT_EQ(shell::startDesktop(context, home.path()), shell::StartResult::Ready);
        settle();
    }
    void command(const QString& name) {
        top().command(name)->trigger();
        settle();
    }
    /// The window that a command of the menus shows.
    template <class Window>
    Window& opened(const QString& name) {
        command(name);
        auto* window = context.windows.find<Window>();
        if (!window)
            throw std::runtime_error("no window behind " + name.toStdString());
        EXPECT_TRUE(becomesVisible(*window));
        return *window;
    }
    static void press(const QWidget& window, const QString& button) {
        control<QPushButton>(window, button).click();
        settle();
    }
    QString lastBox() const { return boxes().value(boxes().size() - 1); }
};

TEST_F(SettingsWalk, FromOnePersonToTwoAndTheLookOfOneForTheOther) {
    // Two users, and the diary that was there becomes the first one's.
    auto& users = opened<shell::frmUserManager>(u"MnuUserManager"_s);
    answer({u"taro"_s, u"abc"_s, u"abc"_s, u"花子"_s, u"!ひみつ!"_s, u"!ひみつ!"_s});
    press(users, u"Btn_MakeUser"_s);
    EXPECT_EQ(lastBox(), u"plain: 新しいユーザー「taro」を作成しました。"_s);
    press(users, u"Btn_MakeUser"_s);
    EXPECT_EQ(lastBox(), u"plain: 新しいユーザー「花子」を作成しました。"_s);
    press(users, u"Btn_OK"_s);

    auto& again = opened<shell::frmUserManager>(u"MnuUserManager"_s);
    control<QComboBox>(again, u"txtUID"_s).setCurrentText(u"taro"_s);
    answer({u"abc"_s, u"yes"_s});
    press(again, u"Btn_SingleToComplex"_s);
    EXPECT_EQ(lastBox(), u"plain: 完了しました！"_s);
    press(again, u"Btn_OK"_s);

    // The first one: their diary is there, and their settings are what the windows show.
    startAs(u"taro"_s, u"abc"_s);
    EXPECT_EQ(session.DataPath, path(u"taro/"_s));
    EXPECT_EQ(sqlValue(u"SELECT Title FROM Contents"_s), u"first"_s);
    auto& settings = opened<site::frmSetting>(u"mnuEnvironment"_s);
    control<QCheckBox>(settings, u"chkUseRSS"_s).setChecked(true);
    control<QLineEdit>(settings, u"txtRSS_Title"_s).setText(u"太郎の日記"_s);
    press(settings, u"Btn_OK"_s);
    EXPECT_EQ(site::SiteSettings(session).text(site::keys::rss::kTitle), u"太郎の日記"_s);
    EXPECT_TRUE(site::SiteSettings(session).isOn(site::keys::rss::kRSSOn));

    setSetting(site::keys::body::kTextColor, u"#123456"_s);
    auto& exporter = opened<exchange::frmExportCust>(u"mnuExportCust"_s);
    control<QComboBox>(exporter, u"cmbCustomize"_s).setCurrentText(u"Customize"_s);
    control<QRadioButton>(exporter, u"optCst"_s).click();
    control<QLineEdit>(exporter, u"txtName"_s).setText(u"太郎"_s);
    answer({path(u"太郎の色"_s)});
    press(exporter, u"Btn_Exec"_s);
    EXPECT_EQ(panel(), u"カスタマイズファイルの出力に成功しました。"_s);
    ASSERT_TRUE(exists(path(u"太郎の色.cst"_s)));

    // The other one starts with nothing, takes the look, selects it, and saves a page.
    QDir(home.path()).mkdir(u"hana"_s);
    answer({path(u"hana"_s)});
    startAs(u"花子"_s, u"!ひみつ!"_s);
    EXPECT_EQ(session.UserPath, path(u"花子/"_s));
    EXPECT_EQ(sqlValue(u"SELECT COUNT(*) FROM Contents"_s), u"0"_s);
    write(u"2004/05/06"_s, u"hers"_s);
    answer({path(u"太郎の色.cst"_s)});
    command(u"mnuImportCust"_s);
    EXPECT_EQ(panel(), u"カスタマイズファイルの読み込みに成功しました。"_s);
    EXPECT_EQ(site::selectedCustomizeSet(session), u"Customize"_s) << "an import selects nothing";
    auto& selection = opened<site::frmCustomizeSelection>(u"MnuCustomizeSelect"_s);
    control<QComboBox>(selection, u"cmbSelectCustomize"_s).setCurrentText(u"太郎の色"_s);
    press(selection, u"Btn_OK"_s);
    EXPECT_EQ(site::selectedCustomizeSet(session), u"太郎の色"_s);

    QDir(home.path()).mkdir(u"site"_s);
    answer({path(u"site/index.htm"_s)});
    command(u"MnuSaveHTML"_s);
    const QString page = pageOf(path(u"site/index.htm"_s));
    EXPECT_TRUE(page.contains(u"<BODY TEXT='#123456'"_s)) << page.toStdString();
    EXPECT_TRUE(page.contains(u"hers"_s));
    EXPECT_FALSE(page.contains(u"太郎の日記"_s)) << "a set for others says nothing of its first owner";
}

} // namespace
} // namespace velloria::tests
