// What a durable write asks of the disk.
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/profile_file.h"
#include "support/disk_watch.h"
#include "support/faulty_disk.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace platform;

class FileSync : public testing::Test {
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }
    template <typename Action>
    std::string callsOf(Action action) const {
        const FaultyDisk disk(path({}));
        action();
        return disk.turns();
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
    DiskWatch disk;
    disk.refuse(u""_s);
    EXPECT_THROW(replaceFile(path(u"a"_s), "new", Durability::Durable), Failure);
    EXPECT_THROW(writeProfile(path(u"a.ini"_s), u"s"_s, u"k"_s, u"v"_s), Failure);
    EXPECT_EQ(readFile(path(u"a"_s)), "old");
    EXPECT_EQ(QDir(path({})).entryList(QDir::Files | QDir::Hidden), QStringList{u"a"_s});
}

} // namespace
} // namespace velloria::tests
