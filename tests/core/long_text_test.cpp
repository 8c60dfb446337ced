#include "core/long_text.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using core::replaced;
using core::withCrLf;

TEST(LongText, ReplacesFromTheFrontAndNotWithinWhatItPutIn) {
    const struct {
        QString text, before, after, expected;
    } cases[] = {{u""_s, u"a"_s, u"b"_s, u""_s},           {u"abc"_s, u"x"_s, u"y"_s, u"abc"_s},
                 {u"aaa"_s, u"aa"_s, u"b"_s, u"ba"_s},     {u"ab"_s, u"a"_s, u"aa"_s, u"aab"_s},
                 {u"xaxa"_s, u"a"_s, u""_s, u"xx"_s},      {u"a"_s, u"a"_s, u"bc"_s, u"bc"_s},
                 {u"一二一"_s, u"一"_s, u"1"_s, u"1二1"_s}};
    for (const auto& c : cases)
        EXPECT_EQ(replaced(c.text, c.before, c.after), c.expected) << c.text.toStdString();
}

TEST(LongText, GivesEveryLineEndTheSameForm) {
    const std::pair<QString, QString> cases[] = {{u""_s, u""_s},
                                                 {u"a"_s, u"a"_s},
                                                 {u"a\nb"_s, u"a\r\nb"_s},
                                                 {u"a\r\nb"_s, u"a\r\nb"_s},
                                                 {u"a\rb\r"_s, u"a\r\nb\r\n"_s},
                                                 {u"\r\r\n\n"_s, u"\r\n\r\n\r\n"_s}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(withCrLf(text), expected) << text.toStdString();
}

} // namespace
} // namespace velloria::tests
