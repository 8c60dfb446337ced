// What a durable write asks of the disk. The calls of this program come through here and are counted.
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/profile_file.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

std::string calls;           ///< "f" a file brought to the disk, "d" a folder, "r" a rename
bool isDiskRefusing = false; ///< what is written does not reach the disk

} // namespace

extern "C" int fsync(int descriptor) {
    struct stat status {};
    ::fstat(descriptor, &status);
    calls += S_ISDIR(status.st_mode) ? 'd' : 'f';
    if (isDiskRefusing) {
        errno = EIO;
        return -1;
    }
    return int(::syscall(SYS_fsync, descriptor));
}

extern "C" int rename(const char* from, const char* to) noexcept {
    calls += 'r';
    return ::renameat(AT_FDCWD, from, AT_FDCWD, to);
}

namespace velloria::tests {
namespace {

using namespace platform;

class FileSync : public testing::Test {
protected:
    ~FileSync() override { isDiskRefusing = false; }
    QString path(const QString& name) const { return m_folder.filePath(name); }
    template <typename Action>
    static std::string callsOf(Action action) {
        calls.clear();
        action();
        return calls;
    }

private:
    const QTemporaryDir m_folder;
};

TEST_F(FileSync, ADurableFileReachesTheDiskBeforeItsNameAndTheFolderBehindIt) {
    replaceFile(path(u"source"_s), "text", Durability::Derived);
    EXPECT_EQ(callsOf([&] { replaceFile(path(u"a"_s), "text", Durability::Durable); }), "frd");
    EXPECT_EQ(callsOf([&] { replaceFile(path(u"a"_s), "more", Durability::Durable); }), "frd");
    const auto produce = [](const WriteBytes& write) { write("text"); };
    EXPECT_EQ(callsOf([&] { replaceFile(path(u"b"_s), produce, Durability::Durable); }), "frd");
    EXPECT_EQ(callsOf([&] { copyFile(path(u"source"_s), path(u"c"_s), 0600, Durability::Durable); }), "frd");
    EXPECT_EQ(callsOf([&] { writeProfile(path(u"a.ini"_s), u"s"_s, u"k"_s, u"v"_s); }), "frd");
}

TEST_F(FileSync, WhatCanBeMadeAgainWaitsForNoDisk) {
    EXPECT_EQ(callsOf([&] { replaceFile(path(u"a"_s), "text", Durability::Derived); }), "r");
    EXPECT_EQ(callsOf([&] { copyFile(path(u"a"_s), path(u"b"_s)); }), "r");
}

TEST_F(FileSync, ADurableFileThatDoesNotReachTheDiskLeavesTheOldOne) {
    replaceFile(path(u"a"_s), "old", Durability::Durable);
    isDiskRefusing = true;
    EXPECT_THROW(replaceFile(path(u"a"_s), "new", Durability::Durable), Failure);
    EXPECT_THROW(writeProfile(path(u"a.ini"_s), u"s"_s, u"k"_s, u"v"_s), Failure);
    EXPECT_EQ(readFile(path(u"a"_s)), "old");
    EXPECT_EQ(QDir(path({})).entryList(QDir::Files | QDir::Hidden), QStringList{u"a"_s});
}

} // namespace
} // namespace velloria::tests
