#include "platform/file_write.h"

#include "platform/failure.h"
#include "support/faulty_disk.h"
#include "support/patience.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::copyFile;
using platform::Durability;
using platform::Failure;
using platform::FolderLock;
using platform::isSameFile;
using platform::makeFolder;
using platform::readFile;
using platform::removeFile;
using platform::replaceFile;

/// A folder of the test's own, with a usual umask.
class FileWrite : public testing::Test {
protected:
    ~FileWrite() override { ::umask(m_mask); }

    QString path(const QString& name) const { return m_folder.filePath(name); }

    QString make(const QString& name, const QByteArray& bytes, mode_t mode = 0644) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        ::chmod(QFile::encodeName(path(name)).constData(), mode);
        return path(name);
    }

    QString makeLink(const QString& target, const QString& name) const {
        EXPECT_EQ(::symlink(QFile::encodeName(target).constData(), QFile::encodeName(path(name)).constData()), 0);
        return path(name);
    }

    /// All that is in the folder, hidden files too.
    QStringList names(const QString& folder = {}) const {
        return QDir(path(folder)).entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    static struct stat status(const QString& file) {
        struct stat result {};
        EXPECT_EQ(::lstat(QFile::encodeName(file).constData(), &result), 0) << file.toStdString();
        return result;
    }
    static mode_t mode(const QString& file) { return status(file).st_mode & 07777; }

    /// Runs `action` in a process of its own and returns whether it came back with true.
    static bool holdsInChild(const std::function<bool()>& action) {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(action() ? 0 : 1);
        int result = -1;
        ::waitpid(child, &result, 0);
        return WIFEXITED(result) && WEXITSTATUS(result) == 0;
    }

    static bool fails(const std::function<void()>& action) {
        try {
            action();
            return false;
        } catch (const Failure&) {
            return true;
        }
    }

    /// Runs `action` where there is room for so many bytes.
    bool failsOnFullDisk(qint64 room, const std::function<void()>& action) const {
        FaultyDisk disk(path({}));
        disk.leaveRoom(room);
        return fails(action);
    }

private:
    const mode_t m_mask = ::umask(022);
    const QTemporaryDir m_folder;
};

constexpr qsizetype kManyBytes = 3 << 20;

TEST_F(FileWrite, RemovesWhatKilledRunsLeft) {
    const QString left = make(u".velltmp-killed"_s, "half");
    const QString held = make(u".velltmp-alive"_s, "half");
    make(u".vellum"_s, "the user's");
    const int writer = ::open(QFile::encodeName(held).constData(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(writer, LOCK_EX), 0);
    replaceFile(path(u"a"_s), "1", Durability::Derived);
    EXPECT_EQ(names(), (QStringList{u".velltmp-alive"_s, u".vellum"_s, u"a"_s}));
    ::close(writer);
}

TEST_F(FileWrite, AFirstWriteOfAnotherProgramTakesNoFileForALeftover) {
    // Each child sweeps the folder once, at its first write, while the others are about to rename.
    constexpr int kPrograms = 400;
    constexpr int kAtOnce = 8;
    const auto reap = [] {
        int result = -1;
        ::wait(&result);
        return result;
    };
    int failures = 0;
    for (int i = 0; i < kPrograms; ++i) {
        if (::fork() == 0) {
            try {
                for (int file = 0; file < 20; ++file)
                    replaceFile(path(u"file%1"_s.arg(file)), "text", Durability::Derived);
                ::_exit(0);
            } catch (const Failure&) {
                ::_exit(1);
            }
        }
        if (i >= kAtOnce)
            failures += reap() != 0;
    }
    for (int i = 0; i < kAtOnce; ++i)
        failures += reap() != 0;
    EXPECT_EQ(failures, 0);
}

TEST_F(FileWrite, ForkedProgramsTakeDifferentNames) {
    const QString seen = path(u"seen"_s);
    for (int i = 0; i < 2; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            replaceFile(
                path(u"a"_s),
                [&](const auto&) {
                    QFile file(seen);
                    if (!file.open(QIODevice::Append))
                        ::_exit(1);
                    file.write(names().filter(u".velltmp-"_s).join(u' ').toUtf8() + '\n');
                },
                Durability::Derived);
            ::_exit(0);
        }
        int result = -1;
        ::waitpid(child, &result, 0);
        ASSERT_EQ(result, 0);
    }
    const QList<QByteArray> lines = readFile(seen).split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].startsWith(".velltmp-")) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].startsWith(".velltmp-")) << lines[1].toStdString();
    EXPECT_NE(lines[0], lines[1]);
}

