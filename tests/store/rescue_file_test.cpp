#include "store/rescue_file.h"

#include "core/ini.h"
#include "core/path_names.h"
#include "platform/file_write.h"
#include "store/entry_line.h"
#include "support/faulty_disk.h"
#include "support/test_home.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::Entry;
using store::RescueFile;

class Rescue : public TestHome {
protected:
    QString file() const { return session.UserPath + u"rescue.jsonl"_s; }
    QString damaged() const { return session.UserPath + u"rescue.damaged"_s; }
    RescueFile rescue() const { return RescueFile(run); }

    void keep(const QString& title, const QString& contents = u""_s) {
        rescue().keep({entryWith(title, contents)}, u"削除"_s);
    }
    static Entry entryWith(const QString& title, const QString& contents = u""_s) {
        Entry entry = entryOf(u"2004/05/06"_s, title);
        entry.number = 1;
        entry.contents = contents;
        return entry;
    }
    QList<QByteArray> lines() const {
        QList<QByteArray> lines = bytesOf(file()).split('\n');
        EXPECT_EQ(lines.takeLast(), QByteArray()) << "the last line has no end";
        return lines;
    }
    QStringList titles() const {
        QStringList titles;
        for (const QByteArray& line : lines())
            titles += store::parseEntryLine(line).entry.title;
        return titles;
    }
    static ino_t nodeOf(const QString& file) {
        struct stat status {};
        ::stat(QFile::encodeName(file).constData(), &status);
        return status.st_ino;
    }
};

TEST_F(Rescue, KeepsALineThatEntryPutTakes) {
    Entry entry = entryWith(u"題 \"1\""_s, u"a\r\nb😀"_s);
    entry.extend = QString();
    entry.isPrivate = true;
    entry.importMark = u"m"_s;
    rescue().keep({entry}, u"上書き"_s);
    ASSERT_EQ(lines().size(), 1);
    const store::EntryLine read = store::parseEntryLine(lines().front());
    EXPECT_TRUE(read.isRescued);
    EXPECT_EQ(read.entry.title, entry.title);
    EXPECT_EQ(read.entry.contents, entry.contents);
    EXPECT_TRUE(read.entry.extend.isNull());
    EXPECT_TRUE(read.entry.isPrivate);
    EXPECT_EQ(read.entry.importMark, u"m"_s);
    const QJsonObject json = QJsonDocument::fromJson(lines().front()).object();
    EXPECT_EQ(json[u"Reason"_s], u"上書き"_s);
    EXPECT_EQ(json[u"Time"_s], u"2004/05/06 08:05:09"_s);
}

TEST_F(Rescue, IsForItsOwnerAlone) {
    const mode_t mask = ::umask(0);
    keep(u"a"_s);
    ::umask(mask);
    EXPECT_EQ(modeOf(file()), 0600U);
}

TEST_F(Rescue, IsOnlyAppendedTo) {
    keep(u"a"_s);
    const QByteArray first = bytesOf(file());
    keep(u"b"_s);
    EXPECT_TRUE(bytesOf(file()).startsWith(first));
    EXPECT_EQ(titles(), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(modeOf(file()), 0600U);
}

TEST_F(Rescue, IsNotEvenMadeWhenItIsOff) {
    core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"Rescue"_s, u"0"_s);
    keep(u"a"_s);
    EXPECT_FALSE(exists(file()));
    core::DeleteIniKey(session.DiaryIniFile, u"ALL"_s, u"Rescue"_s);
    keep(u"b"_s);
    core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"Rescue"_s, u"1"_s);
    keep(u"c"_s);
    EXPECT_EQ(titles(), (QStringList{u"b"_s, u"c"_s}));
}

TEST_F(Rescue, LosesItsOldestLinesAboveTwentyMegabytes) {
    const QString text(1'000'000, u'x');
    for (int i = 0; i < 25; ++i)
        keep(QString::number(i), text);
    EXPECT_LE(bytesOf(file()).size(), 20'000'000);
    QStringList expected;
    for (qsizetype i = 25 - titles().size(); i < 25; ++i)
        expected += QString::number(i);
    EXPECT_EQ(titles(), expected);
    EXPECT_GE(expected.size(), 18);
    EXPECT_EQ(modeOf(file()), 0600U);
}

TEST_F(Rescue, OfOneChangeKeepsAllLinesHoweverManyThereAre) {
    const QString text(1'000'000, u'x');
    keep(u"old"_s, text);
    store::RescueFile change = rescue();
    for (int i = 0; i < 30; ++i)
        change.keep({entryWith(QString::number(i), text)}, u"削除"_s);
    EXPECT_EQ(titles().size(), 31);
    keep(u"next"_s);
    EXPECT_LE(bytesOf(file()).size(), 20'000'000);
    EXPECT_EQ(titles().last(), u"next"_s);
}

