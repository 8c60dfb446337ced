#include "publish/download_http.h"

#include "publish/update_home.h"

#include <QDir>
#include <QFileInfo>
#include <QThread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using publish::DownloadMode;
using publish::ShowProgress;

class Download : public UpdateHome {
protected:
    qint64 run(DownloadMode mode, ShowProgress showProgress = ShowProgress::No) {
        forget();
        web.openSession();
        return download.DownloadHTTP(kUrl, file, mode, showProgress);
    }
    /// The same; what it throws, in one line.
    QString failureOfRun(DownloadMode mode, ShowProgress showProgress = ShowProgress::No) {
        return failureOf([&] { run(mode, showProgress); });
    }
    void serve(const QByteArray& bytes, int error = 0) { web.files[kUrl] = {bytes, error}; }
    QStringList temporaryFiles() const {
        return QDir(home.path()).entryList({u".velltmp-*"_s}, QDir::Files | QDir::Hidden);
    }

    const QString kUrl = u"http://maker/x"_s;
    QString file = path(u"x.txt"_s);
    bool isEnding = false;
    bool isStopWanted = false;
    publish::DownloadHttp download{web, shown, {[this] { return isEnding; }, [this] { return isStopWanted; }}};
};

TEST_F(Download, TextPassesThroughTheCodePageAndGetsNoLineEnd) {
    const std::pair<QByteArray, QByteArray> cases[] = {
        {"a=1\r\nb\n\x95\x5c", "a=1\r\nb\n\x95\x5c"},
        {"a\x81", "a\x81\x45"},     // half a character
        {"\x85\x41!", "\x81\x45!"}, // a pair without a character
        {QByteArray("a\0b", 3), QByteArray("a\0b", 3)},
        {"&#233;\x1a", "&#233;\x1a"},
    };
    for (const auto& [sent, kept] : cases) {
        serve(sent);
        EXPECT_EQ(run(DownloadMode::Text), sent.size());
        EXPECT_EQ(bytesOf(file), kept) << sent.toHex().toStdString();
    }
}

TEST_F(Download, ACharacterOnTheEdgeOfTwoBlocksStaysWhole) {
    const QByteArray text = QByteArray(1023, 'x') + "\x95\x5c" + QByteArray(1022, 'y') + "\x8e\xa6";
    serve(text);
    EXPECT_EQ(run(DownloadMode::Text), text.size());
    EXPECT_EQ(bytesOf(file), text);
}

TEST_F(Download, BinaryKeepsEveryByte) {
    QByteArray bytes;
    for (int i = 0; i < 100000; ++i)
        bytes += char(i * 7 + i / 256);
    serve(bytes);
    EXPECT_EQ(run(DownloadMode::Binary), bytes.size());
    EXPECT_TRUE(bytesOf(file) == bytes);
    serve("\x81");
    EXPECT_EQ(run(DownloadMode::Binary), 1);
    EXPECT_EQ(bytesOf(file), "\x81");
}