TEST_F(FileWrite, WritesANewFile) {
    for (const Durability durability : {Durability::Derived, Durability::Durable}) {
        for (const QByteArray& bytes : {QByteArray(), QByteArray("a\0\r\n", 4), QByteArray(kManyBytes, 'x')}) {
            removeFile(path(u"日記.htm"_s));
            replaceFile(path(u"日記.htm"_s), bytes, durability);
            EXPECT_EQ(readFile(path(u"日記.htm"_s)), bytes);
            EXPECT_EQ(names(), QStringList(u"日記.htm"_s));
        }
    }
}

TEST_F(FileWrite, GivesANewFileTheModeLessTheUmask) {
    replaceFile(path(u"page"_s), "x", Durability::Derived);
    EXPECT_EQ(mode(path(u"page"_s)), 0644U);
    replaceFile(path(u"password"_s), "x", Durability::Durable, 0600);
    EXPECT_EQ(mode(path(u"password"_s)), 0600U);
    ::umask(077);
    replaceFile(path(u"strict"_s), "x", Durability::Derived);
    EXPECT_EQ(mode(path(u"strict"_s)), 0600U);
}

TEST_F(FileWrite, ReplacesByRename) {
    const QString file = make(u"a"_s, "old");
    const QString otherName = path(u"b"_s);
    ASSERT_EQ(::link(QFile::encodeName(file).constData(), QFile::encodeName(otherName).constData()), 0);
    QFile reader(file);
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    replaceFile(file, "new", Durability::Derived);
    EXPECT_EQ(readFile(file), "new");
    EXPECT_EQ(reader.readAll(), "old") << "who has the old file open still reads it whole";
    EXPECT_EQ(readFile(otherName), "old");
    EXPECT_FALSE(isSameFile(file, otherName));
    EXPECT_EQ(names(), (QStringList{u"a"_s, u"b"_s}));
}

TEST_F(FileWrite, KeepsTheModeOfAnExistingFile) {
    for (const mode_t kept : {0600U, 0640U, 0666U, 0755U}) {
        const QString file = make(u"a"_s, "old", kept);
        replaceFile(file, "new", Durability::Derived, 0644);
        EXPECT_EQ(readFile(file), "new");
        EXPECT_EQ(mode(file), kept);
    }
}

TEST_F(FileWrite, KeepsASymbolicLink) {
    ASSERT_TRUE(QDir(path({})).mkdir(u"elsewhere"_s));
    const QString target = make(u"elsewhere/target"_s, "old", 0640);
    const QString absolute = makeLink(target, u"absolute"_s);
    const QString relative = makeLink(u"elsewhere/target"_s, u"relative"_s);
    const QString indirect = makeLink(u"relative"_s, u"indirect"_s);
    for (const QString& link : {absolute, relative, indirect}) {
        const QByteArray bytes = link.toUtf8();
        replaceFile(link, bytes, Durability::Durable);
        EXPECT_TRUE(S_ISLNK(status(link).st_mode)) << link.toStdString();
        EXPECT_TRUE(S_ISREG(status(target).st_mode)) << link.toStdString();
        EXPECT_EQ(readFile(target), bytes);
        EXPECT_EQ(mode(target), 0640U);
    }
    EXPECT_EQ(names(u"elsewhere"_s), QStringList(u"target"_s));
}

