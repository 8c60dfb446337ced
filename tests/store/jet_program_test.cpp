#include "store/database_file.h"
#include "store/jet_home.h"
#include "store/jet_record.h"
#include "support/patience.h"

#include <QDeadlineTimer>
#include <QtEndian>

#include <array>
#include <csignal>
#include <numeric>
#include <thread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace std::chrono_literals;
using store::JetDiary;
using store::JetProgram;
using store::OldValue;
namespace jet = store::jet;

/// A program in the place of "velloria-jet" that answers as it is told, then does something.
class JetStub : public JetHome {
protected:
    QByteArray answerOf(const std::vector<jet::Record>& records) const {
        QByteArray bytes;
        for (const jet::Record& record : records)
            bytes += jet::toBytes(record);
        return bytes;
    }
    JetProgram program(const QByteArray& answer, const QString& then = u"exit 0"_s) const {
        writeFile(path(u"answer"_s), answer);
        const QString script = path(u"stub"_s);
        writeFile(script,
                  u"#!/bin/sh\necho $$ >'%1'\ncat '%2'\n%3\n"_s.arg(path(u"id"_s), path(u"answer"_s), then).toUtf8());
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return {script, kPatience};
    }
    JetProgram program(const std::vector<jet::Record>& records, const QString& then = u"exit 0"_s) const {
        return program(answerOf(records), then);
    }
    /// One that says no more behind its answer, and may say nothing for two seconds.
    JetProgram silentProgram(const std::vector<jet::Record>& records) const {
        JetProgram silent = program(records, u"exec sleep 600"_s);
        silent.silence = 2s;
        return silent;
    }
    /// What reading one column of one table comes to: the number of rows, or the refusal.
    QString readWith(const JetProgram& stub) const {
        JetDiary diary(path(u"diary.mdb"_s), stub);
        QString rows;
        const QString failure =
            failureOf([&] { rows = QString::number(rowsOf(diary, u"Contents"_s, {u"Day"_s}).size()); });
        return failure.isEmpty() ? rows : failure;
    }

    static jet::Row row() { return {{OldValue(QByteArray("2004/05/06"))}}; }
};

TEST_F(JetStub, ThatAnswersWellIsRead) {
    EXPECT_EQ(readWith(program({jet::Begin{2}, row(), row(), jet::End{2, 2}})), u"2"_s);
    EXPECT_EQ(readWith(program({jet::Progress{}, jet::Begin{0}, jet::Progress{}, jet::End{0, 0}})), u"0"_s);
    EXPECT_EQ(readWith(program({jet::Begin{1}, row(), jet::End{1, 0}})), u"1"_s) << "not closed properly";
}

TEST_F(JetStub, ThatEndsInTheMiddleIsNoEndOfTheTable) {
    const std::vector<jet::Record> half{jet::Begin{3}, row(), row()};
    const QString counts = u"「Contents」は3件のうち2件まで読めました"_s;
    const auto refusal = [&](const JetProgram& stub) {
        const QString failure = readWith(stub);
        EXPECT_TRUE(failure.contains(counts) && failure.contains(u"変更されていません"_s)) << failure.toStdString();
        return failure;
    };
    refusal(program(half));
    refusal(program(half, u"exit 1"_s));
    refusal(program(half, u"kill -SEGV $$"_s));
    EXPECT_TRUE(refusal(program(half, u"kill -9 $$"_s)).contains(u"シグナル9"_s));
    EXPECT_TRUE(refusal(program(half, u"exit 3"_s)).contains(u"終了コード3"_s));
    EXPECT_TRUE(refusal(silentProgram(half)).contains(u"2秒間進みません"_s));
}

TEST_F(JetStub, ThatEndsWithinARecordIsNoEndOfTheTable) {
    const QByteArray whole = answerOf({jet::Begin{1}, row(), jet::End{1, 1}});
    ASSERT_EQ(readWith(program(whole)), u"1"_s);
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_TRUE(readWith(program(whole.first(length))).contains(u"壊れています"_s)) << length;
}

TEST_F(JetStub, WhoseCountsDisagreeIsRefused) {
    const std::vector<std::vector<jet::Record>> answers{
        {jet::Begin{2}, row(), jet::End{2, 2}},
        {jet::Begin{2}, row(), jet::End{1, 1}},
        {jet::Begin{1}, row(), row(), jet::End{2, 2}},
        {jet::Begin{1}, row(), jet::End{1, 2}},
        {jet::Begin{0}, jet::End{0, 5}},
        {jet::Begin{1}, jet::Row{{OldValue(), OldValue()}}, jet::End{1, 1}},
        {jet::Begin{1}, jet::Row{}, jet::End{1, 1}},
        {jet::End{0, 0}},
        {jet::Version{220}},
        {row(), jet::End{1, 1}},
        {jet::Begin{-1}, jet::End{-1, -1}},
    };
    for (const auto& answer : answers)
        EXPECT_TRUE(readWith(program(answer)).contains(u"壊れています"_s)) << &answer - answers.data();
}