TEST_F(Rescue, TakesTheLinesOfARefusedChangeBackFromAFullFile) {
    const QString text(1'000'000, u'x');
    for (int i = 0; i < 19; ++i)
        keep(QString::number(i), text);
    store::RescueFile change = rescue();
    change.keep({entryWith(u"a"_s, text)}, u"削除"_s);
    change.keep({entryWith(u"b"_s, text)}, u"削除"_s);
    EXPECT_EQ(titles().last(), u"b"_s);
    change.forget();
    EXPECT_EQ(titles().last(), u"18"_s);
}

TEST_F(Rescue, KeepsALineThatIsLargerThanAllowedByItself) {
    keep(u"old"_s);
    keep(u"huge"_s, QString(21'000'000, u'x'));
    EXPECT_EQ(titles(), QStringList{u"huge"_s});
    keep(u"next"_s);
    EXPECT_EQ(titles(), QStringList{u"next"_s});
}

TEST_F(Rescue, IsNotMovedAsAWholeForEachLineWhenItIsFull) {
    const Entry entry = entryWith(u"old"_s, QString(1000, u'x'));
    const QByteArray line = QJsonDocument(store::toJson(entry)).toJson(QJsonDocument::Compact) + '\n';
    writeFile(file(), line.repeated(20'000'000 / line.size()));
    RescueFile rescue = this->rescue();
    int replacements = 0;
    ino_t node = nodeOf(file());
    for (int i = 0; i < 300; ++i) {
        rescue.keep({entryWith(u"new"_s, QString(1000, u'x'))}, u"上書き"_s);
        replacements += node != nodeOf(file());
        node = nodeOf(file());
    }
    EXPECT_GE(replacements, 1);
    EXPECT_LE(replacements, 3);
    EXPECT_LE(bytesOf(file()).size(), 20'000'000);
    EXPECT_EQ(titles().count(u"new"_s), 300);
}

TEST_F(Rescue, HasNoHalfLineAfterAFullDisk) {
    keep(u"a"_s);
    const QByteArray before = bytesOf(file());
    for (const int size : {100, 10'000, 100'000}) { // less and more than a buffer of the file
        {
            FaultyDisk disk(home.path());
            disk.leaveRoom(50);
            const QString failure = failureOf([&] { keep(u"b"_s, QString(size, u'x')); });
            EXPECT_TRUE(failure.contains(file()) && failure.contains(u"控え"_s)) << failure.toStdString();
        }
        EXPECT_TRUE(bytesOf(file()) == before) << size;
    }
    keep(u"c"_s);
    EXPECT_EQ(titles(), (QStringList{u"a"_s, u"c"_s}));
}