TEST_F(FileWrite, RefusesALinkThatLeadsNowhereAndNamesBothEnds) {
    ASSERT_TRUE(QDir(path({})).mkdir(u"elsewhere"_s));
    const QString end = path(u"elsewhere/gone"_s);
    const QString link = makeLink(u"elsewhere/gone"_s, u"link"_s);
    const QString indirect = makeLink(u"link"_s, u"indirect"_s);
    const QString below = makeLink(u"elsewhere/no/folder"_s, u"below"_s);
    const QString loop = makeLink(u"loop"_s, u"loop"_s);
    const QString file = make(u"file"_s, "text");
    const auto failureOf = [](const std::function<void()>& action) {
        try {
            action();
        } catch (const Failure& failure) {
            return failure.text();
        }
        return QString();
    };
    for (const QString& name : {link, indirect}) {
        for (const auto& action : std::initializer_list<std::function<void()>>{
                 [&] { replaceFile(name, "new", Durability::Derived); },
                 [&] { replaceFile(name, "new", Durability::Durable); }, [&] { copyFile(file, name); },
                 [&] { copyFile(name, file); }, [&] { readFile(name); }, [&] { platform::readFileIfThere(name); },
                 [&] { platform::readEndIfThere(name, 1); }, [&] { platform::appendToFile(name, "new"); },
                 [&] { makeFolder(name); }}) {
            const QString failure = failureOf(action);
            EXPECT_TRUE(failure.contains(name) && failure.contains(end)) << failure.toStdString();
        }
    }
    EXPECT_NE(failureOf([&] { replaceFile(below, "new", Durability::Derived); }), QString());
    EXPECT_NE(failureOf([&] { platform::readFileIfThere(loop); }), QString());
    EXPECT_EQ(names(u"elsewhere"_s), QStringList());
    EXPECT_EQ(readFile(file), "text");
}

