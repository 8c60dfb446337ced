#include "shell/data_folder.h"

#include "support/test_home.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class DataFolder : public TestHome {
protected:
    /// A session whose data folder is another one, which is there and empty.
    core::Session elsewhere() {
        EXPECT_TRUE(QDir(home.path()).mkdir(u"else"_s));
        core::Session other = session;
        other.DataPath = path(u"else/"_s);
        return other;
    }
};

TEST_F(DataFolder, AFolderOfWhichAllBelowFitsTheSettingsIsTaken) {
    const qsizetype below = QStringView(u"/Customize/Customize.ini").size();
    const QString longest = u"/"_s + QString(255 - below - 1, u'x');
    EXPECT_TRUE(shell::mayBeDataFolder(longest, desk));
    EXPECT_TRUE(shell::mayBeDataFolder(longest + u'/', desk));
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_FALSE(shell::mayBeDataFolder(longest + u'x', desk));
    EXPECT_EQ(boxes(), QStringList{u"critical: フォルダの名前が長すぎて設定に保存できません。\r\n"
                                   u"もっと短い名前のフォルダを指定して下さい。"_s});
}

TEST_F(DataFolder, TheLengthIsThatOfTheStoredName) {
    EXPECT_TRUE(shell::fitsSettingsWithAllBelow(u"/"_s + QString(110, u'あ'))) << "two bytes each";
    EXPECT_FALSE(shell::fitsSettingsWithAllBelow(u"/"_s + QString(120, u'あ')));
    EXPECT_FALSE(shell::fitsSettingsWithAllBelow(u"/"_s + QString(40, u'é'))) << "a reference each";
}

TEST_F(DataFolder, AStoredNameThatMeansNothingHereIsNoFolder) {
    EXPECT_EQ(shell::folderOfSetting(u"/data"_s), u"/data/"_s);
    for (const QString& stored : {u""_s, u"C:\\Diary\\"_s, u"relative"_s, u":/"_s})
        EXPECT_EQ(shell::folderOfSetting(stored), QString()) << stored.toStdString();
}

TEST_F(DataFolder, AnotherFolderGetsWhatTheFirstOneHas) {
    const core::Session other = elsewhere();
    shell::makeWorkingFolders(other);
    for (const QString& name : {u"DiaryParts/Snowy.gif"_s, u"DiaryLog"_s, u"Customize/Customize.ini"_s,
                                u"ExportFormat/TEXT.ini"_s, u"ExportFormat/HTML.ini"_s, u"BlogTemplate"_s})
        EXPECT_TRUE(QFileInfo::exists(other.DataPath + name)) << name.toStdString();
    writeFile(other.DataPath + u"Customize/Customize.ini"_s, "mine");
    ASSERT_TRUE(QFile::remove(other.DataPath + u"ExportFormat/TEXT.ini"_s));
    shell::makeWorkingFolders(other);
    EXPECT_EQ(bytesOf(other.DataPath + u"Customize/Customize.ini"_s), "mine");
    EXPECT_FALSE(exists(other.DataPath + u"ExportFormat/TEXT.ini"_s)) << "deleted by its owner";
}

TEST_F(DataFolder, AFolderThatTakesNothingIsToldByName) {
    const core::Session other = elsewhere();
    writeFile(path(u"else/Customize"_s), "x");
    EXPECT_NE(failureOf([&] { shell::makeWorkingFolders(other); }).indexOf(path(u"else/Customize"_s)), -1);
}

} // namespace
} // namespace velloria::tests
