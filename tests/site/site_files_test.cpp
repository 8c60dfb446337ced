// Which registered files Save HTML, logs and a rebuild bring to the site, and what they say of the others.

#include "core/keys.h"
#include "core/settings_change.h"
#include "site/site_home.h"
#include "site/site_rebuild.h"
#include "site/weather.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class FilesOfTheSite : public SiteHome {
protected:
    FilesOfTheSite() {
        for (const QString& name : site::weatherPictures())
            QFile::remove(session.DataPath + u"DiaryParts/"_s + name);
    }
    void registerPart(const QString& name, const QString& day) {
        putPart(name, name.toUtf8());
        registerFile(name, day);
    }
    QStringList siteParts(const QString& folder = u"DiaryParts"_s) const {
        return QDir(path(u"site/"_s + folder)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    }
    QStringList told(const QString& part) const { return desk.texts(u"status"_s).filter(part); }
};

const QString kRemains = u"公開したものがサイトに残っています。"_s;
const QString kNoName = u"ファイルの名前ではない"_s;

TEST_F(FilesOfTheSite, SaveHTMLLeavesThoseOfPrivateEntriesAtHome) {
    writePrivate(u"2004/05/01"_s, u"秘密"_s);
    write(u"2004/05/02"_s, u"公開"_s);
    registerPart(u"private.gif"_s, u"2004/05/01"_s);
    registerPart(u"public.gif"_s, u"2004/05/02"_s);
    saver().SaveHTML();
    EXPECT_EQ(siteParts(), QStringList{u"public.gif"_s});
    EXPECT_EQ(told(u"private.gif"_s), QStringList());
    ASSERT_EQ(saver().saveAs(path(u"site2/x.htm"_s)), platform::Outcome::Done);
    EXPECT_EQ(QDir(path(u"site2/DiaryParts"_s)).entryList(QDir::Files), QStringList{u"public.gif"_s});
    core::writeQuietly(session, core::keys::kPrivateFiles, u"1"_s);
    saver().SaveHTML();
    EXPECT_TRUE(exists(path(u"site2/DiaryParts/private.gif"_s)));
}

/// A link in the place of a registered file, for one to the diary itself.
TEST_F(FilesOfTheSite, WhatALinkLeadsOutToStaysAtHomeAndIsNamedOnce) {
    write(u"2004/05/01"_s, u"題"_s);
    const QString parts = session.DataPath + u"DiaryParts/"_s;
    registerPart(u"real.gif"_s, u"ALL"_s);
    for (const auto& [name, target] : {std::pair{u"diary.gif"_s, session.databaseFile()},
                                       {u"outside.gif"_s, path(u"outside"_s)},
                                       {u"inside.gif"_s, parts + u"real.gif"_s},
                                       {u"Rainy.gif"_s, path(u"outside"_s)}}) {
        ASSERT_TRUE(QFile::link(target, parts + name));
        if (name != u"Rainy.gif"_s)
            registerFile(name, name == u"diary.gif" ? u"2004/05/01"_s : u"ALL"_s);
    }
    writeFile(path(u"outside"_s), "secret");
    const QString stray = u"「%1」はDiaryPartsの外にあるファイルへのリンクなので、サイトに入れていません。"_s.arg(
        u"Rainy.gif」「diary.gif」「outside.gif"_s);
    const QStringList free{u"inside.gif"_s, u"real.gif"_s};
    desk.events = {};
    saver().SaveHTML();
    EXPECT_EQ(siteParts(), free);
    EXPECT_EQ(told(u"リンク"_s), QStringList{stray});
    desk.events = {};
    archive().save(u"2004"_s, u"5"_s);
    EXPECT_EQ(siteParts(u"DiaryLog/DiaryParts"_s), free);
    EXPECT_EQ(siteParts(), free);
    EXPECT_EQ(told(u"リンク"_s), QStringList{stray});
    EXPECT_EQ(sqlValue(u"SELECT max(Logged) FROM FileDB WHERE FileName IN ('diary.gif', 'outside.gif', 'Rainy.gif')"_s),
              u"0"_s);
}