TEST_F(FileWrite, NothingButAFileIsReplaced) {
    const QString pipe = path(u"pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QString link = makeLink(pipe, u"link"_s);
    const QString file = make(u"file"_s, "text");
    for (const QString& name : {pipe, link}) {
        EXPECT_TRUE(fails([&] { replaceFile(name, "new", Durability::Derived); }));
        EXPECT_TRUE(fails([&] { copyFile(file, name); }));
    }
    EXPECT_TRUE(S_ISFIFO(status(pipe).st_mode));
    EXPECT_EQ(names(), (QStringList{u"file"_s, u"link"_s, u"pipe"_s}));
}

TEST_F(FileWrite, WritesANameAsLongAsNamesCanBe) {
    const QString name = u"あ"_s.repeated(85);
    replaceFile(path(name), "new", Durability::Derived);
    copyFile(path(name), path(u"い"_s.repeated(85)));
    EXPECT_EQ(readFile(path(u"い"_s.repeated(85))), "new");
    EXPECT_EQ(names().size(), 2);
}

TEST_F(FileWrite, PlacesACopyWhereALinkWasAndKeepsItsTarget) {
    const QString source = make(u"source"_s, "new");
    const QString target = make(u"target"_s, "old");
    const QString link = makeLink(u"target"_s, u"link"_s);
    EXPECT_FALSE(platform::isInPlace(source, link));
    platform::placeFile(source, link);
    EXPECT_TRUE(S_ISREG(status(link).st_mode));
    EXPECT_EQ(readFile(link), "new");
    EXPECT_EQ(readFile(target), "old");
}

TEST_F(FileWrite, PlacesACopyWhereALinkToTheFileItselfWas) {
    const QString source = make(u"source"_s, "new");
    const QString link = makeLink(u"source"_s, u"link"_s);
    EXPECT_FALSE(platform::isInPlace(source, link));
    platform::placeFile(source, link);
    EXPECT_TRUE(S_ISREG(status(link).st_mode));
    EXPECT_EQ(readFile(link), "new");
    EXPECT_EQ(readFile(source), "new");
    EXPECT_NE(status(link).st_ino, status(source).st_ino);
}

TEST_F(FileWrite, PlacesNothingOntoItself) {
    const QString source = make(u"source"_s, "new");
    const ino_t node = status(source).st_ino;
    EXPECT_TRUE(platform::isInPlace(source, source));
    platform::placeFile(source, source);
    EXPECT_EQ(status(source).st_ino, node);
    EXPECT_EQ(readFile(source), "new");
}

TEST_F(FileWrite, KeepsTheOldFileOnAFullDisk) {
    const QString file = make(u"a"_s, "old", 0640);
    const QString source = make(u"source"_s, QByteArray(kManyBytes, 'x'));
    for (const Durability durability : {Durability::Derived, Durability::Durable}) {
        EXPECT_TRUE(failsOnFullDisk(0, [&] { replaceFile(file, "new", durability); }));
        EXPECT_TRUE(failsOnFullDisk(1 << 20, [&] { replaceFile(file, QByteArray(kManyBytes, 'x'), durability); }));
    }
    EXPECT_TRUE(failsOnFullDisk(1 << 20, [&] { copyFile(source, file); }));
    EXPECT_EQ(readFile(file), "old");
    EXPECT_EQ(mode(file), 0640U);
    EXPECT_TRUE(failsOnFullDisk(1 << 20, [&] { copyFile(source, path(u"new"_s)); }));
    EXPECT_EQ(names(), (QStringList{u"a"_s, u"source"_s}));
    // What the disk does hold is written with the same room.
    EXPECT_FALSE(failsOnFullDisk(1 << 20, [&] { replaceFile(file, "new", Durability::Durable); }));
    EXPECT_EQ(readFile(file), "new");
}

TEST_F(FileWrite, TakesBytesPieceByPiece) {
    const QString file = make(u"a"_s, "old", 0640);
    replaceFile(
        file,
        [&](const platform::WriteBytes& write) {
            EXPECT_EQ(readFile(file), "old");
            write("one ");
            write("");
            write("two");
        },
        Durability::Derived);
    EXPECT_EQ(readFile(file), "one two");
    EXPECT_EQ(mode(file), 0640U);
    EXPECT_EQ(names(), QStringList{u"a"_s});
}

TEST_F(FileWrite, KeepsTheOldFileWhenThePiecesEndInAFailure) {
    const QString file = make(u"a"_s, "old");
    const auto produce = [](const platform::WriteBytes& write) {
        write("half");
        throw Failure(u"no more"_s, {}, {});
    };
    EXPECT_THROW(replaceFile(file, produce, Durability::Derived), Failure);
    EXPECT_EQ(readFile(file), "old");
    EXPECT_EQ(names(), QStringList{u"a"_s});
    EXPECT_TRUE(failsOnFullDisk(1 << 20, [&] {
        replaceFile(
            file,
            [](const platform::WriteBytes& write) {
                for (int i = 0; i < 3; ++i)
                    write(QByteArray(1 << 20, 'x'));
            },
            Durability::Derived);
    }));
    EXPECT_EQ(readFile(file), "old");
    EXPECT_EQ(names(), QStringList{u"a"_s});
}

TEST_F(FileWrite, RefusesAFileThatIsReadOnly) {
    const QString file = make(u"a"_s, "old", 0444);
    const QString source = make(u"source"_s, "new");
    EXPECT_THROW(replaceFile(file, "new", Durability::Derived), Failure);
    EXPECT_THROW(copyFile(source, file), Failure);
    EXPECT_EQ(readFile(file), "old");
    EXPECT_EQ(mode(file), 0444U);
    EXPECT_EQ(names(), (QStringList{u"a"_s, u"source"_s}));
}

TEST_F(FileWrite, FailsWhereNoFileCanBe) {
    const QString file = make(u"file"_s, "old");
    ASSERT_TRUE(QDir(path({})).mkdir(u"folder"_s));
    for (const QString& target : {path(u"file/x"_s), path(u"missing/x"_s), path(u"folder"_s), path(u"folder/"_s), u""_s,
                                  path(u"あ"_s.repeated(86))}) {
        EXPECT_THROW(replaceFile(target, "new", Durability::Durable), Failure) << target.toStdString();
        EXPECT_THROW(copyFile(file, target), Failure) << target.toStdString();
    }
    EXPECT_EQ(names(), (QStringList{u"file"_s, u"folder"_s}));
    EXPECT_EQ(names(u"folder"_s), QStringList());
    EXPECT_EQ(readFile(file), "old");
}

TEST_F(FileWrite, SaysWhichFileAndWhy) {
    try {
        replaceFile(path(u"missing/日記.htm"_s), "new", Durability::Derived);
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.file(), path(u"missing/日記.htm"_s));
        EXPECT_EQ(failure.reason(), platform::systemReason(ENOENT));
        EXPECT_FALSE(failure.whatFailed().isEmpty());
    }
}

