// The settings files of a start: where they lie, what becomes of lost ones, and what is no settings file.
#include "shell/startup.h"

#include "core/ini.h"
#include "platform/file_write.h"
#include "support/test_home.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::removeFile;
using shell::StartResult;

struct SettingsFile {
    QString section;
    QString core::Session::*path;
    QString name;
};
const SettingsFile kFiles[] = {{u"Customize"_s, &core::Session::CustIniFile, u"Customize/Customize.ini"_s},
                               {u"Frame"_s, &core::Session::FrameIniFile, u"Frame.ini"_s},
                               {u"RSS"_s, &core::Session::RSSIniFile, u"RSS.ini"_s},
                               {u"HaloScan"_s, &core::Session::HaloScanIniFile, u"HaloScan.ini"_s},
                               {u"Blog"_s, &core::Session::BlogIniFile, u"Blog.ini"_s}};

class StartupSettings : public TestHome {
protected:
    QString user(const QString& name) const { return path(u"UserData/"_s + name); }
    QString setting(const QString& section, const QString& key) const {
        return core::ReadIniDef(user(u"diary.ini"_s), section, key, u"(missing)"_s);
    }
    void set(const QString& section, const QString& key, const QString& value) const {
        core::WriteIni(user(u"diary.ini"_s), section, key, value);
    }
};

TEST_F(StartupSettings, LieInTheDataFolderUnlessToldOtherwise) {
    for (const SettingsFile& file : kFiles) {
        EXPECT_EQ(session.*file.path, user(file.name));
        EXPECT_EQ(setting(file.section, u"IniFileName"_s), user(file.name));
    }
    EXPECT_FALSE(exists(user(u"Frame.ini"_s))) << "a default is written back even when its file does not exist";
}

TEST_F(StartupSettings, ThatExistAreKeptWhereTheyLie) {
    writeFile(path(u"own.ini"_s), "[x]\r\n");
    for (const SettingsFile& file : kFiles) {
        set(file.section, u"IniFileName"_s, path(u"own.ini"_s));
        start();
        EXPECT_EQ(session.*file.path, path(u"own.ini"_s));
        EXPECT_EQ(setting(file.section, u"IniFileName"_s), path(u"own.ini"_s));
    }
}

TEST_F(StartupSettings, ThatAreLostOrUnsetFallBackAndAreWrittenBack) {
    writeFile(path(u"own.ini"_s), "[x]\r\n");
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(home.path()));
    for (const QString& stored : {u""_s, u"/nowhere/x.ini"_s, u"C:\\x.ini"_s, home.path(), u"own.ini"_s}) {
        for (const SettingsFile& file : kFiles) {
            set(file.section, u"IniFileName"_s, stored);
            ASSERT_EQ(start(), StartResult::Ready);
            EXPECT_EQ(session.*file.path, user(file.name)) << stored.toStdString();
            EXPECT_EQ(setting(file.section, u"IniFileName"_s), user(file.name)) << stored.toStdString();
        }
    }
    QDir::setCurrent(before);
}

TEST_F(StartupSettings, ThatAreNoTextAreRefusedAndLeftAlone) {
    const QByteArray binary = QByteArray("MZ\0\0\x01\xFF", 6);
    const QStringList files{user(u"diary.ini"_s), user(u"Customize/Customize.ini"_s)};
    for (const QString& file : files) {
        const QByteArray before = bytesOf(file);
        writeFile(file, binary);
        const auto all = contentOf(home.path());
        const QString failure = failureOf([&] { start(); });
        EXPECT_TRUE(failure.contains(file)) << failure.toStdString();
        EXPECT_EQ(contentOf(home.path()), all);
        writeFile(file, before);
    }
}

TEST_F(StartupSettings, ThatAreNoTextAreNotCopied) {
    removeFile(user(u"diary.ini"_s));
    for (const QString& name : {u"diary.ini"_s, u"default.ini"_s}) {
        writeFile(path(name), QByteArray("[ALL]\0", 6));
        EXPECT_TRUE(failureOf([&] { start(); }).contains(path(name))) << name.toStdString();
        EXPECT_FALSE(exists(user(u"diary.ini"_s))) << name.toStdString();
        removeFile(path(name));
    }
}

TEST_F(StartupSettings, BehindALinkThatLeadsNowhereEndTheStartWithBothItsEnds) {
    for (const SettingsFile& file : kFiles) {
        QFile::remove(user(file.name));
        ASSERT_TRUE(QFile::link(path(u"gone/x.ini"_s), user(file.name)));
        const QString failure = failureOf([&] { start(); });
        EXPECT_TRUE(failure.contains(user(file.name)) && failure.contains(path(u"gone/x.ini"_s)))
            << failure.toStdString();
        ASSERT_TRUE(QFile::remove(user(file.name)));
    }
    set(u"Frame"_s, u"IniFileName"_s, path(u"link.ini"_s));
    ASSERT_TRUE(QFile::link(path(u"gone/x.ini"_s), path(u"link.ini"_s)));
    EXPECT_NE(failureOf([&] { start(); }), QString());
    EXPECT_EQ(setting(u"Frame"_s, u"IniFileName"_s), path(u"link.ini"_s)) << "no other file takes its place";
    EXPECT_FALSE(exists(path(u"gone"_s)));
}

TEST_F(StartupSettings, OfTheUserBehindALinkThatLeadsNowhereAreNotMadeAnew) {
    QFile::remove(user(u"diary.ini"_s));
    ASSERT_TRUE(QFile::link(path(u"diary-disk.ini"_s), user(u"diary.ini"_s)));
    const QString failure = failureOf([&] { start(); });
    EXPECT_TRUE(failure.contains(user(u"diary.ini"_s)) && failure.contains(path(u"diary-disk.ini"_s)))
        << failure.toStdString();
    EXPECT_FALSE(exists(path(u"diary-disk.ini"_s)));
}

TEST_F(StartupSettings, KeepAFolderWhoseCharactersTheCodePageWritesAsOthers) {
    for (const QString& name : {u"～日記"_s, u"〜日記"_s})
        ASSERT_TRUE(QDir().mkdir(path(name)));
    set(u"ALL"_s, u"DataPath"_s, u""_s);
    set(u"Customize"_s, u"IniFileName"_s, u""_s);
    desk.answers = {path(u"〜日記"_s)};
    start();
    EXPECT_EQ(session.DataPath, path(u"〜日記/"_s));
    start();
    EXPECT_EQ(session.DataPath, path(u"〜日記/"_s));
    EXPECT_EQ(session.CustIniFile, path(u"〜日記/Customize/Customize.ini"_s));
    EXPECT_EQ(QDir(path(u"～日記"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

} // namespace
} // namespace velloria::tests
