#include "browser/page_files.h"

#include "platform/file_write.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using velloria::browser::FileUse;

namespace velloria::tests {
namespace {

/// A data folder with the diary in it, as at the first start, a site beside it, and what is nobody's business.
class PageFiles : public ::testing::Test {
protected:
    PageFiles() {
        session.DataPath = folder.path() + u"/my data/"_s;
        session.FilePath = folder.path() + u"/site/"_s;
        for (const QString& name :
             {u"my data/tmp.htm"_s, u"my data/tmp_D.htm"_s, u"my data/LEFT.HTM"_s, u"my data/sub/inner.html"_s,
              u"my data/DiaryLog/200404.htm"_s, u"my data/DiaryParts/a.gif"_s, u"my data/DiaryParts/日記 #1%.jpg"_s,
              u"my data/a.css"_s, u"my data/a.js"_s, u"my data/diary.ini"_s, u"my data/diary.mdb"_s,
              u"my data/Genre.csv"_s, u"site/index.htm"_s, u"site/a.gif"_s, u"secret/secret.htm"_s,
              u"secret/secret.gif"_s, u"secret/a.css"_s, u"secret/a.js"_s, u"my data2/x.gif"_s})
            put(name);
    }
    void put(const QString& name) const {
        QDir().mkpath(QFileInfo(path(name)).path());
        platform::replaceFile(path(name), "text", platform::Durability::Derived);
    }
    QString path(const QString& name) const { return folder.path() + u'/' + name; }
    QUrl url(const QString& name) const { return QUrl::fromLocalFile(path(name)); }
    bool may(const QUrl& file, FileUse use, const QString& page = u"my data/tmp.htm"_s) const {
        return browser::mayHaveFile(session, file, use, url(page));
    }
    bool may(const QString& name, FileUse use, const QString& page = u"my data/tmp.htm"_s) const {
        return may(url(name), use, page);
    }