TEST_F(FileWrite, CopiesWithTimeAndWritable) {
    for (const QByteArray& bytes : {QByteArray(), QByteArray("a\0b", 3), QByteArray(kManyBytes + 1, 'x')}) {
        const QString from = make(u"from"_s, bytes);
        const timespec times[2] = {{1'000'000'000, 123'456'789}, {1'073'271'845, 987'654'321}};
        ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(from).constData(), times, 0), 0);
        ::chmod(QFile::encodeName(from).constData(), 0444);
        const QString to = path(u"to"_s);
        removeFile(to);
        copyFile(from, to);
        EXPECT_EQ(readFile(to), bytes);
        EXPECT_EQ(status(to).st_mtim.tv_sec, times[1].tv_sec);
        EXPECT_EQ(status(to).st_mtim.tv_nsec, times[1].tv_nsec);
        EXPECT_EQ(mode(to), 0644U);
        EXPECT_EQ(mode(from), 0444U);
        ::chmod(QFile::encodeName(from).constData(), 0644);
    }
    copyFile(path(u"from"_s), path(u"readOnly"_s), 0400);
    EXPECT_EQ(mode(path(u"readOnly"_s)), 0600U);
    EXPECT_EQ(names(), (QStringList{u"from"_s, u"readOnly"_s, u"to"_s}));
}

TEST_F(FileWrite, CopiesOverAFileAndThroughLinks) {
    const QString from = make(u"from"_s, "new");
    const QString to = make(u"to"_s, "old", 0600);
    copyFile(makeLink(u"from"_s, u"linkFrom"_s), makeLink(u"to"_s, u"linkTo"_s));
    EXPECT_EQ(readFile(to), "new");
    EXPECT_EQ(mode(to), 0600U);
    EXPECT_TRUE(S_ISLNK(status(path(u"linkTo"_s)).st_mode));
    EXPECT_FALSE(isSameFile(from, to));
}

TEST_F(FileWrite, LeavesAFileCopiedOntoItselfAlone) {
    const QString file = make(u"a"_s, "bytes", 0400);
    const QString hardLink = path(u"hard"_s);
    ASSERT_EQ(::link(QFile::encodeName(file).constData(), QFile::encodeName(hardLink).constData()), 0);
    const QString symbolicLink = makeLink(u"a"_s, u"symbolic"_s);
    const struct stat before = status(file);
    for (const QString& other : {file, hardLink, symbolicLink, path(u"./a"_s)}) {
        copyFile(file, other);
        copyFile(other, file);
        EXPECT_EQ(status(file).st_ino, before.st_ino) << other.toStdString();
        EXPECT_EQ(status(file).st_mtim.tv_nsec, before.st_mtim.tv_nsec) << other.toStdString();
        EXPECT_TRUE(isSameFile(file, other)) << other.toStdString();
    }
    EXPECT_EQ(readFile(file), "bytes");
    EXPECT_EQ(status(hardLink).st_ino, before.st_ino);
    EXPECT_TRUE(S_ISLNK(status(symbolicLink).st_mode));
    EXPECT_EQ(names(), (QStringList{u"a"_s, u"hard"_s, u"symbolic"_s}));
}

TEST_F(FileWrite, AFailedCopyLeavesTheTarget) {
    const QString to = make(u"to"_s, "old");
    EXPECT_THROW(copyFile(path(u"missing"_s), to), Failure);
    EXPECT_THROW(copyFile(path({}), to), Failure) << "a folder is no file";
    EXPECT_EQ(readFile(to), "old");
    EXPECT_EQ(names(), QStringList(u"to"_s));
}

TEST_F(FileWrite, OnlyAFileThatIsThereIsTheSame) {
    const QString a = make(u"a"_s, "x");
    const QString b = make(u"b"_s, "x");
    EXPECT_TRUE(isSameFile(a, a));
    EXPECT_FALSE(isSameFile(a, b));
    EXPECT_FALSE(isSameFile(a, path(u"missing"_s)));
    EXPECT_FALSE(isSameFile(path(u"missing"_s), path(u"missing"_s)));
    EXPECT_FALSE(isSameFile(a, makeLink(u"missing"_s, u"dangling"_s)));
}

