#include "publish/upload_log.h"

#include "support/test_home.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using publish::UploadLog;

class UploadLogs : public ::testing::Test {
protected:
    void run(const QString& name) const {
        UploadLog log(file, name);
        log.add(u"> "_s + name);
        log.end(u"done"_s);
    }
    QByteArray content() const {
        QFile in(file);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : "none";
    }

    QTemporaryDir folder;
    QString file = folder.filePath(u"upload.log"_s);
};

TEST_F(UploadLogs, HoldsThisRunAndTheOneBefore) {
    run(u"表"_s);
    EXPECT_EQ(content(), "=== 表\n> 表\n--- done\n");
    run(u"two"_s);
    EXPECT_EQ(content(), "=== 表\n> 表\n--- done\n=== two\n> two\n--- done\n");
    run(u"three"_s);
    EXPECT_EQ(content(), "=== two\n> two\n--- done\n=== three\n> three\n--- done\n");
}

TEST_F(UploadLogs, IsTheOwnersAlone) {
    run(u"one"_s);
    struct stat status;
    ASSERT_EQ(::stat(QFile::encodeName(file).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(UploadLogs, EachLineIsThereBeforeTheNext) {
    UploadLog log(file, u"one"_s);
    log.add(u"> USER"_s);
    EXPECT_EQ(content(), "=== one\n> USER\n");
    run(u"two"_s); // the first one was killed
    EXPECT_EQ(content(), "=== one\n> USER\n=== two\n> two\n--- done\n");
}

TEST_F(UploadLogs, NoLineOfAServerPassesForAnother) {
    UploadLog(file, u"one\n=== two"_s).add(u"< 220 \x1b[2J\r\n=== no\t\x7f"_s);
    EXPECT_EQ(content(), "=== one.=== two\n< 220 .[2J..=== no..\n");
    run(u"three"_s);
    EXPECT_TRUE(content().startsWith("=== one.=== two\n"));
}

TEST_F(UploadLogs, ATalkativeServerFillsNoDisk) {
    for (int i = 0; i < 3; ++i) {
        UploadLog log(file, u"one"_s);
        for (int line = 0; line < 3000; ++line)
            log.add(u"< "_s + QString(100000, u'x'));
        log.end(u"given up"_s);
        EXPECT_TRUE(content().endsWith("x\n(...)\n--- given up\n"));
        EXPECT_LT(content().size(), 9 << 20);
    }
    EXPECT_EQ(content().count("=== "), 2);
    run(u"two"_s);
    EXPECT_TRUE(content().startsWith("=== one\n< x"));
    EXPECT_TRUE(content().endsWith("--- given up\n=== two\n> two\n--- done\n"));
}

TEST_F(UploadLogs, WhatCanNotBeALogIsDoneWithout) {
    ASSERT_TRUE(QDir().mkdir(file));
    run(u"one"_s);
    ASSERT_TRUE(QDir().rmdir(file));
    ASSERT_EQ(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    run(u"two"_s); // waits for nobody at the pipe's other end
    ASSERT_TRUE(QFile::remove(file));
    run(u"three"_s);
    EXPECT_EQ(content(), "=== three\n> three\n--- done\n");
}

} // namespace
} // namespace velloria::tests
