#include "desktop/settings_dialog.h"

#include "core/keys.h"
#include "core/site_keys.h"
#include "support/desktop_home.h"
#include "support/disk_watch.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys;

/// Settings of two files, as the options will have them.
class Sample : public desktop::SettingsDialog {
public:
    explicit Sample(desktop::Context& context)
        : SettingsDialog(context, u"Sample"_s, Blocks::Nothing) {
        setUp({{&frames, keys::frame::kFrameOn, {}},
               {&size, keys::frame::kCalenderFrameSize, {}},
               {&server, keys::kFtpUrl, {}}},
              {&ok, &cancel, &apply});
        enableWhile({&size}, [this] { return frames.isChecked(); });
    }

    QCheckBox frames{this};
    QLineEdit size{this};
    QLineEdit server{this};
    QPushButton ok{this};
    QPushButton cancel{this};
    QPushButton apply{this};
};

class SettingsDialog : public DesktopHome {
protected:
    SettingsDialog() {
        setSetting(keys::frame::kFrameOn, u"1"_s);
        setSetting(keys::frame::kCalenderFrameSize, u"150"_s);
        setSetting(keys::kFtpUrl, u"ftp.example.com"_s);
        showTop();
    }
    Sample& open() { return shownWindow<Sample>(context); }
    bool isOpen() {
        settle();
        return context.windows.find<Sample>();
    }
    QString size() const { return core::Settings(session).text(keys::frame::kCalenderFrameSize); }
};

TEST_F(SettingsDialog, AChangeEnablesApplyAndApplyWritesAllFiles) {
    Sample& dialog = open();
    EXPECT_TRUE(dialog.frames.isChecked());
    EXPECT_EQ(dialog.server.text(), u"ftp.example.com"_s);
    EXPECT_FALSE(dialog.apply.isEnabled());
    dialog.size.setText(u"200"_s);
    dialog.server.setText(u"other"_s);
    EXPECT_TRUE(dialog.apply.isEnabled());
    EXPECT_EQ(size(), u"150"_s) << "nothing is written before it";
    dialog.apply.click();
    EXPECT_FALSE(dialog.apply.isEnabled());
    EXPECT_EQ(size(), u"200"_s);
    EXPECT_EQ(core::Settings(session).text(keys::kFtpUrl), u"other"_s);
    EXPECT_TRUE(isOpen());
}

TEST_F(SettingsDialog, OkAppliesAndCloses) {
    Sample& dialog = open();
    dialog.size.setText(u"200"_s);
    dialog.ok.click();
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(size(), u"200"_s);
}

TEST_F(SettingsDialog, LeavingWithoutAChangeAsksNothing) {
    const std::function<void(Sample&)> ways[] = {[](Sample& dialog) { dialog.cancel.click(); },
                                                 [](Sample& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
                                                 [](Sample& dialog) { dialog.close(); }};
    for (const auto& leave : ways) {
        leave(open());
        EXPECT_FALSE(isOpen());
    }
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(SettingsDialog, LeavingAfterAChangeAsksAndWritesForAYes) {
    const std::function<void(Sample&)> ways[] = {[](Sample& dialog) { dialog.cancel.click(); },
                                                 [](Sample& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
                                                 [](Sample& dialog) { dialog.close(); }};
    for (const auto& leave : ways) {
        for (const bool isYes : {false, true}) {
            setSetting(keys::frame::kCalenderFrameSize, u"150"_s);
            Sample& dialog = open();
            dialog.size.setText(u"200"_s);
            desk.events = {};
            desk.answers = {isYes ? u"yes"_s : u"no"_s};
            leave(dialog);
            EXPECT_FALSE(isOpen());
            EXPECT_EQ(boxes(), QStringList{u"question: 変更されていますが、保存しますか？"_s});
            EXPECT_EQ(size(), isYes ? u"200"_s : u"150"_s);
        }
    }
}

TEST_F(SettingsDialog, ControlsAreEnabledWhileTheirConditionHolds) {
    Sample& dialog = open();
    EXPECT_TRUE(dialog.size.isEnabled());
    dialog.frames.click();
    EXPECT_FALSE(dialog.size.isEnabled());
    dialog.frames.click();
    EXPECT_TRUE(dialog.size.isEnabled());
    dialog.frames.click();
    dialog.ok.click();
    EXPECT_FALSE(isOpen());
    EXPECT_FALSE(open().size.isEnabled()) << "from the start on";
}

TEST_F(SettingsDialog, AnApplyReplacesEachFileOnce) {
    Sample& dialog = open();
    dialog.frames.click();
    dialog.size.setText(u"200"_s);
    dialog.server.setText(u"other"_s);
    const DiskWatch watch;
    dialog.apply.click();
    EXPECT_EQ(watch.synced().filter(u".velltmp-"_s).size(), 2);
    EXPECT_EQ(watch.synced().size(), 4) << "each file and its folder";
}

TEST_F(SettingsDialog, ADiskThatRefusesAnApplyIsToldAndLeavesFileAndDialog) {
    Sample& dialog = open();
    dialog.size.setText(u"200"_s);
    dialog.server.setText(u"other"_s);
    const QMap<QString, QByteArray> before = contentOf(home.path());
    {
        DiskWatch disk;
        disk.refuse(u""_s);
        dialog.apply.click();
        EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
        dialog.ok.click();
        desk.answers = {u"yes"_s};
        dialog.cancel.click();
        EXPECT_EQ(desk.texts(u"failure"_s).size(), 3);
    }
    EXPECT_EQ(contentOf(home.path()), before);
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(dialog.apply.isEnabled());
    dialog.ok.click();
    EXPECT_EQ(size(), u"200"_s);
    EXPECT_FALSE(isOpen());
}

} // namespace
} // namespace velloria::tests
