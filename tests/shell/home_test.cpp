#include "shell/home.h"

#include "core/path_names.h"
#include "platform/file_write.h"
#include "support/factory_sets.h"
#include "support/test_home.h"

#include <QDir>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::makeFolder;
using shell::findHome;
using shell::findHomeToRead;

/// The home of this fixture is the folder of the program.
class Home : public FactoryHome {
protected:
    Home() {
        ::unsetenv("VELLORIA_HOME");
        ::chmod(QFile::encodeName(home.path()).constData(), 0755);
        ::chmod(QFile::encodeName(m_user.path()).constData(), 0777);
        for (const QString& name : QDir(home.path()).entryList(QDir::Files))
            ::chmod(QFile::encodeName(path(name)).constData(), 0644);
        ::setenv("XDG_DATA_HOME", m_user.path().toUtf8().constData(), 1);
    }
    ~Home() override {
        ::unsetenv("VELLORIA_HOME");
        ::unsetenv("XDG_DATA_HOME");
    }
    QString seeded(const QString& name = {}) const { return m_user.filePath(u"velloria/"_s + name); }
    /// Does it as somebody who may not write to the folder of the program.
    bool holdsWithoutWriting(const std::function<bool()>& action) const {
        ::chmod(QFile::encodeName(home.path()).constData(), 0555);
        const bool holds = holdsForNobody(action);
        ::chmod(QFile::encodeName(home.path()).constData(), 0755);
        return holds;
    }
    bool seedsForNobody() const {
        return holdsWithoutWriting([this] { return findHome({}, home.path()) == seeded(); });
    }
    static void setTime(const QString& file, time_t seconds) {
        const timespec times[2] = {{seconds, 0}, {seconds, 0}};
        ::utimensat(AT_FDCWD, QFile::encodeName(file).constData(), times, 0);
    }

    QTemporaryDir m_user;
};

TEST_F(Home, IsTheProgramsFolderWhenItCanBeWritten) {
    EXPECT_EQ(findHome({}, home.path()), home.path() + u'/');
    EXPECT_EQ(findHome({}, home.path() + u'/'), home.path() + u'/');
    EXPECT_FALSE(exists(seeded()));
}

TEST_F(Home, IsTheOneThatIsWantedBeforeTheVariable) {
    makeFolder(path(u"a"_s));
    makeFolder(path(u"b"_s));
    ::setenv("VELLORIA_HOME", path(u"b"_s).toUtf8().constData(), 1);
    EXPECT_EQ(findHome(path(u"a"_s), home.path()), path(u"a/"_s));
    EXPECT_EQ(findHome({}, home.path()), path(u"b/"_s));
    ::setenv("VELLORIA_HOME", "", 1);
    EXPECT_EQ(findHome({}, home.path()), home.path() + u'/');
}

TEST_F(Home, MayBeNamedFromTheWorkingFolder) {
    makeFolder(path(u"a"_s));
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(path(u"a"_s)));
    const QString here = findHome(u"."_s, home.path());
    const QString above = findHome(u"../a/../a"_s, home.path());
    QDir::setCurrent(before);
    EXPECT_EQ(here, QFileInfo(path(u"a"_s)).canonicalFilePath() + u'/');
    EXPECT_EQ(above, QFileInfo(path(u"a"_s)).canonicalFilePath() + u'/');
}

TEST_F(Home, ThatIsNoFolderIsRefusedAndNotMade) {
    for (const QString& name : {path(u"gone"_s), path(u"default.ini"_s)}) {
        const QString failure = failureOf([&] { findHome(name, home.path()); });
        EXPECT_TRUE(failure.contains(name)) << failure.toStdString();
    }
    EXPECT_FALSE(exists(path(u"gone"_s)));
}

TEST_F(Home, ThatIsWantedAndCantBeWrittenIsRefused) {
    EXPECT_TRUE(holdsWithoutWriting([&] {
        return failureOf([&] { findHome(home.path(), home.path()); }).contains(u"プログラムフォルダに書き込めません"_s);
    }));
    EXPECT_FALSE(exists(seeded()));
}

TEST_F(Home, ThatIsOnlyReadIsMadeNowhereAndMayBeClosedToWriting) {
    EXPECT_EQ(findHomeToRead({}, home.path()), home.path() + u'/');
    EXPECT_TRUE(holdsWithoutWriting([&] {
        return findHomeToRead(home.path(), {}) == home.path() + u'/' &&
               findHomeToRead({}, home.path()) == home.path() + u'/';
    }));
    EXPECT_FALSE(exists(seeded()));
    EXPECT_TRUE(failureOf([&] { findHomeToRead(path(u"gone"_s), home.path()); }).contains(u"gone"_s));
    ASSERT_TRUE(seedsForNobody());
    EXPECT_TRUE(holdsWithoutWriting([&] { return findHomeToRead({}, home.path()) == seeded(); }));
    EXPECT_EQ(findHomeToRead({}, home.path()), home.path() + u'/');
}

