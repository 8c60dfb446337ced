#include "publish/update_check.h"

#include "core/ini.h"
#include "core/program_keys.h"
#include "publish/update_home.h"
#include "support/folder_turn.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys;
using namespace update_boxes;

class Update : public UpdateHome {
protected:
    void vellUpdater() {
        forget();
        publish::UpdateCheck({session, clock, shown}, web, calls).MnuVellUpdater();
    }
    /// A key of the file of offers.
    QString offered(const QString& key, const QString& section = u"CurrentVersion"_s) const {
        return core::ReadIni(offersFile(), section, key);
    }
};

/// The working folder of the program, for the life of this.
class WorkingFolder {
public:
    WorkingFolder() { QDir::setCurrent(m_folder.path()); }
    ~WorkingFolder() { QDir::setCurrent(m_before); }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    QString filePath(const QString& name) const { return m_folder.filePath(name); }

private:
    QString m_before = QDir::currentPath();
    QTemporaryDir m_folder;
};

TEST_F(Update, AGoodCheckShowsTheseStepsInThisOrder) {
    offerRelease();
    putUpdater("#!/bin/sh\npwd > here; echo \"$0 $#\" > \"${0%/*}/mark\"\n");
    putLibrary();
    const WorkingFolder working;
    shown.answers = {u"yes"_s, u"yes"_s};
    EXPECT_TRUE(check().isDone);
    EXPECT_EQ(transcript(), textOf(R"(
browser stops
navigate
pointer: hourglass
status: Openning Internet
> open
status: Downloading update.txt
status: Connectiong to http://maker/up/update.txt
> url http://maker/up/update.txt
status: Connected to http://maker/up/update.txt
status: Downloading http://maker/up/update.txt
status: Saveing http://maker/up/update.txt to HOME/update.txt
status: Downloading http://maker/up/update.txt is Succeeded!
> close url
updater on
box question Velloria yes: 新しいバージョンが存在します(2.2.1)。 / ダウンロードしますか？
status: ダウンロード実行中...
status: Connectiong to http://maker/v.lzh
> url http://maker/v.lzh
status: Connected to http://maker/v.lzh
window:  |  | 0/1
window: ダウンロード on HTTP | ダウンロード中... / HOME/v.lzh | 0/1
pump
status: Downloading http://maker/v.lzh
window: ダウンロード on HTTP | ダウンロード中... / HOME/v.lzh / ...7 bytes received(0.0kbps). | 0/1
pump
status: Saveing http://maker/v.lzh to HOME/v.lzh
window: ダウンロード on HTTP | ダウンロード完了！ / HOME/v.lzh / 7bytes received(0.0kbps). | 0/1
window: ダウンロード on HTTP | ダウンロード完了！ / HOME/v.lzh / 7bytes received(0.0kbps). | 0/1 | OK
status: Downloading http://maker/v.lzh is Succeeded!
> close url
box information Velloria ok: ダウンロードが完了しました。
box question Velloria yes: VelloriaUpdaterを起動しますか？ / (Velloriaは終了します。)
> close session
pointer: default
program ends)"));
    EXPECT_EQ(shown.texts(u"navigate"_s), QStringList{u"http://maker/news.htm"_s});
    EXPECT_EQ(bytesOf(path(u"v.lzh"_s)), "archive");
    EXPECT_EQ(bytesOf(offersFile()), "[Release]\r\nversion=2.2.1\r\nURL_Full=http://maker/v.lzh\r\nFileName=v.lzh\r\n"
                                     "[CurrentVersion]\r\nversion=2.2.0\r\n");
    EXPECT_EQ(waitFor(u"mark"_s), (path(u"VellUpTmp.exe"_s) + u" 0\n"_s).toUtf8());
    EXPECT_TRUE(QFileInfo::exists(working.filePath(u"here"_s)));
    EXPECT_EQ(bytesOf(path(u"VellUpTmp.exe"_s)), bytesOf(path(u"VellUpdater.exe"_s)));
}

TEST_F(Update, VersionsCompareAsText) {
    const QString anyArchive = u" / URL_Full=http://maker/v.lzh / FileName=v.lzh"_s;
    const std::pair<QString, QString> cases[] = {
        {u"[Release] / version=2.10.0"_s, u""_s},
        {u"[Release] / version=10.0.0"_s, u""_s},
        {u"[Release] / version=2.2.0"_s, u""_s},
        {u"[Release] / version="_s, u""_s},
        {u"[Release] / version=2.2"_s, u""_s},
        {u"[Release] / x=y"_s, u""_s},
        {u"[Other] / version=9"_s, u""_s},
        {u"[Release] / version=2.2.01"_s, u"2.2.01"_s},
        {u"[Release] / version=2.2.1"_s, u"2.2.1"_s},
        {u"[release] / VERSION=2.3"_s, u"2.3"_s},
        {u"[Release] / version=9"_s, u"9"_s},
        {u"[Release] / version=beta"_s, u"beta"_s},
        {u"[Release] / version=次"_s, u"次"_s},
        // A patch builds on a version that this one is above.
        {u"[Patch] / version=2.2.5 / requiredversion=2.1.9"_s, u"2.2.5"_s},
        {u"[Patch] / version=2.2.5 / requiredversion=2.2.0"_s, u""_s},
        {u"[Patch] / version=2.2.5 / requiredversion=2.2.1"_s, u""_s},
        {u"[Patch] / version=2.2.5 / requiredversion=10.0"_s, u"2.2.5"_s},
        {u"[Patch] / version=2.2.5"_s, u"2.2.5"_s}, // on 1.6.0
        {u"[Patch] / version=2.2.0 / requiredversion=1"_s, u""_s},
        {u"[Patch] / requiredversion=1"_s, u""_s}, // to 1.6.0
    };
    web.files[u"http://maker/v.lzh"_s] = {"x"};
    for (const auto& [lines, version] : cases) {
        offer(lines + anyArchive);
        shown.answers = version.isEmpty() ? QJsonArray() : QJsonArray{u"no"_s};
        const publish::UpdateResult result = check();
        if (version.isEmpty()) {
            EXPECT_TRUE(result.isDone);
            EXPECT_EQ(boxLines(), QStringList{kNothingNewer}) << lines.toStdString();
            EXPECT_EQ(this->lines(u"status: "_s).last(), u"Sorry,New Version is not released!"_s);
            EXPECT_EQ(updaterStates(), u"off"_s);
        } else {
            EXPECT_EQ(boxLines(), QStringList{kOffered.arg(u"no"_s, version)}) << lines.toStdString();
        }
        expectEnding();
    }
}

TEST_F(Update, APatchGoesBeforeARelease) {
    offer(u"[Release] / version=2.3.0 / URL_Full=http://maker/r / FileName=r.lzh / "
          "[Patch] / version=2.2.1 / requiredversion=2.1.0 / URL_Full=http://maker/p / FileName=p.lzh"_s);
    web.files[u"http://maker/p"_s] = {"patch"};
    shown.answers = {u"yes"_s};
    EXPECT_FALSE(check().isDone);
    EXPECT_EQ(boxLines(), (QStringList{kOffered.arg(u"yes"_s, u"2.2.1"_s), kComplete, kNoUpdater}));
    EXPECT_EQ(bytesOf(path(u"p.lzh"_s)), "patch");

    offer(u"[Release] / version=2.3.0 / URL_Full=http://maker/r / FileName=r.lzh / "
          "[Patch] / version=2.2.1 / requiredversion=2.2.0 / URL_Full=http://maker/p / FileName=p.lzh"_s);
    web.files[u"http://maker/r"_s] = {"release"};
    shown.answers = {u"yes"_s};
    check();
    EXPECT_EQ(boxLines(), (QStringList{kOffered.arg(u"yes"_s, u"2.3.0"_s), kComplete, kNoUpdater}));
    EXPECT_EQ(bytesOf(path(u"r.lzh"_s)), "release");
}

TEST_F(Update, TheRunningVersionIsWrittenAheadOfTheReading) {
    offer(u"[CurrentVersion] / version=9.9.9 / [Release] / version=2.2.1"_s);
    shown.answers = {u"no"_s};
    check();
    EXPECT_EQ(boxLines(), QStringList{kOffered.arg(u"no"_s, u"2.2.1"_s)});
    EXPECT_EQ(offered(u"version"_s), u"2.2.0"_s);
    EXPECT_EQ(offered(u"version"_s, u"Release"_s), u"2.2.1"_s);
}

TEST_F(Update, ARunningVersionThatCanNotBeWrittenReadsAsTheOldestOne) {
    web.onClose = [this] { QFile::setPermissions(offersFile(), QFile::ReadOwner); };
    offer(u"[Release] / version=1.5.9"_s);
    check();
    EXPECT_EQ(boxLines(), QStringList{kNothingNewer});
    QFile::setPermissions(offersFile(), QFile::ReadOwner | QFile::WriteOwner);
    offer(u"[Release] / version=1.6.1"_s);
    shown.answers = {u"no"_s};
    check();
    EXPECT_EQ(boxLines(), QStringList{kOffered.arg(u"no"_s, u"1.6.1"_s)});
}

TEST_F(Update, ANoKeepsTheUpdaterAndFetchesNothing) {
    offerRelease();
    shown.answers = {u"no"_s};
    const publish::UpdateResult result = check();
    EXPECT_FALSE(result.isDone);
    EXPECT_EQ(result.reason, u"ダウンロードを中止しました。"_s);
    EXPECT_EQ(updaterStates(), u"on"_s);
    EXPECT_EQ(lines(u"> url "_s), QStringList{u"http://maker/up/update.txt"_s});
    EXPECT_FALSE(exists(path(u"v.lzh"_s)));
    EXPECT_TRUE(exists(offersFile()));
    expectEnding();
}

TEST_F(Update, WithoutASessionNothingIsFetched) {
    web.isReachable = false;
    const publish::UpdateResult result = check();
    EXPECT_FALSE(result.isDone);
    EXPECT_TRUE(result.reason.startsWith(u"インターネットに接続できませんでした。"_s));
    EXPECT_EQ(transcript(), textOf(R"(
browser stops
navigate
pointer: hourglass
status: Openning Internet
> open
status: Can't connect Internet!
box critical Velloria ok: インターネットに接続できませんでした。
updater off
> close session
pointer: default)"));
}

TEST_F(Update, OffersThatDoNotComeAreToldTwice) {
    writeFile(offersFile(), "[Release]\r\nversion=9\r\n");
    publish::UpdateResult result = check();
    EXPECT_EQ(result.reason, u"update.txtの取得に失敗しました。 サーバー名が認識出来ません。"_s);
    EXPECT_EQ(boxLines(), (QStringList{kNoConnection, kNoOffers}));
    EXPECT_EQ(updaterStates(), u"off"_s);
    expectEnding();

    web.files[u"http://maker/up/update.txt"_s] = {};
    result = check();
    EXPECT_EQ(result.reason, u"update.txtの取得に失敗しました。"_s);
    EXPECT_EQ(boxLines(), (QStringList{kNoBytes, kNoOffers}));
    EXPECT_EQ(updaterStates(), u"off"_s);
    EXPECT_EQ(lines(u"window"_s), QStringList());
    EXPECT_EQ(bytesOf(offersFile()), "[Release]\r\nversion=9\r\n");
}

TEST_F(Update, AnArchiveThatDoesNotComeSwitchesTheUpdaterOff) {
    offerRelease();
    web.files.remove(u"http://maker/v.lzh"_s);
    shown.answers = {u"yes"_s};
    EXPECT_EQ(check().reason, u"ダウンロードに失敗しました。 サーバー名が認識出来ません。"_s);
    EXPECT_EQ(boxLines(), (QStringList{kOffered.arg(u"yes"_s, u"2.2.1"_s), kNoConnection, kFailed}));
    EXPECT_EQ(updaterStates(), u"on off"_s);
    expectEnding();

    offerRelease(u"v.lzh"_s, "");
    shown.answers = {u"yes"_s};
    EXPECT_FALSE(check().isDone);
    EXPECT_EQ(boxLines(), (QStringList{kOffered.arg(u"yes"_s, u"2.2.1"_s), kNoBytes, kFailed}));
    EXPECT_EQ(updaterStates(), u"on off"_s);
    EXPECT_FALSE(exists(path(u"v.lzh"_s)));
}

TEST_F(Update, ANameThatCouldTouchAnotherFileIsAFailedDownload) {
    writeFile(path(u"Mine.txt"_s), "mine");
    for (const QString& name : {u""_s,
                                u"../v.lzh"_s,
                                u"..\\v.lzh"_s,
                                u"UserData/diary.mdb"_s,
                                u"UserData\\diary.mdb"_s,
                                u"/tmp/v.lzh"_s,
                                u".."_s,
                                u"."_s,
                                u"a..b"_s,
                                u"UserData"_s,
                                u"userdata"_s,
                                u"Mine.txt"_s,
                                u"mine.TXT"_s,
                                u"update.txt"_s,
                                u"endpoints.ini"_s,
                                u"update.lst"_s,
                                u"UPDATE.LST"_s,
                                u"Chimer.dll"_s,
                                u"velluser.ini"_s,
                                u"VellUpdater.exe"_s,
                                u"VellUpTmp.exe"_s,
                                u"vellmemo.EXE"_s,
                                u"diary.mdb"_s,
                                u"x.blg"_s,
                                u"v"_s}) {
        offerRelease(name);
        const auto before = contentOf(home.path());
        shown.answers = {u"yes"_s};
        EXPECT_FALSE(check().isDone);
        EXPECT_EQ(boxLines(), (QStringList{kOffered.arg(u"yes"_s, u"2.2.1"_s), kFailed})) << name.toStdString();
        EXPECT_EQ(lines(u"> url "_s).size(), 1) << "the archive is not asked for";
        EXPECT_EQ(lines(u"status: "_s).last(), u"ダウンロード実行中..."_s);
        EXPECT_EQ(updaterStates(), u"on off"_s);
        auto after = contentOf(home.path());
        for (const QString& file : after.keys()) {
            if (!file.endsWith(u"update.txt"_s)) {
                EXPECT_EQ(after[file], before.value(file)) << file.toStdString();
            }
        }
    }
}

TEST_F(Update, AnEncryptedOfferOfAnArchiveThatIsNotEncryptedIsRefused) {
    for (const QString& address : {u"http://maker/v.lzh"_s, u"HTTP://maker/v.lzh"_s, u"//maker/v.lzh"_s}) {
        setEndpoint(keys::kMakerUpdateFolder, u"HTTPS://maker/up/"_s);
        web.files[u"HTTPS://maker/up/update.txt"_s] = {"[Release]\r\nversion=2.2.1\r\nFileName=v.lzh\r\nURL_Full=" +
                                                       address.toLatin1()};
        web.files[address] = {"archive"};
        shown.answers = {u"yes"_s};
        const publish::UpdateResult result = check();
        EXPECT_FALSE(result.isDone);
        EXPECT_TRUE(result.reason.contains(u"暗号化した接続から、暗号化しない接続への転送には応じません。"_s));
        EXPECT_EQ(boxLines(), (QStringList{kOffered.arg(u"yes"_s, u"2.2.1"_s), kFailed})) << address.toStdString();
        EXPECT_EQ(lines(u"> url "_s).size(), 1) << "the archive is not asked for";
        EXPECT_FALSE(exists(path(u"v.lzh"_s)));
        expectEnding();
    }
}

TEST_F(Update, AnEncryptedArchiveMayStandInAnyOffer) {
    for (const QString& folder : {u"https://maker/up/"_s, u"http://maker/up/"_s}) {
        setEndpoint(keys::kMakerUpdateFolder, folder);
        web.files[folder + u"update.txt"_s] = {
            "[Release]\r\nversion=2.2.1\r\nFileName=v.lzh\r\nURL_Full=Https://maker/v.lzh"};
        web.files[u"Https://maker/v.lzh"_s] = {"archive"};
        shown.answers = {u"yes"_s};
        check();
        EXPECT_EQ(bytesOf(path(u"v.lzh"_s)), "archive");
    }
}

TEST_F(Update, ANameOnceSavedIsNoExcuseForAnotherKind) {
    writeFile(path(u"update.lst"_s), "Chimer.dll\r\n");
    writeFile(path(u"Chimer.dll"_s), "mine");
    offerRelease(u"Chimer.dll"_s);
    shown.answers = {u"yes"_s};
    EXPECT_FALSE(check().isDone);
    EXPECT_EQ(bytesOf(path(u"Chimer.dll"_s)), "mine");
}

TEST_F(Update, AStoppedDownloadIsToldOnceAndSwitchesTheUpdaterOff) {
    offerRelease(u"v.lzh"_s, QByteArray(5000, 'x'));
    bool isStopWanted = false;
    calls.isStopWanted = [&] { return isStopWanted; };
    shown.onPump = [&] { isStopWanted = true; };
    shown.answers = {u"yes"_s};
    const publish::UpdateResult result = check();
    EXPECT_FALSE(result.isDone);
    EXPECT_EQ(result.reason, u"ダウンロードを中止しました。"_s);
    EXPECT_EQ(boxLines(), QStringList{kOffered.arg(u"yes"_s, u"2.2.1"_s)});
    EXPECT_EQ(updaterStates(), u"on off"_s);
    EXPECT_FALSE(exists(path(u"v.lzh"_s)));
    expectEnding();
}

TEST_F(Update, AnArchiveIsRememberedInTurnWithOtherPrograms) {
    offerRelease();
    shown.answers = {u"yes"_s};
    EXPECT_TRUE(waitsForTurn(session.MyPath, [&](const std::function<void()>& begin) {
        int files = 0;
        web.onClose = [&files, begin] {
            if (++files == 2)
                begin();
        };
        check();
    }));
}

TEST_F(Update, ALinkToNowhereIsNotFollowed) {
    QFile::link(path(u"nowhere"_s), path(u"link.lzh"_s));
    offerRelease(u"link.lzh"_s);
    shown.answers = {u"yes"_s};
    check();
    EXPECT_EQ(boxLines().last(), kFailed);
    EXPECT_FALSE(exists(path(u"nowhere"_s)));
}

TEST_F(Update, AnEarlierArchiveIsReplacedAndKeptWhenNothingComes) {
    for (const auto& [name, bytes] : {std::pair(u"v1.lzh"_s, "one"), {u"次.lzh"_s, "two"}, {u"v1.lzh"_s, "three"}}) {
        offerRelease(name, bytes);
        shown.answers = {u"yes"_s};
        check();
        EXPECT_EQ(bytesOf(path(name)), bytes);
    }
    offerRelease(u"次.lzh"_s, "");
    shown.answers = {u"yes"_s};
    check();
    EXPECT_EQ(boxLines().last(), kFailed);
    EXPECT_EQ(bytesOf(path(u"次.lzh"_s)), "two");
}

TEST_F(Update, AnArchiveThatCanNotBeRememberedDoesNotBarTheNextOne) {
    offerRelease();
    const QString list = path(u"update.lst"_s);
    web.onClose = [&] { QDir().mkpath(list); };
    shown.answers = {u"yes"_s};
    EXPECT_TRUE(failureOf([&] { check(); }).contains(u"update.lst"_s));
    EXPECT_FALSE(exists(path(u"v.lzh"_s)));
    web.onClose = nullptr;
    QDir().rmdir(list);
    shown.answers = {u"yes"_s};
    check();
    EXPECT_EQ(bytesOf(path(u"v.lzh"_s)), "archive");
}

TEST_F(Update, WithoutTheUpdaterTheArchiveStays) {
    offerRelease();
    shown.answers = {u"yes"_s};
    EXPECT_EQ(check().reason, u"Velloria Updaterが見つかりません。"_s);
    EXPECT_EQ(boxLines(), (QStringList{kOffered.arg(u"yes"_s, u"2.2.1"_s), kComplete, kNoUpdater}));
    EXPECT_EQ(updaterStates(), u"on"_s);
    EXPECT_EQ(bytesOf(path(u"v.lzh"_s)), "archive");
    expectEnding();
}

TEST_F(Update, TheUpdaterMayWait) {
    offerRelease();
    putUpdater("#!/bin/sh\necho x > \"${0%/*}/mark\"\n");
    putLibrary();
    shown.answers = {u"yes"_s, u"no"_s};
    EXPECT_TRUE(check().isDone);
    EXPECT_EQ(boxLines(), (QStringList{kOffered.arg(u"yes"_s, u"2.2.1"_s), kComplete, kLaunch.arg(u"no"_s)}));
    EXPECT_EQ(updaterStates(), u"on"_s);
    EXPECT_FALSE(exists(path(u"VellUpTmp.exe"_s)));
    expectEnding();
}

TEST_F(Update, WithoutTheArchiveLibraryNothingIsLaunched) {
    offerRelease();
    putUpdater();
    writeFile(path(u"VellUpTmp.exe"_s), "old");
    shown.answers = {u"yes"_s, u"yes"_s};
    EXPECT_FALSE(check().isDone);
    EXPECT_EQ(boxLines().mid(2), (QStringList{kLaunch.arg(u"yes"_s), kNoLibrary}));
    EXPECT_EQ(updaterStates(), u"on"_s);
    EXPECT_EQ(bytesOf(path(u"VellUpTmp.exe"_s)), "old");
    expectEnding();
}

TEST_F(Update, AnUpdaterThatCanNotBeStartedLeavesTheProgramRunning) {
    offerRelease();
    putUpdater("MZ not for here");
    putLibrary();
    shown.answers = {u"yes"_s, u"yes"_s};
    const QString failure = failureOf([&] { check(); });
    EXPECT_TRUE(failure.contains(u"起動できません"_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(u"VellUpTmp.exe"_s));
    EXPECT_EQ(updaterStates(), u"on"_s);
    expectEnding();
}

TEST_F(Update, TheCopyIsFreshAndMayBeExecutedWhateverTheModeOfTheOriginal) {
    const WorkingFolder working;
    putLibrary();
    writeFile(path(u"VellUpTmp.exe"_s), "#!/bin/sh\necho old > \"${0%/*}/mark\"\n");
    QFile::setPermissions(path(u"VellUpTmp.exe"_s), QFile::ReadOwner);
    putUpdater("#!/bin/sh\necho new > \"${0%/*}/mark\"\n");
    QFile::setPermissions(path(u"VellUpdater.exe"_s), QFile::ReadOwner);
    vellUpdater();
    EXPECT_EQ(waitFor(u"mark"_s), "new\n");
    EXPECT_EQ(modeOf(path(u"VellUpdater.exe"_s)) & 0777, 0400U);
    EXPECT_EQ(modeOf(path(u"VellUpTmp.exe"_s)) & 0700, 0700U);
}

TEST_F(Update, VellUpdaterWritesItsVersionIntoTheWorkingFolderAndEndsTheProgram) {
    putLibrary();
    putUpdater("#!/bin/sh\ncp update.txt \"${0%/*}/mark\"\n");
    const WorkingFolder working;
    vellUpdater();
    EXPECT_EQ(waitFor(u"mark"_s), "[CurrentVersion]\r\nversion=2.2.0\r\n");
    EXPECT_FALSE(exists(offersFile()));
    EXPECT_EQ(transcript(), u"program ends"_s);
}

TEST_F(Update, VellUpdaterWithoutItsLibraryEndsNothing) {
    putUpdater("#!/bin/sh\necho x > \"${0%/*}/mark\"\n");
    const WorkingFolder working;
    vellUpdater();
    EXPECT_EQ(transcript(), u"box "_s + kNoLibrary);
    EXPECT_EQ(core::ReadIni(working.filePath(u"update.txt"_s), u"CurrentVersion"_s, u"version"_s), u"2.2.0"_s)
        << "written first";
    EXPECT_FALSE(exists(path(u"VellUpTmp.exe"_s)));
    writeFile(working.filePath(u"unlha32.dll"_s), ""); // the working folder counts, the case of letters does not
    vellUpdater();
    EXPECT_EQ(transcript(), u"program ends"_s);
    EXPECT_EQ(waitFor(u"mark"_s), "x\n");
}

TEST_F(Update, VellUpdaterWithoutAnUpdaterFailsAndStays) {
    putLibrary();
    const WorkingFolder working;
    const QString failure = failureOf([&] { vellUpdater(); });
    EXPECT_TRUE(failure.contains(u"VellUpdater.exe"_s)) << failure.toStdString();
    EXPECT_EQ(transcript(), u""_s);
}

TEST_F(Update, WithoutAnUpdateFolderThereIsNothingNewer) {
    setEndpoint(keys::kMakerUpdateFolder, u""_s);
    EXPECT_TRUE(check().isDone);
    EXPECT_EQ(transcript(), textOf(R"(
browser stops
navigate
pointer: hourglass
status: Sorry,New Version is not released!
box information Velloria ok: 確認しましたが、新しいバージョンはありませんでした。
updater off
> close session
pointer: default)"));
    putLibrary();
    putUpdater();
    vellUpdater();
    EXPECT_EQ(boxLines(), QStringList{kNothingNewer});
    EXPECT_EQ(updaterStates(), u"off"_s);
    EXPECT_FALSE(exists(path(u"VellUpTmp.exe"_s)));
}

TEST_F(Update, AFolderWithoutItsSlashGetsOne) {
    setEndpoint(keys::kMakerUpdateFolder, u"http://maker/up"_s);
    offer(u"[Release] / version=1"_s);
    check();
    EXPECT_EQ(lines(u"> url "_s), QStringList{u"http://maker/up/update.txt"_s});
}

TEST_F(Update, OffersThatAreTooLongFailClearlyAndLeaveTheOldOnes) {
    writeFile(offersFile(), "old");
    web.files[u"http://maker/up/update.txt"_s] = {QByteArray(2 * publish::kLongestText, 'x')};
    const QString failure = failureOf([&] { check(); });
    EXPECT_TRUE(failure.contains(u"大きすぎる"_s)) << failure.toStdString();
    EXPECT_EQ(bytesOf(offersFile()), "old");
    EXPECT_EQ(updaterStates(), u"off"_s);
    expectEnding();
}

TEST_F(Update, OffersOfAllKindsOfBytesOfferNothing) {
    for (const QByteArray& bytes : {QByteArray("\xff\xfe[\0R\0", 6), QByteArray(5000, '\0'), QByteArray(5000, '['),
                                    QByteArray("<html>404</html>")}) {
        web.files[u"http://maker/up/update.txt"_s] = {bytes};
        check();
        EXPECT_EQ(boxLines(), QStringList{kNothingNewer}) << bytes.first(6).toHex().toStdString();
        EXPECT_EQ(offered(u"version"_s), u"2.2.0"_s);
    }
}

TEST_F(Update, ADiskThatRefusesEndsTheCheckInOrder) {
    offerRelease();
    QDir(home.path()).mkdir(u"update.txt"_s);
    EXPECT_FALSE(failureOf([&] { check(); }).isEmpty());
    EXPECT_EQ(updaterStates(), u"off"_s);
    expectEnding();
}

TEST_F(Update, TheEndOfTheProgramEndsTheCheckWithoutABox) {
    offerRelease(u"v.lzh"_s, QByteArray(5000, 'x'));
    bool isEnding = false;
    calls.isProgramEnding = [&] { return isEnding; };
    shown.onPump = [&] { isEnding = true; };
    shown.answers = {u"yes"_s};
    const publish::UpdateResult result = check();
    EXPECT_FALSE(result.isDone);
    EXPECT_TRUE(result.reason.contains(u"終了するため"_s));
    EXPECT_EQ(boxLines(), QStringList{kOffered.arg(u"yes"_s, u"2.2.1"_s)});
    EXPECT_EQ(updaterStates(), u"on off"_s);
    EXPECT_FALSE(exists(path(u"v.lzh"_s)));
    EXPECT_EQ(lines(u"status: "_s).last(), u"エラー："_s + result.reason);
    EXPECT_EQ(lines(u"program"_s), QStringList());
}

} // namespace
} // namespace velloria::tests