TEST_F(Download, WithoutTheWindowTheStatusAloneTellsTheStepsAndNothingElseRuns) {
    serve(QByteArray(3000, 'x'));
    run(DownloadMode::Text);
    EXPECT_EQ(transcript(), textOf(R"(
> open
status: Connectiong to http://maker/x
> url http://maker/x
status: Connected to http://maker/x
status: Downloading http://maker/x
status: Saveing http://maker/x to HOME/x.txt
status: Downloading http://maker/x is Succeeded!
> close url)"));
}

TEST_F(Download, TheWindowCountsEveryBlockAndServesTheUserBehindIt) {
    serve(QByteArray(2500, 'x'));
    EXPECT_EQ(run(DownloadMode::Binary, ShowProgress::Yes), 2500);
    EXPECT_EQ(transcript(), textOf(R"(
> open
status: Connectiong to http://maker/x
> url http://maker/x
status: Connected to http://maker/x
window:  |  | 0/1
window: ダウンロード on HTTP | ダウンロード中... / HOME/x.txt | 0/1
pump
status: Downloading http://maker/x
window: ダウンロード on HTTP | ダウンロード中... / HOME/x.txt / ...1024 bytes received(0.0kbps). | 0/1
pump
window: ダウンロード on HTTP | ダウンロード中... / HOME/x.txt / ...2048 bytes received(0.0kbps). | 0/1
pump
window: ダウンロード on HTTP | ダウンロード中... / HOME/x.txt / ...2500 bytes received(0.0kbps). | 0/1
pump
status: Saveing http://maker/x to HOME/x.txt
window: ダウンロード on HTTP | ダウンロード完了！ / HOME/x.txt / 2500bytes received(0.0kbps). | 0/1
window: ダウンロード on HTTP | ダウンロード完了！ / HOME/x.txt / 2500bytes received(0.0kbps). | 0/1 | OK
status: Downloading http://maker/x is Succeeded!
> close url)"));
    EXPECT_EQ(shown.events[2][u"caption"_s], u"Velloria"_s);
}

TEST_F(Download, TheSpeedIsThatOfTheBytesSinceTheWindowWasShown) {
    serve(QByteArray(1024, 'x'));
    web.onRead = [this] {
        web.onRead = {};
        QThread::msleep(100);
    };
    run(DownloadMode::Binary, ShowProgress::Yes);
    const double speed = shown.texts(u"progress"_s).last().section(u'(', 1).section(u'k', 0, 0).toDouble();
    EXPECT_GT(speed, 0.0);
    EXPECT_LE(speed, 82.0); // 1024 bytes in 100 ms
}

TEST_F(Download, AServerThatIsNotThereIsABoxAndNoWindow) {
    writeFile(file, "old");
    EXPECT_EQ(run(DownloadMode::Binary, ShowProgress::Yes), 0);
    EXPECT_EQ(transcript(), textOf(R"(
> open
status: Connectiong to http://maker/x
> url http://maker/x
status: Can't connect to http://maker/x
box critical Velloria ok: サーバーに接続できませんでした。 / サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。)"));
    EXPECT_EQ(bytesOf(file), "old");
    EXPECT_EQ(download.networkError(), u"サーバー名が認識出来ません。"_s);
}

TEST_F(Download, AFileWithoutBytesIsAFailureAndLeavesTheOldOne) {
    serve("");
    writeFile(file, "old");
    for (const DownloadMode mode : {DownloadMode::Text, DownloadMode::Binary}) {
        EXPECT_EQ(run(mode), 0);
        EXPECT_EQ(transcript(), textOf(R"(
> open
status: Connectiong to http://maker/x
> url http://maker/x
status: Connected to http://maker/x
status: Downloading http://maker/x
status: Saveing http://maker/x to HOME/x.txt
status: Can't download http://maker/x
box critical Velloria ok: update.txtをダウンロードできませんでした。 / サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。
> close url)"));
        EXPECT_EQ(bytesOf(file), "old");
        EXPECT_EQ(download.networkError(), u""_s);
    }
}

TEST_F(Download, TheWindowOfAFailureMayBeClosed) {
    serve("", 12002);
    EXPECT_EQ(run(DownloadMode::Binary, ShowProgress::Yes), 0);
    EXPECT_EQ(
        lines(u"window: ダウンロード on HTTP | "_s).last(),
        u"ダウンロード失敗 / サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。 | 0/1 | OK"_s);
    EXPECT_EQ(download.networkError(), u"タイムアウトです。"_s);
    serve("x");
    EXPECT_EQ(run(DownloadMode::Binary), 1);
    EXPECT_EQ(download.networkError(), u""_s);
}

TEST_F(Download, AFileThatBreaksOffCountsAsWhole) {
    for (const DownloadMode mode : {DownloadMode::Text, DownloadMode::Binary}) {
        serve(QByteArray(1500, 'x'), 12030);
        EXPECT_EQ(run(mode), 1500);
        EXPECT_EQ(bytesOf(file), QByteArray(1500, 'x'));
        EXPECT_EQ(lines(u"box"_s), QStringList());
    }
}

TEST_F(Download, ATextIsHeldUpToABoundAndRefusedBeyondIt) {
    serve(QByteArray(publish::kLongestText, 'x'));
    EXPECT_EQ(run(DownloadMode::Text), publish::kLongestText);
    serve(QByteArray(publish::kLongestText, 'y') + 'y');
    const QString failure = failureOfRun(DownloadMode::Text, ShowProgress::Yes);
    EXPECT_TRUE(failure.contains(u"大きすぎる"_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(kUrl));
    EXPECT_EQ(bytesOf(file), QByteArray(publish::kLongestText, 'x'));
    EXPECT_EQ(lines(u"> "_s).last(), u"close url"_s);
    EXPECT_EQ(lines(u"window: ダウンロード on HTTP | "_s).last(), u"ダウンロード失敗 | 0/1 | OK"_s);
    EXPECT_EQ(lines(u"box"_s), QStringList());
}

TEST_F(Download, AFileThatIsTooLargeIsGivenUpAndTheOldOneStays) {
    /// A file that nobody has to hold.
    class LargeWeb : public MemoryWeb {
    public:
        using MemoryWeb::MemoryWeb;
        qint64 left = publish::kLargestFile + 1;
        QByteArray readUrl() override {
            const QByteArray block(qsizetype(std::min<qint64>(left, 1 << 20)), 'x');
            left -= block.size();
            return block;
        }
    };
    writeFile(file, "old");
    QStringList told;
    LargeWeb large(told);
    large.files[kUrl] = {};
    large.openSession();
    publish::DownloadHttp longDownload(large, shown);
    const QString failure =
        failureOf([&] { longDownload.DownloadHTTP(kUrl, file, DownloadMode::Binary, ShowProgress::No); });
    EXPECT_TRUE(failure.contains(u"大きすぎる"_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(u"536870912"_s)) << failure.toStdString();
    EXPECT_EQ(large.left, 0);
    EXPECT_EQ(bytesOf(file), "old");
    EXPECT_EQ(temporaryFiles(), QStringList());
}

TEST_F(Download, OneThatIsStoppedLeavesTheOldFileAndNoBox) {
    writeFile(file, "old");
    for (const int stopAt : {1, 3}) {
        serve(QByteArray(5000, 'x'));
        int pumps = 0;
        isStopWanted = false;
        shown.onPump = [&] { isStopWanted = ++pumps >= stopAt; };
        EXPECT_EQ(run(DownloadMode::Binary, ShowProgress::Yes), 0);
        EXPECT_TRUE(download.isStopped());
        EXPECT_EQ(pumps, stopAt == 1 ? 2 : 3) << "asked after each piece";
        EXPECT_EQ(lines(u"> "_s).last(), u"close url"_s);
        EXPECT_EQ(lines(u"status: "_s).last(), u"ダウンロードを中止しました。"_s);
        EXPECT_EQ(lines(u"window: ダウンロード on HTTP | "_s).last(),
                  u"ダウンロードを中止しました。 / "_s + file + u" | 0/1 | OK"_s);
        EXPECT_EQ(lines(u"box"_s), QStringList());
        EXPECT_EQ(bytesOf(file), "old");
        EXPECT_EQ(temporaryFiles(), QStringList());
    }
    isStopWanted = true; // what is not shown has no button
    shown.onPump = nullptr;
    serve("new");
    EXPECT_EQ(run(DownloadMode::Binary), 3);
    EXPECT_FALSE(download.isStopped());
    serve("", 12017); // while the server was silent
    EXPECT_EQ(run(DownloadMode::Binary, ShowProgress::Yes), 0);
    EXPECT_TRUE(download.isStopped());
    EXPECT_EQ(lines(u"box"_s), QStringList());
}

TEST_F(Download, OnlyWhatIsUnderWayCanBeStopped) {
    serve("x");
    run(DownloadMode::Binary, ShowProgress::Yes);
    QList<bool> canBeStopped;
    for (const platform::ProgressWindow& window : shown.windows)
        canBeStopped += window.isStopEnabled;
    EXPECT_EQ(canBeStopped, (QList<bool>{false, true, true, true, false}));
}

TEST_F(Download, ABinaryFileGoesToTheDiskBlockByBlockBesideTheOldOne) {
    writeFile(file, "old");
    serve(QByteArray(100 * 1024, 'x'));
    qint64 reads = 0;
    web.onRead = [&] {
        EXPECT_EQ(bytesOf(file), "old");
        // Of what has been given none but the first and the present block may still be on its way.
        if (reads++ > 1) {
            ASSERT_EQ(temporaryFiles().size(), 1);
            EXPECT_GE(QFileInfo(path(temporaryFiles()[0])).size(), (reads - 1) * 1024 - 1024);
        }
    };
    EXPECT_EQ(run(DownloadMode::Binary), 100 * 1024);
    EXPECT_EQ(reads, 101);
    EXPECT_EQ(bytesOf(file), QByteArray(100 * 1024, 'x'));
    EXPECT_EQ(temporaryFiles(), QStringList());
}

TEST_F(Download, ADiskThatRefusesIsThrownAndTheWindowMayBeClosed) {
    serve("x");
    QDir(home.path()).mkdir(u"x.txt"_s);
    for (const DownloadMode mode : {DownloadMode::Text, DownloadMode::Binary}) {
        const QString failure = failureOfRun(mode, ShowProgress::Yes);
        EXPECT_TRUE(failure.contains(file)) << failure.toStdString();
        EXPECT_EQ(lines(u"> "_s).last(), u"close url"_s);
        EXPECT_TRUE(lines(u"window: "_s).last().endsWith(u"| OK"_s));
        EXPECT_EQ(temporaryFiles(), QStringList());
    }
}

TEST_F(Download, TheEndOfTheProgramEndsItWithoutABox) {
    writeFile(file, "old");
    serve(QByteArray(5000, 'x'));
    int pumps = 0;
    shown.onPump = [&] { isEnding = ++pumps == 3; };
    EXPECT_TRUE(failureOfRun(DownloadMode::Binary, ShowProgress::Yes).contains(u"終了するため"_s));
    EXPECT_EQ(pumps, 3);
    EXPECT_EQ(lines(u"> "_s).last(), u"close url"_s);
    isEnding = true; // before the first block, and while the network was waited for
    EXPECT_FALSE(failureOfRun(DownloadMode::Binary).isEmpty());
    EXPECT_FALSE(failureOfRun(DownloadMode::Text).isEmpty());
    serve("");
    EXPECT_FALSE(failureOfRun(DownloadMode::Text).isEmpty());
    web.files.clear();
    EXPECT_FALSE(failureOfRun(DownloadMode::Text).isEmpty());
    EXPECT_EQ(lines(u"box"_s), QStringList());
    EXPECT_EQ(bytesOf(file), "old");
    EXPECT_EQ(temporaryFiles(), QStringList());
}

TEST_F(Download, PercentSignsOfAddressesAndNamesAreShownAsTheyAre) {
    serve("x");
    file = path(u"%1 %2.lzh"_s);
    run(DownloadMode::Binary, ShowProgress::Yes);
    EXPECT_TRUE(shown.texts(u"progress"_s).last().contains(u"%1 %2.lzh\r\n1bytes received("_s));
}

TEST(Speed, IsBitsAMillisecondWithHalvesRoundedAwayFromZero) {
    const std::tuple<qint64, qint64, QString> cases[] = {
        {0, 0, u"0.0"_s},
        {0, 5, u"0.0"_s},
        {1, 0, u"8.0"_s},
        {1, 1, u"8.0"_s},
        {1024, 0, u"8192.0"_s},
        {1, 160, u"0.1"_s}, // 0.05
        {1, 161, u"0.0"_s},
        {1, 32, u"0.3"_s},     // 0.25
        {7, 160, u"0.4"_s},    // 0.35
        {999, 1000, u"8.0"_s}, // 7.992
        {3221225472, 1, u"25769803776.0"_s},
        {1073741824, 86400000, u"99.4"_s},
    };
    for (const auto& [bytes, ms, text] : cases)
        EXPECT_EQ(publish::kilobitsPerSecond(bytes, ms), text) << bytes << ' ' << ms;
}

} // namespace
} // namespace velloria::tests