TEST_F(JetStub, ThatEndsBadlyBehindItsLastRecordIsRefused) {
    const std::vector<jet::Record> whole{jet::Begin{1}, row(), jet::End{1, 1}};
    for (const QString& end : {u"exit 1"_s, u"kill -9 $$"_s, u"echo more"_s})
        EXPECT_TRUE(readWith(program(whole, end)).contains(u"壊れています"_s)) << end.toStdString();
    EXPECT_TRUE(readWith(silentProgram(whole)).contains(u"壊れています"_s));
}

TEST_F(JetStub, ThatSaysNonsenseIsRefused) {
    for (const QByteArray& answer : {QByteArray("hello, world, this is no record"), QByteArray(100, '\0'),
                                     QByteArray(100, '\xff'), QByteArray("\1\0\0\0\x9", 5)})
        EXPECT_TRUE(readWith(program(answer)).contains(u"壊れています"_s)) << answer.toHex().toStdString();
}

TEST_F(JetStub, ThatReportsWhatIsMissingOrDamagedIsPassedOn) {
    const auto failure = [this](jet::Fault fault) {
        return readWith(program({jet::Begin{5}, row(), jet::Error{fault, u"理由"_s, 1, 5}}));
    };
    EXPECT_TRUE(failure(jet::Fault::NoTable).contains(u"必要な表がありません"_s));
    EXPECT_TRUE(failure(jet::Fault::NoColumn).contains(u"必要な列がありません"_s));
    EXPECT_TRUE(failure(jet::Fault::NotReadable).contains(u"読み取れません"_s));
    EXPECT_TRUE(failure(jet::Fault::Damaged).contains(u"「Contents」は5件のうち1件まで読めました: 理由"_s));
}

TEST_F(JetStub, ThatIsMissingOrMayNotRunHasItsOwnFailure) {
    JetProgram stub = program({jet::Version{0}});
    QFile::setPermissions(stub.file, QFile::ReadOwner | QFile::WriteOwner);
    for (const QString& file : {stub.file, path(u"no/such/program"_s)}) {
        const QString failure = readWith({file, 1s});
        EXPECT_TRUE(failure.contains(u"読むプログラムを起動できません"_s) && failure.contains(file))
            << failure.toStdString();
        EXPECT_TRUE(failure.contains(u"日記は変更されていません"_s));
    }
    // What the loader does when a library is missing.
    EXPECT_TRUE(readWith(program(QByteArray(), u"exit 127"_s)).contains(u"読むプログラムを起動できません"_s));
}

TEST_F(JetStub, DoesNotOutliveTheDiary) {
    const auto process = [this] { return bytesOf(path(u"id"_s)).trimmed().toInt(); };
    const JetProgram stub = program({jet::Begin{3}, row()}, u"exec sleep 600"_s);
    auto diary = std::make_unique<JetDiary>(path(u"diary.mdb"_s), stub);
    diary->open(u"Contents"_s, {u"Day"_s});
    const pid_t first = process();
    ASSERT_EQ(::kill(first, 0), 0);
    diary->open(u"Contents"_s, {u"Day"_s});
    EXPECT_NE(::kill(first, 0), 0) << "another table, another child";
    const pid_t second = process();
    ASSERT_EQ(::kill(second, 0), 0);
    diary.reset();
    EXPECT_NE(::kill(second, 0), 0);
}

class JetProgramTest : public JetHome {
protected:
    /// The one child of this process.
    static pid_t child() {
        QFile children(u"/proc/self/task/%1/children"_s.arg(::getpid()));
        EXPECT_TRUE(children.open(QIODevice::ReadOnly));
        const QByteArrayList found = children.readAll().trimmed().split(' ');
        EXPECT_EQ(found.size(), 1);
        return found.first().toInt();
    }
    static bool isRunning(pid_t process) {
        QFile status(u"/proc/%1/stat"_s.arg(process));
        return status.open(QIODevice::ReadOnly) && !status.readAll().contains(") Z ");
    }
};

TEST_F(JetProgramTest, KilledInTheMiddleIsDamageAndNotTheEnd) {
    // More than a pipe holds, so that it still has rows to tell when the first one comes.
    JetDiary diary(sample(u"v220"_s));
    ASSERT_EQ(diary.open(u"Contents"_s, {u"Day"_s, u"Contents"_s, u"Contents"_s, u"Contents"_s}), 51);
    ::kill(child(), SIGKILL);
    std::vector<OldValue> row;
    const auto readOn = [&] {
        while (diary.next(row)) {
        }
    };
    for (int turn = 0; turn < 2; ++turn) { // asked again it is no end either
        const QString failure = failureOf(readOn);
        EXPECT_TRUE(failure.contains(u"シグナル9"_s) && failure.contains(u"51件のうち"_s)) << failure.toStdString();
    }
}