TEST_F(Rescue, OfADiskThatIsFullStopsTheDeletion) {
    // The line holds a quotation mark as two characters, so there is room for the diary's journal alone.
    write(u"2004/05/06"_s, u"dear"_s, QString(200'000, u'"'));
    {
        FaultyDisk disk(home.path());
        disk.leaveRoom(300'000);
        RescueFile rescue = this->rescue();
        const QString failure = failureOf([&] {
            diary().DeleteEntry(u"2004/05/06"_s, 1,
                                [&](const std::vector<Entry>& rows) { rescue.keep(rows, u"削除"_s); });
        });
        EXPECT_TRUE(failure.contains(file())) << failure.toStdString();
    }
    EXPECT_EQ(diary().LoadDay(u"2004/05/06"_s).size(), 1U);
}

TEST_F(Rescue, PassesOverTheHalfLineOfAKilledRun) {
    keep(u"a"_s);
    writeFile(file(), bytesOf(file()) + R"({"Day":"2004/05/06","Titl)");
    keep(u"b"_s);
    EXPECT_EQ(titles(), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(bytesOf(damaged()), "{\"Day\":\"2004/05/06\",\"Titl\n");
    writeFile(file(), "half");
    keep(u"c"_s);
    EXPECT_EQ(titles(), QStringList{u"c"_s});
    EXPECT_EQ(bytesOf(damaged()), "{\"Day\":\"2004/05/06\",\"Titl\nhalf\n");
    EXPECT_EQ(modeOf(damaged()), 0600U);
}

TEST_F(Rescue, LosesNoTextToAFlippedBitAtItsEnd) {
    keep(u"a"_s);
    keep(u"dear"_s);
    const QByteArray whole = bytesOf(file());
    for (qsizetype at = whole.size() - 3; at < whole.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            platform::removeFile(damaged());
            QByteArray flipped = whole;
            flipped[at] = char(flipped[at] ^ (1 << bit));
            writeFile(file(), flipped);
            keep(u"next"_s);
            const QByteArray left = bytesOf(file()) + (exists(damaged()) ? bytesOf(damaged()) : QByteArray());
            EXPECT_EQ(left.count("\"Title\":\"dear\""), 1) << at << ' ' << bit;
            EXPECT_EQ(left.count("\"Title\":\"a\""), 1);
            EXPECT_EQ(left.count("\"Title\":\"next\""), 1);
        }
    }
}

TEST_F(Rescue, OfADamagedEndThatCantBeKeptStopsTheDeletion) {
    write(u"2004/05/06"_s, u"dear"_s);
    writeFile(file(), "half");
    ASSERT_TRUE(QDir().mkdir(damaged()));
    EXPECT_NE(failureOf([&] { keep(u"a"_s); }), QString());
    EXPECT_EQ(bytesOf(file()), "half");
}

TEST_F(Rescue, IsWrittenAndTakenBackByOneProgramAtATime) {
    RescueFile mine = rescue();
    mine.keep({entryWith(u"mine"_s)}, u"削除"_s);
    for (const bool isForgetting : {false, true}) {
        int gate[2];
        ASSERT_EQ(::pipe(gate), 0);
        const pid_t child = ::fork(); // before the lock, which it would hold as well
        if (child == 0) {
            char opened = 0;
            const bool isOpen = ::read(gate[0], &opened, 1) == 1;
            const QString failure = failureOf([&] {
                if (isForgetting)
                    mine.forget();
                else
                    rescue().keep({entryWith(u"other"_s)}, u"削除"_s);
            });
            ::_exit(isOpen && failure.isEmpty() ? 0 : 1);
        }
        std::optional<platform::FolderLock> lock(core::GetParentFolder(file()));
        const QByteArray before = bytesOf(file());
        EXPECT_EQ(::write(gate[1], "x", 1), 1);
        int status = 0;
        for (int i = 0; i < 70; ++i) {
            EXPECT_EQ(::waitpid(child, &status, WNOHANG), 0) << "it did not wait";
            ::usleep(10'000);
        }
        EXPECT_TRUE(bytesOf(file()) == before);
        lock.reset();
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
        ::close(gate[0]);
        ::close(gate[1]);
        if (!isForgetting) {
            EXPECT_EQ(titles(), (QStringList{u"mine"_s, u"other"_s}));
            writeFile(file(), before);
        }
    }
    EXPECT_FALSE(exists(file()));
}

TEST_F(Rescue, KeepsAMarkInFrontOfAText) {
    Entry entry = entryWith(u"\uFEFF題"_s, u"\uFEFF\uFEFF<P>"_s);
    entry.extend = u"\uFEFF"_s;
    entry.genre = u"\uFEFFg"_s;
    rescue().keep({entry}, u"削除"_s);
    EXPECT_EQ(store::toJson(store::parseEntryLine(lines().front()).entry), store::toJson(entry));
}

TEST_F(Rescue, EndsAWholeLastLineThatLacksItsEnd) {
    keep(u"a"_s);
    keep(u"b"_s);
    writeFile(file(), bytesOf(file()).chopped(1));
    keep(u"c"_s);
    EXPECT_EQ(titles(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
}

TEST_F(Rescue, TakesBackTheLinesOfARefusedChange) {
    keep(u"a"_s);
    const QByteArray before = bytesOf(file());
    RescueFile rescue = this->rescue();
    rescue.forget();
    EXPECT_TRUE(bytesOf(file()) == before);
    rescue.keep({entryWith(u"b"_s)}, u"削除"_s);
    rescue.keep({entryWith(u"c"_s)}, u"削除"_s);
    rescue.forget();
    EXPECT_TRUE(bytesOf(file()) == before);
}

TEST_F(Rescue, ThatHeldNothingElseIsGoneAgain) {
    RescueFile rescue = this->rescue();
    rescue.keep({entryWith(u"a"_s)}, u"削除"_s);
    rescue.forget();
    EXPECT_FALSE(exists(file()));
}

TEST_F(Rescue, ThatLiesBehindALinkKeepsTheLink) {
    writeFile(path(u"elsewhere.jsonl"_s), {});
    ASSERT_TRUE(QFile::link(path(u"elsewhere.jsonl"_s), file()));
    RescueFile rescue = this->rescue();
    rescue.keep({entryWith(u"a"_s)}, u"削除"_s);
    rescue.forget();
    EXPECT_TRUE(QFileInfo(file()).isSymLink());
    EXPECT_EQ(bytesOf(path(u"elsewhere.jsonl"_s)), "");
    keep(u"b"_s);
    EXPECT_EQ(titles(), QStringList{u"b"_s});
}

TEST_F(Rescue, TakesNoLineOfAnotherProgramBack) {
    RescueFile rescue = this->rescue();
    rescue.keep({entryWith(u"mine"_s)}, u"削除"_s);
    keep(u"other"_s);
    rescue.forget();
    EXPECT_EQ(titles(), (QStringList{u"mine"_s, u"other"_s}));
    rescue.keep({entryWith(u"mine again"_s)}, u"削除"_s);
    rescue.forget();
    EXPECT_EQ(titles().first(2), (QStringList{u"mine"_s, u"other"_s}));
}

TEST_F(Rescue, IsRefusedAloudWhereItCantBeWritten) {
    ASSERT_TRUE(QDir().mkdir(file()));
    const QString failure = failureOf([&] { keep(u"a"_s); });
    EXPECT_TRUE(failure.contains(file())) << failure.toStdString();
}

} // namespace
} // namespace velloria::tests
