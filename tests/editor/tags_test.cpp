#include "editor/tags.h"

#include "convert/paragraphs.h"
#include "core/ini.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using editor::insertion;

class Tags : public TestHome {
protected:
    QString inserted(int index, const QString& selection) {
        return insertion(session, index, selection).value_or(u"(maker)"_s);
    }
    void setAttributes(const QString& text) {
        core::WriteIni(session.DiaryIniFile, u"diaryEditer"_s, u"P_TagAdd"_s, text);
    }
};

TEST_F(Tags, TheListHasTwentyItemsInOrder) {
    const QStringList expected{u"改行 <BR>"_s,
                               u"段落 <P>"_s,
                               u"太字 <B>"_s,
                               u"斜体 <I>"_s,
                               u"下線 <U>"_s,
                               u"取消線 <S>"_s,
                               u"強調 <EM>"_s,
                               u"より強い強調 <STRONG>"_s,
                               u"追加 <INS>"_s,
                               u"削除 <DEL>"_s,
                               u"上付 <SUP>"_s,
                               u"下付 <SUB>"_s,
                               u"文字色/大きさ <FONT>"_s,
                               u"区切り線<HR>"_s,
                               u"リスト <OL>/<UL>"_s,
                               u"短文引用 <Q>"_s,
                               u"引用 <BLOCKQUOTE>"_s,
                               u"等幅 <TT>"_s,
                               u"そのまま表示 <PRE>"_s,
                               u"そのまま表示 <XMP>"_s};
    QStringList texts;
    for (const editor::Tag& tag : editor::tags())
        texts += tag.text.toString();
    EXPECT_EQ(texts, expected);
}

TEST_F(Tags, EachTagWrapsTheSelectionInItsOwnSpelling) {
    const QMap<int, QString> expected{{0, u"<BR>x"_s},         {1, u"<P>x</P>"_s},
                                      {2, u"<B>x</B>"_s},      {3, u"<I>x</I>"_s},
                                      {4, u"<U>x</U>"_s},      {5, u"<S>x</S>"_s},
                                      {6, u"<em>x</em>"_s},    {7, u"<strong>x</strong>"_s},
                                      {8, u"<ins>x</ins>"_s},  {9, u"<del>x</del>"_s},
                                      {10, u"<SUP>x</SUP>"_s}, {11, u"<SUB>x</SUB>"_s},
                                      {15, u"<q>x</q>"_s},     {16, u"<BLOCKQUOTE>x</BLOCKQUOTE>"_s},
                                      {17, u"<TT>x</TT>"_s},   {18, u"<PRE>x</PRE>"_s},
                                      {19, u"<XMP>x</XMP>"_s}};
    for (auto tag = expected.begin(); tag != expected.end(); ++tag)
        EXPECT_EQ(inserted(tag.key(), u"x"_s), tag.value()) << tag.key();
}

TEST_F(Tags, WithoutASelectionThePairStandsAlone) {
    EXPECT_EQ(inserted(0, {}), u"<BR>"_s);
    EXPECT_EQ(inserted(2, {}), u"<B></B>"_s);
}

TEST_F(Tags, ThreeOfThemAreMadeInWindows) {
    for (const int index : {12, 13, 14})
        EXPECT_EQ(inserted(index, u"x"_s), u"(maker)"_s);
    EXPECT_EQ(editor::tags()[12].maker, editor::TagMaker::Font);
    EXPECT_EQ(editor::tags()[13].maker, editor::TagMaker::Rule);
    EXPECT_EQ(editor::tags()[14].maker, editor::TagMaker::List);
}

TEST_F(Tags, AnIndexOutsideTheListInsertsNothing) {
    for (const int index : {-1, 20, 1000})
        EXPECT_EQ(inserted(index, u"x"_s), u"x"_s);
}

TEST_F(Tags, AParagraphTakesTheUsersAttributes) {
    EXPECT_EQ(convert::paragraphOpening(session), u"<P>"_s);
    setAttributes(u"class=a"_s);
    EXPECT_EQ(inserted(1, {}), u"<P class=a></P>"_s);
    EXPECT_EQ(inserted(1, u"x"_s), u"<P class=a>x</P>"_s);
    setAttributes({});
    EXPECT_EQ(inserted(1, {}), u"<P></P>"_s);
}

} // namespace
} // namespace velloria::tests