TEST_F(JetProgramTest, EndsWithAKilledDiary) {
    const QString id = path(u"id"_s);
    holdsInChild([&]() -> bool {
        JetDiary diary(sample(u"v220"_s));
        diary.open(u"Contents"_s, {u"Day"_s, u"Contents"_s, u"Contents"_s, u"Contents"_s});
        writeFile(id, QByteArray::number(child()));
        ::kill(::getpid(), SIGKILL);
        return true;
    });
    const pid_t process = bytesOf(id).toInt();
    ASSERT_GT(process, 0);
    for (const QDeadlineTimer deadline(kPatience); isRunning(process) && !deadline.hasExpired();)
        std::this_thread::sleep_for(50ms);
    EXPECT_FALSE(isRunning(process));
}

TEST_F(JetProgramTest, HasNoRightsToTheFile) {
    const QString file = path(u"mine.mdb"_s);
    writeFile(file, bytesOf(sample(u"v220"_s)));
    QFile::setPermissions(file, QFile::Permissions());
    EXPECT_TRUE(holdsForNobody([&] {
        const QString failure = failureOf([&] { JetDiary(file).open(u"Contents"_s, {u"Day"_s}); });
        return failure.contains(file) && failure.contains(u"読み取れません"_s);
    }));
}

TEST_F(JetProgramTest, RefusesTablesAndColumnsThatAreNotThere) {
    JetDiary diary(sample(u"v0"_s));
    EXPECT_TRUE(failureOf([&] { diary.open(u"LogDB"_s, {u"LogMonth"_s}); }).contains(u"必要な表がありません"_s));
    EXPECT_TRUE(failureOf([&] { diary.open(u"Contents"_s, {u"Day"_s, u"Genre"_s}); }).contains(u"「Genre」"_s));
    EXPECT_EQ(diary.open(u"CONTENTS"_s, {u"day"_s}), 38) << "and reads on";
}

TEST_F(JetProgramTest, ReadsAFileWithACipherAndAPassword) {
    JetDiary plain(sample(u"v110"_s));
    const QStringList columns{u"Day"_s, u"Title"_s, u"Contents"_s, u"Genre"_s};
    QByteArray bytes = bytesOf(sample(u"v110"_s));
    constexpr int kPage = 4096;
    constexpr quint32 kKey = 0x12345678;
    const auto cipher = [&bytes](qsizetype at, qsizetype length, QByteArray key) {
        std::array<quint8, 256> state;
        std::iota(state.begin(), state.end(), quint8(0));
        for (size_t i = 0, j = 0; i < 256; ++i) {
            j = (j + state[i] + quint8(key[i % 4])) % 256;
            std::swap(state[i], state[j]);
        }
        for (size_t n = 0, i = 0, j = 0; n < size_t(length); ++n) {
            i = (i + 1) % 256;
            j = (j + state[i]) % 256;
            std::swap(state[i], state[j]);
            char& byte = bytes.data()[at + qsizetype(n)];
            byte = char(byte ^ state[(state[i] + state[j]) % 256]);
        }
    };
    const auto bytesOfKey = [](quint32 key) {
        QByteArray four(4, '\0');
        qToLittleEndian(key, four.data());
        return four;
    };
    // The head always has a cipher of its own, which everybody knows.
    const QByteArray headKey = QByteArray::fromHex("c7da396b");
    cipher(0x18, 128, headKey);
    qToLittleEndian(kKey, bytes.data() + 0x3e);
    bytes.replace(0x42, 4, "\x12\x34\x56\x78");
    cipher(0x18, 128, headKey);
    for (quint32 page = 1; page < quint32(bytes.size() / kPage); ++page)
        cipher(page * kPage, kPage, bytesOfKey(kKey ^ page));
    writeFile(path(u"x.mdb"_s), bytes);
    EXPECT_EQ(store::GetDBVersion(path(u"x.mdb"_s)), 110);
    EXPECT_TRUE(rowsOf(path(u"x.mdb"_s), u"Contents"_s, columns) == rowsOf(plain, u"Contents"_s, columns));
}

TEST_F(JetProgramTest, CountsWithoutAnyColumn) {
    EXPECT_EQ(rowsOf(sample(u"v220"_s), u"Memo"_s, {}).size(), 4U);
}

TEST_F(JetProgramTest, ReadsAFileOfAnyName) {
    for (const QString& name : {u"-x.mdb"_s, u"日記 の'\"*.mdb"_s, u"a\nb.mdb"_s}) {
        writeFile(path(name), bytesOf(sample(u"v110"_s)));
        EXPECT_EQ(store::GetDBVersion(path(name)), 110) << name.toStdString();
    }
}

} // namespace
} // namespace velloria::tests