TEST_F(Home, IsSeededForTheUserWhenTheProgramsFolderCantBeWritten) {
    writeFile(path(u"hatena.blg"_s), "template");
    ::chmod(QFile::encodeName(path(u"hatena.blg"_s)).constData(), 0444);
    ASSERT_TRUE(seedsForNobody());
    for (const QString& name : {u"default.ini"_s,
                                u"default.mdb"_s,
                                u"Customize.ini"_s,
                                u"TEXT.txt"_s,
                                u"HTML.txt"_s,
                                u"HTML2TXT.ini"_s,
                                u"HTML2TXT_RSS.ini"_s,
                                u"HTML2TXT_WordPress.ini"_s,
                                u"HTML2TXT_tDiary.ini"_s,
                                u"WordPress.blg"_s,
                                u"tDiary.blg"_s,
                                u"JS_Log.txt"_s,
                                u"colorname.csv"_s,
                                u"SimpleManual.mht"_s,
                                u"endpoints.ini"_s,
                                u"Shinny.gif"_s,
                                u"Cloudy.gif"_s,
                                u"Rainy.gif"_s,
                                u"Thunder.gif"_s,
                                u"Snowy.gif"_s,
                                u"hatena.blg"_s})
        EXPECT_TRUE(exists(seeded(name)) && bytesOf(seeded(name)) == bytesOf(path(name))) << name.toStdString();
    EXPECT_EQ(modeOf(seeded()), 0700U);
    EXPECT_EQ(modeOf(seeded(u"hatena.blg"_s)) & 0200U, 0200U) << "a copy can be written";
}

