#include "platform/child_program.h"

#include "platform/failure.h"
#include "support/patience.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace std::chrono_literals;
using platform::ChildProgram;
using platform::Failure;
using Reading = ChildProgram::Reading;

std::unique_ptr<ChildProgram> shell(const QString& script) {
    return std::make_unique<ChildProgram>(u"/bin/sh"_s, QStringList{u"-c"_s, script});
}

TEST(AChildProgram, IsReadByTheByteAndTellsItsEnd) {
    const auto child = shell(u"printf 'abcdef'; exit 7"_s);
    QByteArray bytes;
    EXPECT_EQ(child->read(2, kPatience, bytes), Reading::Whole);
    EXPECT_EQ(bytes, "ab");
    EXPECT_EQ(child->read(3, kPatience, bytes), Reading::Whole);
    EXPECT_EQ(bytes, "cde");
    EXPECT_EQ(child->read(3, kPatience, bytes), Reading::End);
    EXPECT_EQ(bytes, "f");
    const auto end = child->waitForEnd(kPatience);
    ASSERT_TRUE(end);
    EXPECT_FALSE(end->bySignal);
    EXPECT_EQ(end->code, 7);
}

TEST(AChildProgram, TellsTheSignalThatEndedIt) {
    const auto child = shell(u"kill -SEGV $$"_s);
    const auto end = child->waitForEnd(kPatience);
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->bySignal);
    EXPECT_EQ(end->code, SIGSEGV);
}

TEST(AChildProgram, ThatIsSilentIsNotWaitedForLonger) {
    const auto child = shell(u"printf ab; exec sleep 600"_s);
    QByteArray bytes;
    ASSERT_EQ(child->read(1, kPatience, bytes), Reading::Whole);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(child->read(2, 300ms, bytes), Reading::Silent);
    EXPECT_EQ(bytes, "b");
    EXPECT_GE(timer.elapsed(), 290);
    EXPECT_LT(timer.elapsed(), kPatienceMs);
    EXPECT_FALSE(child->waitForEnd(0ms));
}

TEST(AChildProgram, EndsWithItsObject) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"id"_s);
    auto child = shell(u"echo $$ >'%1'; echo; trap '' TERM HUP INT; exec sleep 600"_s.arg(file));
    QByteArray bytes;
    ASSERT_EQ(child->read(1, kPatience, bytes), Reading::Whole);
    QFile id(file);
    ASSERT_TRUE(id.open(QIODevice::ReadOnly));
    const pid_t process = id.readAll().trimmed().toInt();
    ASSERT_EQ(::kill(process, 0), 0);
    child.reset();
    EXPECT_NE(::kill(process, 0), 0);
}

TEST(AChildProgram, WaitsWhileNobodyReads) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"written"_s);
    // A pipe of the system's holds 64 KB.
    const auto child =
        shell(u"i=0; while [ $i -lt 100 ]; do i=$((i + 1)); printf %10000d 0; echo $i >'%1'; done"_s.arg(file));
    QByteArray bytes;
    ASSERT_EQ(child->read(1, kPatience, bytes), Reading::Whole);
    EXPECT_FALSE(child->waitForEnd(500ms));
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_LT(written.readAll().trimmed().toInt(), 30);
    EXPECT_EQ(child->read(10000000, kPatience, bytes), Reading::End);
    EXPECT_EQ(bytes.size(), 999999);
}

TEST(AChildProgram, HearsNothingAndDiesOfAClosedPipe) {
    const auto before = ::signal(SIGPIPE, SIG_IGN);
    const auto child = shell(u"cat; trap | grep -c PIPE; echo end"_s);
    ::signal(SIGPIPE, before);
    QByteArray bytes;
    EXPECT_EQ(child->read(100, kPatience, bytes), Reading::End);
    EXPECT_EQ(bytes, "0\nend\n");
}

TEST(AChildProgram, ThatCantBeStartedIsRefusedWithTheReason) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"program"_s);
    for (int turn = 0; turn < 2; ++turn) {
        try {
            ChildProgram child(file, {});
            ADD_FAILURE();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.file(), file);
            EXPECT_FALSE(failure.reason().isEmpty());
        }
        QFile script(file); // there, and not to be run
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    }
}

TEST(AChildProgram, LiesBesideTheTestsThatRunIt) {
    EXPECT_TRUE(QFile::exists(platform::folderOfExecutable() + u"velloria-jet"_s));
}

} // namespace
} // namespace velloria::tests
