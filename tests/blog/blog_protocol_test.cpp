#include "blog/blog_protocol.h"

#include "core/files.h"
#include "support/test_home.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Protocol : public TestHome {
protected:
    QString file() const { return core::files::kBlogLog.in(session); }
};

TEST_F(Protocol, IsThatOfTheLastRunAndItsOwnersAlone) {
    EXPECT_EQ(blog::lastProtocol(session), QStringList());
    writeFile(file(), "older lines\n");
    QFile::setPermissions(file(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    blog::BlogProtocol protocol(run, u"日記"_s);
    protocol.add(u"一行"_s);
    const QStringList lines{u"2004/05/06 08:05:09 テンプレート: 日記"_s, u"2004/05/06 08:05:09 一行"_s};
    EXPECT_EQ(blog::lastProtocol(session), lines);
    EXPECT_EQ(protocol.text(), lines.join(u"\r\n"_s));
    EXPECT_EQ(modeOf(file()), 0600U);
    QFile::remove(file());
    blog::BlogProtocol another(run, u"日記"_s);
    EXPECT_EQ(modeOf(file()), 0600U);
}

TEST_F(Protocol, HoldsEachLineAsSoonAsItIsTold) {
    blog::BlogProtocol protocol(run, u"b"_s);
    protocol.add(u"x"_s);
    EXPECT_EQ(bytesOf(file()).count('\n'), 2);
}

TEST_F(Protocol, ALineStaysOneLineOfText) {
    blog::BlogProtocol protocol(run, u"b\r\nc"_s);
    protocol.add(u"a\nb\x1b[2J\u0085"_s + QChar(0) + u"c"_s);
    protocol.add(QString(100'000, u'x'));
    const QStringList lines = blog::lastProtocol(session);
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].endsWith(u"b..c"_s));
    EXPECT_TRUE(lines[1].endsWith(u" a.b.[2J..c"_s));
    EXPECT_LT(lines[2].size(), 2100);
}

TEST_F(Protocol, IsKeptInMemoryWhenTheDiskRefuses) {
    ASSERT_TRUE(QDir().mkpath(file()));
    blog::BlogProtocol protocol(run, u"b"_s);
    protocol.add(u"x"_s);
    EXPECT_EQ(protocol.text().count(u"\r\n"_s), 1);
    EXPECT_FALSE(failureOf([this] { blog::lastProtocol(session); }).isEmpty());
}

} // namespace
} // namespace velloria::tests