TEST_F(FileWrite, ReadsTheWholeFileOrFails) {
    EXPECT_EQ(readFile(make(u"empty"_s, {})), QByteArray());
    EXPECT_EQ(readFile(make(u"zeros"_s, QByteArray(5, '\0'))), QByteArray(5, '\0'));
    EXPECT_THROW(readFile(path(u"missing"_s)), Failure);
    EXPECT_THROW(readFile(path({})), Failure);
    EXPECT_THROW(readFile(path(u"empty/x"_s)), Failure);
}

TEST_F(FileWrite, ReadsOnlyTheBeginningWhereNoMoreIsWanted) {
    const QString file = make(u"file"_s, "0123456789");
    EXPECT_EQ(readFile(file, 4), "0123");
    EXPECT_EQ(readFile(file, 10), "0123456789");
    EXPECT_EQ(readFile(file, 11), "0123456789");
    EXPECT_EQ(platform::readFileIfThere(file, 4), "0123");
    EXPECT_EQ(platform::readFileIfThere(path(u"missing"_s), 4), std::nullopt);
    EXPECT_EQ(platform::readFileIfThere(path(u"file/x"_s)), std::nullopt);
    EXPECT_EQ(platform::readEndIfThere(file, 4), "6789");
    EXPECT_EQ(platform::readEndIfThere(file, 10), "0123456789");
    EXPECT_EQ(platform::readEndIfThere(file, 11), "0123456789");
    EXPECT_EQ(platform::readEndIfThere(path(u"missing"_s), 4), std::nullopt);
    EXPECT_EQ(platform::readEndIfThere(make(u"empty"_s, ""), 4), "");
}

TEST_F(FileWrite, AFileThatIsThereAndCantBeReadIsNoMissingOne) {
    const QString unreadable = makeLink(u"/proc/self/mem"_s, u"file"_s); // a file whose first bytes are an error
    EXPECT_THROW(platform::readFileIfThere(unreadable), Failure);
    EXPECT_THROW(platform::readEndIfThere(unreadable, 1), Failure);
    EXPECT_THROW(platform::readFileIfThere(path({})), Failure);
}

TEST_F(FileWrite, WaitsForNoPipeAndReadsNoDevice) {
    const QString pipe = path(u"pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString& name : {pipe, makeLink(pipe, u"link"_s), u"/dev/zero"_s, u"/dev/null"_s}) {
        EXPECT_THROW(readFile(name), Failure);
        EXPECT_THROW(platform::readFileIfThere(name), Failure);
        EXPECT_THROW(platform::readEndIfThere(name, 1), Failure);
        EXPECT_THROW(copyFile(name, path(u"copy"_s)), Failure);
    }
    EXPECT_EQ(names(), (QStringList{u"link"_s, u"pipe"_s}));
}

TEST_F(FileWrite, ReadsAPipeThatIsNamedToBeRead) {
    const QString pipe = path(u"pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QByteArray bytes(kManyBytes, 'x');
    const pid_t writer = ::fork();
    if (writer == 0) {
        QFile file(pipe);
        ::_exit(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() ? 0 : 1);
    }
    EXPECT_EQ(platform::readAnything(pipe), bytes);
    ::waitpid(writer, nullptr, 0);
}

TEST_F(FileWrite, MakesAFolderWithAllAboveIt) {
    makeFolder(path(u"a/b/日記"_s), 0700);
    EXPECT_TRUE(QDir(path(u"a/b/日記"_s)).exists());
    EXPECT_EQ(mode(path(u"a"_s)), 0700U);
    EXPECT_EQ(mode(path(u"a/b/日記"_s)), 0700U);
    makeFolder(path(u"a/b/日記"_s));
    makeFolder(path(u"a/b/日記/"_s));
    makeFolder(path(u"c//d/"_s));
    EXPECT_EQ(mode(path(u"c/d"_s)), 0755U);
    EXPECT_EQ(mode(path(u"a/b/日記"_s)), 0700U) << "a folder that is there stays as it is";
    makeFolder(makeLink(u"a"_s, u"link"_s));
    makeFolder(path(u"link/e"_s));
    EXPECT_TRUE(QDir(path(u"a/e"_s)).exists());
}

TEST_F(FileWrite, FailsToMakeAFolderWhereAFileIs) {
    make(u"file"_s, "x");
    for (const QString& folder : {path(u"file"_s), path(u"file/a"_s), path(u"file/a/b"_s)}) {
        try {
            makeFolder(folder);
            FAIL() << folder.toStdString();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.file(), folder);
            EXPECT_EQ(failure.reason(), platform::systemReason(ENOTDIR)) << folder.toStdString();
        }
    }
    EXPECT_THROW(makeFolder(u""_s), Failure);
    EXPECT_EQ(readFile(path(u"file"_s)), "x");
}

