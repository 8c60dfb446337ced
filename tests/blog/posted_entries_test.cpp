#include "blog/posted_entries.h"

#include "core/files.h"
#include "support/faulty_disk.h"
#include "support/test_home.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class PostedEntries : public TestHome {
protected:
    QString file() const { return core::files::kBlogPosts.in(session); }
    void remember(const QString& title, int number = 1, const QString& blog = u"b"_s) {
        blog::BlogEntry entry;
        entry.day = u"2004/05/06"_s;
        entry.number = number;
        entry.title = title;
        blog::rememberPost(run, entry, blog);
    }
    QString titleOf(int number = 1, const QString& blog = u"b"_s) const {
        const auto post = blog::lastPost(session, u"2004/05/06"_s, number, blog);
        return post ? post->title : u"(none)"_s;
    }
};

TEST_F(PostedEntries, AreLinesOfTheirOwnersFile) {
    remember(u"題「\"」\\"_s, 2, u"ブログ"_s);
    EXPECT_EQ(bytesOf(file()), "{\"blog\":\"ブログ\",\"day\":\"2004/05/06\",\"number\":2,\"time\":\"2004/05/06 "
                               "08:05:09\",\"title\":\"題「\\\"」\\\\\"}\n");
    EXPECT_EQ(modeOf(file()), 0600U);
    EXPECT_EQ(titleOf(2, u"ブログ"_s), u"題「\"」\\"_s);
}

TEST_F(PostedEntries, TheLastOneOfDayNumberAndBlogCounts) {
    EXPECT_EQ(titleOf(), u"(none)"_s);
    remember(u"一"_s);
    remember(u"二"_s);
    remember(u"三"_s, 2);
    remember(u"四"_s, 1, u"c"_s);
    EXPECT_EQ(titleOf(), u"二"_s);
    EXPECT_EQ(titleOf(2), u"三"_s);
    EXPECT_EQ(titleOf(1, u"c"_s), u"四"_s);
    EXPECT_EQ(titleOf(3), u"(none)"_s);
    EXPECT_EQ(titleOf(1, u"B"_s), u"(none)"_s);
    EXPECT_EQ(blog::lastPost(session, u"2004/05/07"_s, 1, u"b"_s), std::nullopt);
}

TEST_F(PostedEntries, LinesThatAreNoneArePassedOver) {
    remember(u"一"_s);
    writeFile(file(), bytesOf(file()) + "\n2004/05/06\n[\"2004/05/06\"]\n{\"day\":\"2004/05/06\",\"number\":\"1\","
                                        "\"blog\":\"b\"}\n{\"day\":\"2004/05/06\",\"number\":1,\"blog\":[\"b\"]}\n"
                                        "\xff\xfe 2004/05/06\n{\"day\":\"2004/05/06\",\"number\":1,\"blo");
    EXPECT_EQ(titleOf(), u"一"_s);
    remember(u"二"_s); // behind a line that was cut
    EXPECT_EQ(titleOf(), u"二"_s);
    EXPECT_TRUE(bytesOf(file()).contains("\"blo\n{"));
}

TEST_F(PostedEntries, OddTitlesLeaveTheFileWhole) {
    const QStringList titles{u"改\r\n行"_s,         u"a"_s + QChar(0) + u"b"_s, QString(QChar(0xd83d)),
                             u"\u2028\U0001F431"_s, QString(1'000'000, u'長'),  u"\ufeff題"_s};
    for (const QString& title : titles) {
        remember(title);
        EXPECT_NE(titleOf(), u"(none)"_s);
        remember(u"次"_s);
        EXPECT_EQ(titleOf(), u"次"_s);
    }
    EXPECT_EQ(bytesOf(file()).count('\n'), titles.size() * 2);
}

TEST_F(PostedEntries, TheEndOfAVeryLargeFileIsEnough) {
    QByteArray lines;
    while (lines.size() < 20'000'000)
        lines += "{\"blog\":\"b\",\"day\":\"2004/05/06\",\"number\":9,\"time\":\"\",\"title\":\"x\"}\n";
    writeFile(file(), lines);
    remember(u"一"_s);
    EXPECT_EQ(titleOf(), u"一"_s);
    EXPECT_EQ(titleOf(9), u"x"_s);
}

TEST_F(PostedEntries, AFileThatCanNotBeReadHoldsNone) {
    ASSERT_TRUE(QDir().mkpath(file()));
    EXPECT_EQ(titleOf(), u"(none)"_s);
    EXPECT_FALSE(failureOf([this] { remember(u"一"_s); }).isEmpty());
}

TEST_F(PostedEntries, AFullDiskLeavesTheFileAsItWas) {
    remember(u"一"_s);
    const QByteArray before = bytesOf(file());
    for (const qint64 room : {0, 1, 40}) {
        FaultyDisk disk(session.UserPath);
        disk.leaveRoom(room);
        EXPECT_FALSE(failureOf([this] { remember(u"二"_s); }).isEmpty());
        EXPECT_EQ(bytesOf(file()), before);
    }
    remember(u"二"_s);
    EXPECT_EQ(titleOf(), u"二"_s);
}

TEST_F(PostedEntries, AreToldWithTheirTitleAsItWas) {
    EXPECT_EQ(blog::postedNotice({u"題 %1 %3"_s, u"2004/05/06 08:05:09"_s}, u"ブログ"_s),
              u"この日記は 2004/05/06 08:05:09 に「題 %1 %3」としてブログへ投稿済みです。"_s);
}

} // namespace
} // namespace velloria::tests
