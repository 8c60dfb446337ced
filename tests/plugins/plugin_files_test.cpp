#include "common/calls.h"
#include "common/input_file.h"
#include "common/losses.h"
#include "common/output_file.h"
#include "common/settings.h"
#include "support/faulty_disk.h"
#include "support/test_home.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::plugins {
namespace {

class PluginFiles : public ::testing::Test {
protected:
    std::string path(const QString& name) const { return home.filePath(name).toStdString(); }
    QByteArray bytesOf(const QString& name) const {
        QFile file(home.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
    }
    void write(const QString& name, const QByteArray& bytes) const {
        QFile file(home.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QStringList files() const { return QDir(home.path()).entryList(QDir::Files | QDir::Hidden); }

    QTemporaryDir home;
};

template <typename Action>
std::string errorOf(Action action) {
    try {
        action();
    } catch (const Error& error) {
        return error.what();
    }
    return {};
}

TEST_F(PluginFiles, AreThereWhenTheyAreWhole) {
    {
        OutputFile file(path(u"out.txt"_s));
        file.write(std::string(100000, 'x'));
        file.write("end");
        EXPECT_FALSE(files().contains(u"out.txt"_s));
        file.commit();
    }
    EXPECT_EQ(bytesOf(u"out.txt"_s), QByteArray(100000, 'x') + "end");
    EXPECT_EQ(files(), QStringList(u"out.txt"_s));
}

TEST_F(PluginFiles, LeaveNothingOfWhatWasNotFinished) {
    write(u"out.txt"_s, "old");
    {
        OutputFile file(path(u"out.txt"_s));
        file.write("new");
    }
    EXPECT_EQ(bytesOf(u"out.txt"_s), "old");
    EXPECT_EQ(files(), QStringList(u"out.txt"_s));
}

TEST_F(PluginFiles, OfAFullDiskSayWhatToDo) {
    tests::FaultyDisk disk(home.path());
    disk.leaveRoom(1000);
    const std::string error = errorOf([&] {
        OutputFile file(path(u"out.txt"_s));
        file.write(std::string(100000, 'x'));
        file.commit();
    });
    EXPECT_NE(error.find("空き容量を増やして"), std::string::npos) << error;
    EXPECT_NE(error.find("out.txt"), std::string::npos) << error;
    EXPECT_EQ(files(), QStringList());
}

TEST_F(PluginFiles, AreRefusedWhereTheyCantBe) {
    EXPECT_NE(errorOf([&] { OutputFile file(path(u"no/such/out.txt"_s)); }), "");
    EXPECT_NE(errorOf([&] { OutputFile file(home.path().toStdString()); }), "");
    EXPECT_NE(errorOf([&] { OutputFile file("/dev/null"); }), "");
    EXPECT_TRUE(tests::holdsForNobody([&] {
        QFile::setPermissions(home.path(), QFile::ReadOwner | QFile::ExeOwner);
        return !errorOf([&] { OutputFile file(path(u"out.txt"_s)); }).empty();
    }));
}

TEST_F(PluginFiles, AreReadWhole) {
    write(u"in.txt"_s, QByteArray("a\0b", 3));
    EXPECT_EQ(readFile(path(u"in.txt"_s)), std::string("a\0b", 3));
    write(u"in.txt"_s, "");
    EXPECT_EQ(readFile(path(u"in.txt"_s)), "");
    EXPECT_NE(errorOf([&] { readFile(path(u"missing.txt"_s)); }), "");
    EXPECT_NE(errorOf([&] { readFile(home.path().toStdString()); }), "");
    EXPECT_NE(errorOf([&] { readFile("/dev/zero"); }), "");
}

TEST_F(PluginFiles, OfAGigabyteAreRefusedUnread) {
    QFile file(home.filePath(u"large.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(qint64(1) << 30));
    const std::string error = errorOf([&] { readFile(path(u"large.txt"_s)); });
    EXPECT_NE(error.find("1024MB"), std::string::npos) << error;
    EXPECT_NE(error.find("256MB"), std::string::npos) << error;
    write(u"in.txt"_s, "12345");
    EXPECT_NE(errorOf([&] { readFile(path(u"in.txt"_s), 4); }), "");
    EXPECT_EQ(readFile(path(u"in.txt"_s), 5), "12345");
}

TEST_F(PluginFiles, OfSettingsHaveChoices) {
    const std::string database = path(u"diary.mdb"_s);
    const std::vector<std::string_view> words = {"drop", "keep"};
    EXPECT_EQ(Settings(database, "Larkport.ini").choice("Import", "Comments", words), 0u);
    write(u"Larkport.ini"_s,
          "\xEF\xBB\xBF; comment=keep\r\n[import]\r\n comments = KEEP \r\n[Other]\r\nPings=keep\r\n");
    const Settings settings(database, "Larkport.ini");
    EXPECT_EQ(settings.choice("Import", "Comments", words), 1u);
    EXPECT_EQ(settings.choice("Import", "Pings", words), 0u);
    write(u"Larkport.ini"_s, "[Import]\nComments=kepp");
    const std::string error = errorOf([&] { Settings(database, "Larkport.ini").choice("Import", "Comments", words); });
    EXPECT_NE(error.find("Comments=kepp"), std::string::npos) << error;
    EXPECT_NE(error.find("drop, keep"), std::string::npos) << error;
}

TEST(PluginLosses, AreCountedByWhatTheyAre) {
    Losses losses;
    EXPECT_EQ(losses.text(), "");
    losses.count("タグ", 0);
    EXPECT_EQ(losses.text(), "");
    losses.count("コメント");
    losses.count("コメント", 2);
    losses.count("タグ");
    EXPECT_EQ(losses.text(), "持ち込めないもの: コメント 3件、タグ 1件");
}

} // namespace
} // namespace velloria::plugins