TEST_F(FileWrite, RemovesAFileAndNoMoreThanThat) {
    const QString file = make(u"a"_s, "x", 0400);
    const QString link = makeLink(u"a"_s, u"link"_s);
    removeFile(link);
    EXPECT_EQ(names(), QStringList(u"a"_s));
    removeFile(file);
    EXPECT_EQ(names(), QStringList());
    EXPECT_NO_THROW(removeFile(file)) << "a missing file is no failure";
    EXPECT_NO_THROW(removeFile(path(u"missing/a"_s)));
    EXPECT_NO_THROW(removeFile(make(u"file"_s, "x") + u"/a"_s));
    makeFolder(path(u"folder"_s));
    EXPECT_THROW(removeFile(path(u"folder"_s)), Failure);
    EXPECT_EQ(names(), (QStringList{u"file"_s, u"folder"_s}));
}

TEST_F(FileWrite, AFolderLockMakesASecondProcessWait) {
    int begin[2];
    int locked[2];
    ASSERT_EQ(::pipe(begin), 0);
    ASSERT_EQ(::pipe(locked), 0);
    // The child starts before the lock is taken: a lock that it inherited would never be given up.
    const pid_t child = ::fork();
    if (child == 0) {
        char byte = 0;
        bool isDone = ::read(begin[0], &byte, 1) == 1;
        const FolderLock lock(path({}));
        isDone = ::write(locked[1], &byte, 1) == 1 && isDone;
        ::_exit(isDone ? 0 : 1);
    }
    pollfd second{locked[0], POLLIN, 0};
    {
        const FolderLock lock(path({}));
        ASSERT_EQ(::write(begin[1], "x", 1), 1);
        EXPECT_EQ(::poll(&second, 1, 200), 0) << "the second process has the lock as well";
    }
    EXPECT_EQ(::poll(&second, 1, kPatienceMs), 1) << "the second process never gets the lock";
    int result = -1;
    EXPECT_EQ(::waitpid(child, &result, 0), child);
    EXPECT_EQ(result, 0);
    for (const int end : {begin[0], begin[1], locked[0], locked[1]})
        ::close(end);
}

TEST_F(FileWrite, AFolderThatStaysLockedIsNamedAfterFiveSeconds) {
    const FolderLock lock(path({}));
    EXPECT_TRUE(holdsInChild([&] {
        ::alarm(60);
        const auto begin = std::chrono::steady_clock::now();
        try {
            const FolderLock second(path({}));
        } catch (const Failure& failure) {
            const auto waited = std::chrono::steady_clock::now() - begin;
            return failure.text().contains(path({})) && failure.text().contains(u"使用中"_s) &&
                   waited >= std::chrono::seconds(5);
        }
        return false;
    }));
}

TEST_F(FileWrite, AFolderLockNeedsAFolder) {
    EXPECT_THROW(FolderLock{path(u"missing"_s)}, Failure);
    EXPECT_NO_THROW(FolderLock{path({})});
    EXPECT_NO_THROW(FolderLock{QString()}) << "no name is the current folder";
}

TEST_F(FileWrite, FoldersAreLockedEachForItself) {
    makeFolder(path(u"a"_s));
    makeFolder(path(u"b"_s));
    const FolderLock lock(path(u"a"_s));
    EXPECT_TRUE(holdsInChild([&] {
        ::alarm(60);
        const FolderLock other(path(u"b"_s));
        return true;
    }));
}

TEST_F(FileWrite, TakesPermissionsAwayAndGivesNone) {
    const QString file = make(u"file"_s, "text", 0664);
    platform::limitMode(file, 0640);
    EXPECT_EQ(mode(file), 0640U);
    platform::limitMode(file, 0666);
    EXPECT_EQ(mode(file), 0640U);
    EXPECT_NO_THROW(platform::limitMode(path(u"missing"_s), 0600));
}

} // namespace
} // namespace velloria::tests
