#include "platform/file_lock.h"

#include "support/test_home.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::FileLock;

class FileLocks : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QString file = folder.filePath(u"a.lock"_s);
};

TEST_F(FileLocks, IsHeldByOneAtATimeAndLeavesNothing) {
    {
        const FileLock first(file);
        EXPECT_TRUE(first.isHeld());
        EXPECT_FALSE(FileLock(file).isHeld());
        EXPECT_TRUE(QFile::exists(file)) << "who does not hold it removes nothing";
        EXPECT_TRUE(FileLock(folder.filePath(u"b.lock"_s)).isHeld());
        EXPECT_TRUE(holdsInChild([&] { return !FileLock(file).isHeld(); }));
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList());
    EXPECT_TRUE(FileLock(file).isHeld());
}

TEST_F(FileLocks, IsFreeBehindTheDeathOfItsHolder) {
    EXPECT_TRUE(holdsInChild([&] {
        const auto* never = new FileLock(file); // not let go by hand
        return never->isHeld();
    }));
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_TRUE(FileLock(file).isHeld());
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(FileLocks, AFileThatCanNotBeMadeIsARefusal) {
    EXPECT_TRUE(failureOf([&] { FileLock(folder.filePath(u"none/a.lock"_s)); }).contains(u"none/a.lock"_s));
    ASSERT_TRUE(QDir().mkdir(file));
    EXPECT_TRUE(failureOf([&] { FileLock lock(file); }).contains(file));
    EXPECT_TRUE(QFile::exists(file));
    ASSERT_TRUE(QDir().rmdir(file));
    ASSERT_TRUE(QFile::link(folder.filePath(u"elsewhere"_s), file));
    EXPECT_FALSE(failureOf([&] { FileLock lock(file); }).isEmpty());
    EXPECT_FALSE(QFile::exists(folder.filePath(u"elsewhere"_s)));
}

} // namespace
} // namespace velloria::tests
