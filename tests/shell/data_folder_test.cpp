#include "shell/data_folder.h"

#include "core/files.h"
#include "platform/directory.h"
#include "platform/file_write.h"
#include "support/factory_sets.h"
#include "support/faulty_disk.h"
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

    /// What the program brings into the folder of the customize sets.
    QMap<QString, QByteArray> setsOfProgram() const {
        QMap<QString, QByteArray> sets = contentOf(core::files::kFirstCustomize.in(session));
        sets[u"/Customize.ini"_s] = bytesOf(core::files::kFirstCustomizeIni.in(session));
        return sets;
    }

    /// Whether no folder of the sets lacks one of them, whatever became of this.
    void expectAllSetsOrNone(const core::Session& other) const {
        const QString folder = core::files::kCustomize.in(other);
        if (!exists(folder))
            return;
        QMap<QString, QByteArray> found = contentOf(folder);
        found[u"/Customize.ini"_s] = bytesOf(core::files::kFirstCustomizeIni.in(session)); // comes at every start
        for (const QString& name : found.keys()) {
            if (name.contains(u"/.velltmp-"_s))
                found.remove(name);
        }
        EXPECT_EQ(found.keys(), setsOfProgram().keys());
        EXPECT_TRUE(found == setsOfProgram());
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

TEST_F(DataFolder, TheSetsComeWithTheirFolderAlone) {
    bringCustomizeSets(home.path());
    start();
    EXPECT_FALSE(exists(core::files::kCustomize.in(session) + u"/Dark.ini"_s)) << "the folder was there";
    ASSERT_TRUE(QDir(core::files::kCustomize.in(session)).removeRecursively());
    start();
    EXPECT_TRUE(contentOf(core::files::kCustomize.in(session)) == setsOfProgram());
    EXPECT_EQ(platform::listFolder(core::files::kCustomize.in(session), u"*.ini"_s).size(), 7);
    EXPECT_EQ(session.CustIniFile, core::files::kCustomizeIni.in(session)) << "the standard set is the chosen one";
    platform::removeFile(core::files::kCustomize.in(session) + u"/Dark.ini"_s);
    writeFile(core::files::kCustomize.in(session) + u"/Light_Head.htm"_s, "mine");
    start();
    EXPECT_FALSE(exists(core::files::kCustomize.in(session) + u"/Dark.ini"_s)) << "deleted by its owner";
    EXPECT_EQ(bytesOf(core::files::kCustomize.in(session) + u"/Light_Head.htm"_s), "mine");
}

TEST_F(DataFolder, AProgramWithoutFurtherSetsMakesTheFolderForItsOne) {
    const core::Session other = elsewhere();
    shell::makeWorkingFolders(other);
    EXPECT_EQ(platform::listFolder(core::files::kCustomize.in(other), u"*"_s), QStringList{u"Customize.ini"_s});
}

TEST_F(DataFolder, TheSetsOfASiteBesideTheProgramStayThere) {
    bringCustomizeSets(home.path());
    writeFile(core::files::kFirstCustomize.in(session) + u"/Customize.ini"_s, "[General]\r\nHPTitle=mine\r\n");
    const core::Session other = elsewhere();
    shell::makeWorkingFolders(other);
    EXPECT_EQ(platform::listFolder(core::files::kCustomize.in(other), u"*"_s), QStringList{u"Customize.ini"_s});
    EXPECT_EQ(bytesOf(core::files::kCustomizeIni.in(other)), bytesOf(core::files::kFirstCustomizeIni.in(session)));
}

TEST_F(DataFolder, AUserWhoIsCalledLikeTheFolderKeepsWhatIsTheirs) {
    bringCustomizeSets(home.path());
    writeFile(core::files::kFirstCustomize.in(session) + u"/Diary.ini"_s, "passwords");
    const core::Session other = elsewhere();
    shell::makeWorkingFolders(other);
    EXPECT_EQ(platform::listFolder(core::files::kCustomize.in(other), u"*"_s), QStringList{u"Customize.ini"_s});
}

TEST_F(DataFolder, AFolderOfSetsWhoseLinkLeadsNowhereIsNotMissing) {
    ASSERT_TRUE(QFile::link(path(u"gone"_s), core::files::kFirstCustomize.in(session)));
    const core::Session other = elsewhere();
    EXPECT_NE(failureOf([&] { shell::makeWorkingFolders(other); }), u""_s);
    EXPECT_FALSE(exists(core::files::kCustomize.in(other)));
}

TEST_F(DataFolder, AStartThatIsCutOffAnywhereIsMadeUpForByTheNext) {
    bringCustomizeSets(home.path());
    const core::Session other = elsewhere();
    int faults = 0;
    for (const Fault fault : {Fault::FullDisk, Fault::IoError, Fault::KilledProgram}) {
        bool hasFailed = true;
        for (int n = 1; hasFailed && !HasFailure(); ++n) {
            ASSERT_TRUE(QDir(other.DataPath).removeRecursively() && QDir().mkpath(other.DataPath));
            SCOPED_TRACE("fault " + std::to_string(int(fault)) + " at call " + std::to_string(n));
            const auto begin = [&] {
                FaultyDisk disk(home.path());
                disk.failAt(fault, n);
                const QString failure = failureOf([&] { shell::makeWorkingFolders(other); });
                EXPECT_TRUE(failure.isEmpty() || disk.hasFailed()) << failure.toStdString();
                return !disk.hasFailed();
            };
            hasFailed = fault == Fault::KilledProgram ? !holdsInChild(begin) : !begin();
            faults += hasFailed;
            expectAllSetsOrNone(other);
            shell::makeWorkingFolders(other);
            EXPECT_TRUE(exists(core::files::kCustomize.in(other)));
            expectAllSetsOrNone(other);
        }
    }
    EXPECT_GT(faults, 3 * 13) << "at least one of each kind for every file";
}

TEST_F(DataFolder, AFolderThatTakesNothingIsToldByName) {
    const core::Session other = elsewhere();
    writeFile(path(u"else/Customize"_s), "x");
    EXPECT_NE(failureOf([&] { shell::makeWorkingFolders(other); }).indexOf(path(u"else/Customize"_s)), -1);
}

} // namespace
} // namespace velloria::tests