TEST_F(Home, GetsPlugInsAndTheMemoProgramAsTheyAreAndNewerOnesInTheirPlace) {
    for (const QString& name : {u"Larkport.dll"_s, u"of_somebody.dll"_s, u"VellMemo.exe"_s}) {
        writeFile(path(name), "first");
        ::chmod(QFile::encodeName(path(name)).constData(), 0755);
        setTime(path(name), 1'000'000'000);
    }
    ASSERT_TRUE(seedsForNobody());
    for (const QString& name : {u"Larkport.dll"_s, u"of_somebody.dll"_s, u"VellMemo.exe"_s}) {
        EXPECT_EQ(bytesOf(seeded(name)), "first") << name.toStdString();
        EXPECT_EQ(modeOf(seeded(name)) & 0111U, 0111U) << name.toStdString();
        writeFile(path(name), "newer");
        setTime(path(name), 1'100'000'000);
    }
    ASSERT_TRUE(seedsForNobody());
    EXPECT_EQ(bytesOf(seeded(u"Larkport.dll"_s)), "newer");
    EXPECT_EQ(bytesOf(seeded(u"VellMemo.exe"_s)), "newer");
    EXPECT_EQ(modeOf(seeded(u"VellMemo.exe"_s)) & 0111U, 0111U);
}

TEST_F(Home, GetsNoPlugInAgainThatItsOwnerHasDeleted) {
    for (const QString& name : {u"Chimer.dll"_s, u"Larkport.dll"_s, u"VellMemo.exe"_s})
        writeFile(path(name), "first");
    ASSERT_TRUE(seedsForNobody());
    for (const QString& name : {u"Larkport.dll"_s, u"VellMemo.exe"_s}) {
        QFile::remove(seeded(name));
        writeFile(path(name), "newer");
        setTime(path(name), std::time(nullptr) + 3600);
    }
    for (const QString& newOne : {u"VellInfo.dll"_s, u"Wrenport.dll"_s}) {
        writeFile(path(newOne), "new");
        ASSERT_TRUE(seedsForNobody());
        EXPECT_FALSE(exists(seeded(u"Larkport.dll"_s)));
        EXPECT_FALSE(exists(seeded(u"VellMemo.exe"_s)));
        EXPECT_EQ(bytesOf(seeded(u"Chimer.dll"_s)), "first");
        EXPECT_EQ(bytesOf(seeded(newOne)), "new");
    }
    EXPECT_EQ(bytesOf(seeded(u"seeded.lst"_s)), "Chimer.dll\nLarkport.dll\nVellMemo.exe\nVellInfo.dll\nWrenport.dll\n");
    // Whoever wants one back puts it there.
    writeFile(seeded(u"Larkport.dll"_s), "older");
    ::chmod(QFile::encodeName(seeded(u"Larkport.dll"_s)).constData(), 0666);
    setTime(seeded(u"Larkport.dll"_s), 1'000'000'000);
    ASSERT_TRUE(seedsForNobody());
    EXPECT_EQ(bytesOf(seeded(u"Larkport.dll"_s)), "newer");
}

TEST_F(Home, OfAnOlderProgramGetsWhatIsNewToItAndLearnsWhatItHas) {
    writeFile(path(u"Chimer.dll"_s), "first");
    ASSERT_TRUE(seedsForNobody());
    QFile::remove(seeded(u"seeded.lst"_s)); // older programs kept none
    writeFile(path(u"Larkport.dll"_s), "new");
    ASSERT_TRUE(seedsForNobody());
    EXPECT_EQ(bytesOf(seeded(u"Larkport.dll"_s)), "new");
    QFile::remove(seeded(u"Chimer.dll"_s));
    ASSERT_TRUE(seedsForNobody());
    EXPECT_FALSE(exists(seeded(u"Chimer.dll"_s)));
}

TEST_F(Home, IsSeededWithTheFurtherCustomizeSetsOnce) {
    ASSERT_TRUE(seedsForNobody());
    EXPECT_FALSE(exists(seeded(u"Customize"_s))) << "the program had none";
    bringCustomizeSets(home.path());
    ASSERT_TRUE(seedsForNobody());
    EXPECT_TRUE(contentOf(seeded(u"Customize"_s)) == contentOf(path(u"Customize"_s)));
    writeFile(seeded(u"Customize/Dark.ini"_s), "mine");
    setTime(path(u"Customize/Dark.ini"_s), std::time(nullptr) + 3600);
    ASSERT_TRUE(seedsForNobody());
    EXPECT_EQ(bytesOf(seeded(u"Customize/Dark.ini"_s)), "mine");
}

TEST_F(Home, SeedsNobodysDiarySettingsOrUsers) {
    for (const QString& name : {u"diary.ini"_s, u"diary.mdb"_s, u"velluser.ini"_s, u"update.txt"_s})
        writeFile(path(name), "other's");
    ASSERT_TRUE(seedsForNobody());
    for (const QString& name : {u"diary.ini"_s, u"diary.mdb"_s, u"velluser.ini"_s, u"update.txt"_s})
        EXPECT_FALSE(exists(seeded(name))) << name.toStdString();
}

TEST_F(Home, TakesWhatIsNewerInTheProgramsFolder) {
    ASSERT_TRUE(seedsForNobody());
    for (const QString& name :
         {u"default.mdb"_s, u"JS_Log.txt"_s, u"colorname.csv"_s, u"Shinny.gif"_s, u"TEXT.txt"_s}) {
        writeFile(path(name), "newer");
        setTime(path(name), 1'000'000'001);
        setTime(seeded(name), 1'000'000'000);
    }
    ASSERT_TRUE(seedsForNobody());
    for (const QString& name : {u"default.mdb"_s, u"JS_Log.txt"_s, u"colorname.csv"_s, u"Shinny.gif"_s, u"TEXT.txt"_s})
        EXPECT_EQ(bytesOf(seeded(name)), "newer") << name.toStdString();
}

TEST_F(Home, KeepsWhatIsNotOlderAndWhatBelongsToTheUser) {
    ASSERT_TRUE(seedsForNobody());
    for (const QString& name : {u"HTML2TXT.ini"_s, u"endpoints.ini"_s, u"Customize.ini"_s}) {
        writeFile(path(name), "newer");
        setTime(path(name), std::time(nullptr) + 3600);
    }
    writeFile(path(u"TEXT.txt"_s), "same time");
    setTime(path(u"TEXT.txt"_s), 1'000'000'000);
    setTime(seeded(u"TEXT.txt"_s), 1'000'000'000);
    const QByteArray text = bytesOf(seeded(u"TEXT.txt"_s));
    ASSERT_TRUE(seedsForNobody());
    for (const QString& name : {u"HTML2TXT.ini"_s, u"endpoints.ini"_s, u"Customize.ini"_s})
        EXPECT_NE(bytesOf(seeded(name)), "newer") << name.toStdString();
    EXPECT_EQ(bytesOf(seeded(u"TEXT.txt"_s)), text);
}

TEST_F(Home, AFolderWithALineBreakInItsNameIsRefused) {
    for (const QString& name : {u"a\nb"_s, u"a\rb"_s, u"c\n"_s}) {
        makeFolder(path(name));
        const QString failure = failureOf([&] { findHome(path(name), home.path()); });
        EXPECT_TRUE(failure.contains(u"改行"_s)) << failure.toStdString();
    }
}

TEST_F(Home, AFolderThatIsNotNamedInUtf8HasThatReason) {
    const QByteArray name = QFile::encodeName(path(u"x"_s)) + "\xFF";
    ASSERT_EQ(::mkdir(name.constData(), 0755), 0);
    qputenv("VELLORIA_HOME", name);
    const QString failure = failureOf([&] { findHome({}, home.path()); });
    qunsetenv("VELLORIA_HOME");
    EXPECT_TRUE(failure.contains(u"UTF-8"_s)) << failure.toStdString();
    EXPECT_FALSE(failureOf([&] { findHome(path(u"missing"_s), home.path()); }).contains(u"UTF-8"_s));
}

} // namespace
} // namespace velloria::tests
