#include "platform/profile_listing.h"

#include "platform/code_page.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QStringList>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::ListedLine;

/// Each line as "number kind [section] name=value", the unread ones with "-" in front.
QStringList listed(const QString& text) {
    QStringList lines;
    for (const ListedLine& line : platform::listProfile(platform::toCodePage(text))) {
        const QString what = line.kind == ListedLine::Kind::Section ? u"section [%1]"_s.arg(line.section)
                             : line.kind == ListedLine::Kind::Key
                                 ? u"key [%1] %2=%3"_s.arg(line.section, line.name, line.value)
                                 : u"lost [%1] %2"_s.arg(line.section, line.value);
        lines += (line.isRead ? u""_s : u"-"_s) + QString::number(line.number) + u' ' + what;
    }
    return lines;
}

TEST(ProfileListing, GivesEveryLineThatIsNoCommentWithItsNumber) {
    EXPECT_EQ(listed(u"\r\n; a=b\r\n[S]\r\n a = \"b\" \r\n\r\nnothing\r\nゾ=ソ]"_s),
              (QStringList{u"3 section [S]"_s, u"4 key [S] a=b"_s, u"-6 lost [S] nothing"_s, u"7 key [S] ゾ=ソ]"_s}));
    EXPECT_EQ(listed(u""_s), QStringList());
}

TEST(ProfileListing, KnowsWhatNoReaderSees) {
    EXPECT_EQ(listed(u"front=1\n[S]\na=1\nA=2\nb=\n[T]\na=3\n[s]\na=4\nc=5\n[t\nx"_s),
              (QStringList{u"-1 key [] front=1"_s, u"2 section [S]"_s, u"3 key [S] a=1"_s, u"-4 key [S] A=2"_s,
                           u"5 key [S] b="_s, u"6 section [T]"_s, u"7 key [T] a=3"_s, u"-8 section [s]"_s,
                           u"-9 key [s] a=4"_s, u"-10 key [s] c=5"_s, u"-11 section [t]"_s, u"-12 lost [t] x"_s}));
}

TEST(ProfileListing, GivesAValueWhole) {
    const QString value(1000, u'x');
    EXPECT_EQ(platform::listProfile("[S]\na=" + value.toLatin1())[1].value, value);
}

} // namespace
} // namespace velloria::tests
