#include "browser/histories.h"

#include "core/keys.h"
#include "core/setting.h"
#include "core/settings_change.h"
#include "platform/file_write.h"
#include "support/test_home.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace velloria::browser;

namespace velloria::tests {
namespace {

class HistoryFiles : public TestHome {
protected:
    void turnOn(const core::Setting& key) { core::writeQuietly(session, key, u"1"_s); }
    QString addressFile() const { return session.UserPath + u"URLHist.txt"_s; }
    QString wordFile() const { return session.UserPath + u"FindHist.txt"_s; }
    Histories histories() const { return Histories(session); }
};

TEST_F(HistoryFiles, AreNeitherReadNorWrittenUnlessTheyAreKept) {
    writeFile(addressFile(), "a\r\n");
    writeFile(wordFile(), "b\r\n");
    EXPECT_EQ(histories().addresses(), QStringList());
    EXPECT_EQ(histories().words(), QStringList());
    histories().keepAddresses({u"x"_s});
    histories().keepWords({u"y"_s});
    EXPECT_EQ(bytesOf(addressFile()), "a\r\n");
    EXPECT_EQ(bytesOf(wordFile()), "b\r\n");
}

TEST_F(HistoryFiles, ReadByOneKeyAreWrittenByTheOther) {
    writeFile(addressFile(), "a\r\n");
    writeFile(wordFile(), "b\r\n");
    turnOn(core::keys::kUrlHistory);
    EXPECT_EQ(histories().addresses(), QStringList{u"a"_s});
    EXPECT_EQ(histories().words(), QStringList());
    histories().keepAddresses({u"x"_s});
    histories().keepWords({u"y"_s});
    EXPECT_EQ(bytesOf(addressFile()), "a\r\n");
    EXPECT_EQ(bytesOf(wordFile()), "y\r\n");
}

TEST_F(HistoryFiles, ReadByTheOtherKeyAreWrittenByTheOne) {
    writeFile(addressFile(), "a\r\n");
    writeFile(wordFile(), "b\r\n");
    turnOn(core::keys::kFindHistory);
    EXPECT_EQ(histories().addresses(), QStringList());
    EXPECT_EQ(histories().words(), QStringList{u"b"_s});
    histories().keepAddresses({u"x"_s});
    histories().keepWords({u"y"_s});
    EXPECT_EQ(bytesOf(addressFile()), "x\r\n");
    EXPECT_EQ(bytesOf(wordFile()), "b\r\n");
}

TEST_F(HistoryFiles, OfAKeyThatIsNoOneAreOff) {
    for (const QString& value : {u"0"_s, u"2"_s, u"-1"_s, u""_s, u"x"_s, u"99999"_s}) {
        core::writeQuietly(session, core::keys::kUrlHistory, value);
        writeFile(addressFile(), "a\r\n");
        EXPECT_EQ(histories().addresses(), QStringList()) << value.toStdString();
    }
}

TEST_F(HistoryFiles, AreReadToThirtyLinesAndWrittenWhole) {
    turnOn(core::keys::kUrlHistory);
    turnOn(core::keys::kFindHistory);
    QByteArray lines;
    for (int i = 1; i <= 31; ++i)
        lines += QByteArray::number(i) + "\r\n";
    writeFile(addressFile(), lines);
    const QStringList read = histories().addresses();
    ASSERT_EQ(read.size(), 30);
    EXPECT_EQ(read.first(), u"1"_s);
    EXPECT_EQ(read.last(), u"30"_s);
    histories().keepAddresses(read + QStringList{u"x"_s, u"y"_s});
    EXPECT_EQ(bytesOf(addressFile()).count('\n'), 32);
    EXPECT_TRUE(bytesOf(addressFile()).endsWith("30\r\nx\r\ny\r\n"));
}

TEST_F(HistoryFiles, KeepAnEmptyLineAndEndWithEitherLineEnd) {
    turnOn(core::keys::kFindHistory);
    writeFile(wordFile(), "\r\na\nab");
    EXPECT_EQ(histories().words(), (QStringList{u""_s, u"a"_s, u"ab"_s}));
}

TEST_F(HistoryFiles, StayAsTheyAreForAnEmptyList) {
    turnOn(core::keys::kUrlHistory);
    turnOn(core::keys::kFindHistory);
    writeFile(addressFile(), "a\r\n");
    histories().keepAddresses({});
    histories().keepWords({});
    EXPECT_EQ(bytesOf(addressFile()), "a\r\n");
    EXPECT_FALSE(exists(wordFile()));
}

TEST_F(HistoryFiles, HoldWhatTheCodePageLacks) {
    turnOn(core::keys::kUrlHistory);
    turnOn(core::keys::kFindHistory);
    const QStringList words{u"日記"_s, u"café"_s, u"😀"_s};
    histories().keepWords(words);
    EXPECT_EQ(bytesOf(wordFile()), "\x93\xFA\x8B\x4C\r\ncaf&#233;\r\n&#128512;\r\n");
    EXPECT_EQ(histories().words(), words);
}

TEST_F(HistoryFiles, OfAHundredThousandLinesGiveThirty) {
    turnOn(core::keys::kUrlHistory);
    writeFile(addressFile(), QByteArray("line\r\n").repeated(100000));
    EXPECT_EQ(histories().addresses().size(), 30);
}

TEST_F(HistoryFiles, WithoutALineEndAreReadToAMebibyte) {
    turnOn(core::keys::kUrlHistory);
    writeFile(addressFile(), QByteArray(5 * 1024 * 1024, 'x'));
    ASSERT_EQ(histories().addresses().size(), 1);
    EXPECT_LE(histories().addresses().front().size(), 1024 * 1024);
}

TEST_F(HistoryFiles, ThatCantBeReadOrWrittenStopNobody) {
    turnOn(core::keys::kUrlHistory);
    turnOn(core::keys::kFindHistory);
    ASSERT_TRUE(QDir().mkdir(addressFile()));
    EXPECT_EQ(histories().addresses(), QStringList());
    EXPECT_NO_THROW(histories().keepAddresses({u"a"_s}));
}

TEST_F(HistoryFiles, ThatCouldNotBeReadAreNotReplaced) {
    turnOn(core::keys::kUrlHistory);
    turnOn(core::keys::kFindHistory);
    ASSERT_TRUE(QFile::link(u"/proc/self/mem"_s, addressFile())); // there, and its first bytes are an error
    Histories read(session);
    EXPECT_EQ(read.addresses(), QStringList());
    read.keepAddresses({u"x"_s});
    histories().keepAddresses({u"x"_s});
    EXPECT_EQ(QFileInfo(addressFile()).symLinkTarget(), u"/proc/self/mem"_s);

    // Readable again when the window closes: what it holds was never in the box.
    platform::removeFile(addressFile());
    writeFile(addressFile(), "a\r\nb\r\n");
    read.keepAddresses({u"x"_s});
    EXPECT_EQ(bytesOf(addressFile()), "a\r\nb\r\n");
    EXPECT_EQ(read.addresses(), (QStringList{u"a"_s, u"b"_s}));
    read.keepAddresses({u"x"_s});
    EXPECT_EQ(bytesOf(addressFile()), "x\r\n");
}

TEST_F(HistoryFiles, WaitForNoPipe) {
    turnOn(core::keys::kFindHistory);
    turnOn(core::keys::kUrlHistory);
    ASSERT_EQ(::mkfifo(QFile::encodeName(wordFile()).constData(), 0600), 0);
    EXPECT_EQ(histories().words(), QStringList());
    histories().keepWords({u"x"_s});
    EXPECT_TRUE(QFileInfo(wordFile()).exists() && !QFileInfo(wordFile()).isFile());
}

TEST_F(HistoryFiles, GoAfterAQuestionWhereverTheyLie) {
    const auto ask = [&](const QString& answer, auto clear) {
        desk.answers.append(answer);
        return clear(run);
    };
    writeFile(addressFile(), "http://a.example/\r\n");
    writeFile(wordFile(), "word\r\n");
    session.DataPath = path(u"elsewhere/"_s);
    platform::makeFolder(path(u"elsewhere"_s));
    const QString other = session.DataPath + u"FindHist.txt"_s;
    writeFile(other, "word\r\n");
    desk.events = {};
    EXPECT_EQ(ask(u"no"_s, clearAddresses), platform::Outcome::Refused);
    EXPECT_EQ(ask(u"no"_s, clearWords), platform::Outcome::Refused);
    EXPECT_EQ(boxes(), (QStringList{u"question: URL履歴を消去しますか？"_s, u"question: 検索履歴を消去しますか？"_s}));
    EXPECT_TRUE(exists(addressFile()) && exists(wordFile()) && exists(other));
    EXPECT_EQ(ask(u"yes"_s, clearAddresses), platform::Outcome::Done);
    EXPECT_FALSE(exists(addressFile()));
    EXPECT_TRUE(exists(wordFile()) && exists(other));
    EXPECT_EQ(ask(u"yes"_s, clearWords), platform::Outcome::Done);
    EXPECT_FALSE(exists(wordFile()) || exists(other));
    EXPECT_EQ(ask(u"yes"_s, clearWords), platform::Outcome::Done) << "nothing is there any more";
}

} // namespace
} // namespace velloria::tests