TEST_F(FilesOfTheSite, AFolderBehindALinkHoldsItsFiles) {
    const QString parts = session.DataPath + u"DiaryParts"_s;
    ASSERT_TRUE(QDir().rename(parts, path(u"elsewhere"_s)));
    ASSERT_TRUE(QFile::link(path(u"elsewhere"_s), parts));
    registerPart(u"real.gif"_s, u"ALL"_s);
    ASSERT_TRUE(QFile::link(u"real.gif"_s, parts + u"/inside.gif"_s));
    registerFile(u"inside.gif"_s, u"ALL"_s);
    saver().SaveHTML();
    EXPECT_EQ(siteParts(), (QStringList{u"inside.gif"_s, u"real.gif"_s}));
}

TEST_F(FilesOfTheSite, ALinkInTheSiteIsReplacedAndItsTargetStays) {
    registerPart(u"a.gif"_s, u"2004/05/01"_s);
    registerPart(u"all.gif"_s, u"ALL"_s);
    writeFile(path(u"outside"_s), "own");
    for (const QString& name : {u"a.gif"_s, u"all.gif"_s}) {
        for (const QString& folder : {u"DiaryParts"_s, u"DiaryLog/DiaryParts"_s}) {
            QDir(path(u"site"_s)).mkpath(folder);
            ASSERT_TRUE(QFile::link(path(u"nowhere"_s), path(u"site/"_s + folder + u'/' + name)));
        }
    }
    QFile::remove(path(u"site/DiaryLog/DiaryParts/a.gif"_s));
    ASSERT_TRUE(QFile::link(path(u"outside"_s), path(u"site/DiaryLog/DiaryParts/a.gif"_s)));
    saver().SaveHTML();
    archive().save(u"2004"_s, u"5"_s);
    for (const QString& name : {u"a.gif"_s, u"all.gif"_s}) {
        for (const QString& folder : {u"DiaryParts/"_s, u"DiaryLog/DiaryParts/"_s}) {
            EXPECT_FALSE(QFileInfo(path(u"site/"_s + folder + name)).isSymLink());
            EXPECT_EQ(bytesOf(path(u"site/"_s + folder + name)), name.toUtf8());
        }
    }
    EXPECT_EQ(bytesOf(path(u"outside"_s)), "own");
    EXPECT_FALSE(exists(path(u"nowhere"_s)));
}

TEST_F(FilesOfTheSite, ALogSaysThatWhatItHasTakenAlongBeforeStaysOfANowPrivateEntry) {
    write(u"2004/04/01"_s, u"題"_s);
    registerPart(u"a.gif"_s, u"2004/04/01"_s);
    archive().save(u"2004"_s, u"4"_s);
    ASSERT_EQ(sqlValue(u"SELECT Logged FROM FileDB"_s), u"1"_s);
    sql(u"UPDATE Contents SET Private = 1"_s);
    desk.events = {};
    archive().save(u"2004"_s, u"4"_s);
    EXPECT_EQ(told(kRemains), QStringList{u"「a.gif」は非公開の日記だけのファイルですが、"_s + kRemains});
    EXPECT_EQ(lastStatus(), told(kRemains).last());
}

TEST_F(FilesOfTheSite, SaveHTMLSaysThatACopyOfANowPrivateEntryStays) {
    write(u"2004/05/01"_s, u"題"_s);
    registerPart(u"a.gif"_s, u"2004/05/01"_s);
    saver().SaveHTML();
    sql(u"UPDATE Contents SET Private = 1"_s);
    desk.events = {};
    saver().SaveHTML();
    EXPECT_EQ(siteParts(), QStringList{u"a.gif"_s});
    EXPECT_EQ(told(kRemains), QStringList{u"「a.gif」は非公開の日記だけのファイルですが、"_s + kRemains});
    EXPECT_EQ(lastStatus(), told(kRemains).last());
}

TEST_F(FilesOfTheSite, InTheDataFolderAPrivateFileIsNoCopy) {
    session.FilePath = session.DataPath;
    writePrivate(u"2004/05/01"_s, u"秘密"_s);
    registerPart(u"a.gif"_s, u"2004/05/01"_s);
    saver().SaveHTML();
    archive().save(u"2004"_s, u"5"_s);
    EXPECT_EQ(told(kRemains), QStringList());
    EXPECT_FALSE(exists(session.DataPath + u"DiaryLog/DiaryParts/a.gif"_s));
}

