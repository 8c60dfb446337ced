#include "exchange/formats/yaml.h"

#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using exchange::parseYaml;
using exchange::YamlNode;

YamlNode parse(const QByteArray& text) {
    return parseYaml(text, u"x.yml"_s);
}

TEST(Yaml, AllStylesOfTextReadAsTheyWereMeant) {
    const YamlNode root =
        parse("1: plain text\n  goes on\n2: 'it''s\n\n  two'\n3: \"a\\tb \\\n  c\\u3042\\U0001F600\"\n"
              "4: |\n  kept\n  lines\n5: >\n  folded\n  lines\n");
    ASSERT_EQ(root.members.size(), 5U);
    EXPECT_EQ(root.member(u"1")->text, u"plain text goes on"_s);
    EXPECT_EQ(root.member(u"2")->text, u"it's\ntwo"_s);
    EXPECT_EQ(root.member(u"3")->text, u"a\tb cあ😀"_s);
    EXPECT_EQ(root.member(u"4")->text, u"kept\nlines\n"_s);
    EXPECT_EQ(root.member(u"5")->text, u"folded lines\n"_s);
}

TEST(Yaml, OnlyAPlainNullIsNone) {
    const YamlNode root = parse("a:\nb: null\nc: ~\nd: 'null'\ne: ''\nf: {}\n");
    for (const QString& name : {u"a"_s, u"b"_s, u"c"_s})
        EXPECT_TRUE(root.member(name)->isNull()) << name.toStdString();
    for (const QString& name : {u"d"_s, u"e"_s, u"f"_s})
        EXPECT_FALSE(root.member(name)->isNull()) << name.toStdString();
    EXPECT_EQ(root.member(u"g"), nullptr);
}

TEST(Yaml, AliasesAreCopiesAndASignatureIsNoText) {
    const YamlNode root = parse("\xEF\xBB\xBF"
                                "a: &x [1, 2]\nb: *x\n");
    ASSERT_NE(root.member(u"b"), nullptr);
    EXPECT_EQ(root.member(u"b")->items.size(), 2U);
    EXPECT_EQ(root.member(u"b")->items[1].text, u"2"_s);
}

TEST(Yaml, AnEmptyFileIsAnEmptyMap) {
    for (const QByteArray& text : {QByteArray(""), QByteArray("# no more\n"), QByteArray("---\n---\n")})
        EXPECT_TRUE(parse(text).members.empty()) << text.constData();
}

TEST(Yaml, WhatIsNoneIsRefusedWithItsLine) {
    for (const auto& [text, told] : {std::pair{QByteArray("a: 1\nb: [1, 2\n"), u"3行目: YAMLとして読めません"_s},
                                     {QByteArray("a: 1\nb: \"\xFF\"\n"), u"UTF-8の文字ではありません"_s},
                                     {QByteArray("a: *nobody\n"), u"1行目: YAMLとして読めません"_s},
                                     {QByteArray("a: 1\n? [x, y]\n: z\n"), u"2行目: 項目の名前が"_s}}) {
        const QString failure = failureOf([&, bytes = text] { parse(bytes); });
        EXPECT_TRUE(failure.contains(told)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(u"x.yml"_s)) << failure.toStdString();
    }
}

TEST(Yaml, ABombIsRefusedBeforeItGoesOff) {
    QByteArray nodes = "a0: &a0 [x, x, x, x, x, x, x, x, x, x]\n";
    QByteArray texts = "a0: &a0 " + QByteArray(100'000, 'x') + "\n";
    for (int level = 1; level < 30; ++level) {
        const QByteArray name = "a" + QByteArray::number(level);
        const QByteArray below = "*a" + QByteArray::number(level - 1);
        const QByteArray line = name + ": &" + name + " [" + below + ", " + below + "]\n";
        nodes += line;
        texts += line;
    }
    for (const QByteArray& bomb : {nodes, texts, "a: &a [" + QByteArray("*a, *a]\n")})
        EXPECT_NE(failureOf([&] { parse(bomb); }), QString());
    EXPECT_TRUE(
        failureOf([&] { parse("a: " + QByteArray(500, '[') + QByteArray(500, ']')); }).contains(u"深すぎます"_s));
    EXPECT_NE(failureOf([&] { parse("a: " + QByteArray(2'000'000, '[')); }), QString());
}

} // namespace
} // namespace velloria::tests