    QTemporaryDir folder;
    core::Session session;
};

TEST_F(PageFiles, AreThoseThatAPageShows) {
    EXPECT_TRUE(may(u"my data/DiaryParts/a.gif"_s, FileUse::Picture));
    EXPECT_TRUE(may(u"my data/DiaryParts/日記 #1%.jpg"_s, FileUse::Picture));
    EXPECT_TRUE(may(u"my data/a.css"_s, FileUse::Style));
    EXPECT_TRUE(may(u"my data/a.js"_s, FileUse::Script));
    EXPECT_TRUE(may(u"site/a.gif"_s, FileUse::Picture));
    EXPECT_TRUE(may(u"site/a.gif"_s, FileUse::Picture, u"site/index.htm"_s));
}

TEST_F(PageFiles, OfFramesArePagesBesideThePageOrBelowIt) {
    for (const QString& name : {u"tmp_D.htm"_s, u"LEFT.HTM"_s, u"sub/inner.html"_s, u"DiaryLog/200404.htm"_s})
        EXPECT_TRUE(may(u"my data/"_s + name, FileUse::Frame)) << name.toStdString();
    for (const QString& name :
         {u"my data/diary.ini"_s, u"my data/diary.mdb"_s, u"my data/Genre.csv"_s, u"my data/DiaryParts/a.gif"_s,
          u"my data/"_s, u"my data/gone.htm"_s, u"site/index.htm"_s, u"secret/secret.htm"_s})
        EXPECT_FALSE(may(name, FileUse::Frame)) << name.toStdString();
    EXPECT_FALSE(may(u"my data/tmp.htm"_s, FileUse::Frame, u"my data/DiaryLog/200404.htm"_s));
}

TEST_F(PageFiles, AreNoneThatAScriptWouldRead) {
    for (const QString& name : {u"diary.ini"_s, u"diary.mdb"_s, u"Genre.csv"_s, u"tmp.htm"_s}) {
        for (const FileUse use : {FileUse::Style, FileUse::Script, FileUse::Other})
            EXPECT_FALSE(may(u"my data/"_s + name, use)) << name.toStdString();
    }
    EXPECT_FALSE(may(u"my data/a.js"_s, FileUse::Other));
    EXPECT_FALSE(may(u"my data/a.js"_s, FileUse::Style));
}

TEST_F(PageFiles, LieInNoOtherFolder) {
    EXPECT_FALSE(may(u"secret/secret.gif"_s, FileUse::Picture));
    EXPECT_FALSE(may(u"my data2/x.gif"_s, FileUse::Picture));
    EXPECT_FALSE(may(u"secret/a.css"_s, FileUse::Style));
    EXPECT_FALSE(may(u"secret/a.js"_s, FileUse::Script));
    for (const QString& way : {u"my data/../secret/secret.gif"_s, u"my data/DiaryParts/../../secret/secret.gif"_s})
        EXPECT_FALSE(may(way, FileUse::Picture)) << way.toStdString();
    const QByteArray data = url(u"my data/"_s).toEncoded();
    for (const char* way :
         {"%2e%2e/secret/secret.gif", "..%2fsecret%2fsecret.gif", "DiaryParts/..%2f..%2Fsecret/secret.gif"})
        EXPECT_FALSE(may(QUrl::fromEncoded(data + way), FileUse::Picture)) << way;
}

TEST_F(PageFiles, AreResolvedByTheirLinks) {
    const auto link = [this](const QString& target, const QString& name) {
        ASSERT_TRUE(QFile::link(path(target), path(name)));
    };
    link(u"secret/secret.gif"_s, u"my data/link.gif"_s);
    link(u"secret"_s, u"my data/other"_s);
    link(u"my data/diary.ini"_s, u"my data/link.css"_s);
    link(u"my data/diary.ini"_s, u"my data/link.htm"_s);
    link(u"my data/a.css"_s, u"my data/good.css"_s);
    link(u"secret/gone.gif"_s, u"my data/gone.gif"_s);
    EXPECT_FALSE(may(u"my data/link.gif"_s, FileUse::Picture));
    EXPECT_FALSE(may(u"my data/other/secret.gif"_s, FileUse::Picture));
    EXPECT_FALSE(may(u"my data/other/secret.htm"_s, FileUse::Frame));
    EXPECT_FALSE(may(u"my data/link.css"_s, FileUse::Style));
    EXPECT_FALSE(may(u"my data/link.htm"_s, FileUse::Frame));
    EXPECT_FALSE(may(u"my data/gone.gif"_s, FileUse::Picture));
    EXPECT_TRUE(may(u"my data/good.css"_s, FileUse::Style));
}

TEST_F(PageFiles, MayLieOnAnotherDiskWithALinkInTheirFoldersPlace) {
    ASSERT_TRUE(QDir(path(u"my data/DiaryParts"_s)).removeRecursively());
    put(u"disk/a.gif"_s);
    ASSERT_TRUE(QFile::link(path(u"disk"_s), path(u"my data/DiaryParts"_s)));
    EXPECT_TRUE(may(u"my data/DiaryParts/a.gif"_s, FileUse::Picture));
    ASSERT_TRUE(QFile::link(path(u"my data"_s), path(u"way"_s)));
    session.DataPath = path(u"way/"_s);
    EXPECT_TRUE(may(u"way/tmp_D.htm"_s, FileUse::Frame, u"way/tmp.htm"_s));
}

TEST_F(PageFiles, AreNotForPagesOfTheWebOrOfOtherMachines) {
    const QUrl picture = url(u"my data/DiaryParts/a.gif"_s);
    for (const char* page : {"http://127.0.0.1/", "https://127.0.0.1/", "data:text/html,x", "about:blank", ""})
        EXPECT_FALSE(browser::mayHaveFile(session, picture, FileUse::Picture, QUrl(QString::fromLatin1(page)))) << page;
    for (const QString& host : {u"localhost"_s, u"other"_s}) {
        QUrl elsewhere = picture;
        elsewhere.setHost(host);
        EXPECT_FALSE(may(elsewhere, FileUse::Picture)) << host.toStdString();
    }
}

TEST_F(PageFiles, AreNoneWithoutFoldersOfPages) {
    session.DataPath.clear();
    session.FilePath.clear();
    EXPECT_FALSE(may(u"my data/DiaryParts/a.gif"_s, FileUse::Picture));
    EXPECT_FALSE(may(u"my data/tmp_D.htm"_s, FileUse::Frame));
}

} // namespace
} // namespace velloria::tests