TEST_F(FilesOfTheSite, ALogLeavesThoseOfPrivateEntriesUnlogged) {
    writePrivate(u"2004/05/01"_s, u"秘密"_s);
    write(u"2004/05/02"_s, u"公開"_s);
    registerPart(u"private.gif"_s, u"2004/05/01"_s);
    registerPart(u"public.gif"_s, u"2004/05/02"_s);
    registerPart(u"both.gif"_s, u"2004/05/01"_s);
    registerFile(u"both.gif"_s, u"2004/05/02"_s);
    archive().save(u"2004"_s, u"5"_s);
    EXPECT_EQ(siteParts(u"DiaryLog/DiaryParts"_s), (QStringList{u"both.gif"_s, u"public.gif"_s}));
    EXPECT_EQ(QDir(session.DataPath + u"DiaryLog/DiaryParts"_s).entryList(QDir::Files),
              (QStringList{u"both.gif"_s, u"public.gif"_s}));
    EXPECT_EQ(fileRows(), (QStringList{u"private.gif 2004/05/01 0 0"_s, u"public.gif 2004/05/02 0 1"_s,
                                       u"both.gif 2004/05/01 0 1"_s, u"both.gif 2004/05/02 0 1"_s}));
    EXPECT_EQ(boxes(), QStringList{u"information: Logファイル化しました。"_s});
    sql(u"UPDATE Contents SET Private = 0"_s);
    archive().save(u"2004"_s, u"5"_s);
    EXPECT_TRUE(siteHas(u"DiaryLog/DiaryParts/private.gif"_s));
}

TEST_F(FilesOfTheSite, ALogSaysWhatHasGoneUpOfAPrivateEntry) {
    writePrivate(u"2004/05/01"_s, u"秘密"_s);
    registerPart(u"sent.gif"_s, u"2004/05/01"_s);
    sql(u"UPDATE FileDB SET Uploaded = 1"_s);
    archive().save(u"2004"_s, u"5"_s);
    EXPECT_EQ(told(kRemains).size(), 1);
    EXPECT_EQ(fileRows(), QStringList{u"sent.gif 2004/05/01 1 0"_s});
}

TEST_F(FilesOfTheSite, ARebuildSaysEachNameOnce) {
    for (const QString& day : {u"2004/03/01"_s, u"2004/04/01"_s, u"2004/05/01"_s})
        writePrivate(day, u"秘密"_s);
    registerPart(u"a.gif"_s, u"2004/03/01"_s);
    registerFile(u"a.gif"_s, u"2004/04/01"_s);
    registerFile(u"a.gif"_s, u"2004/05/01"_s);
    registerFile(u"../diary.mdb"_s, u"ALL"_s);
    sql(u"UPDATE FileDB SET Uploaded = 1 WHERE FileName = 'a.gif'"_s);
    site::rebuildSite(run, {}, {});
    EXPECT_EQ(told(u"「a.gif」"_s).size(), 1);
    EXPECT_EQ(told(kNoName).size(), 1);
    EXPECT_EQ(siteParts(), QStringList());
}

TEST_F(FilesOfTheSite, ANameThatLeadsElsewhereBringsNothingAlong) {
    writeFile(session.DataPath + u"secret.txt"_s, "secret");
    const QStringList names{u"../diary.mdb"_s,
                            u"../secret.txt"_s,
                            u"..\\secret.txt"_s,
                            session.DataPath + u"secret.txt"_s,
                            u".."_s,
                            u"."_s,
                            u""_s};
    for (const QString& name : names) {
        registerFile(name, u"2004/05/06"_s);
        registerFile(name, u"ALL"_s);
    }
    registerPart(u"good.gif"_s, u"2004/05/06"_s);
    saver().SaveHTML();
    EXPECT_EQ(contentOf(path(u"site"_s)).keys(),
              (QStringList{u"/DiaryParts"_s, u"/DiaryParts/good.gif"_s, u"/x.htm"_s}));
    ASSERT_EQ(told(kNoName).size(), 1);
    for (const QString& name : names)
        EXPECT_EQ(told(kNoName)[0].count(u'「' + name + u'」'), 1) << name.toStdString();
}

TEST_F(FilesOfTheSite, APieceOfASetLeadsToNoPageOfTheUser) {
    writePrivate(u"2004/05/06"_s, u"秘密"_s);
    saver().SaveTmpFile();
    setSetting(keys::body::kUpText, u"../tmp"_s);
    EXPECT_TRUE(lacks(makeMonth(), u"秘密"_s));
}

} // namespace
} // namespace velloria::tests
