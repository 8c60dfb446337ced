#include "editor/image_tag.h"

#include "support/test_home.h"

#include <array>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using editor::automaticImageName;
using editor::ImageAttributes;
using editor::ImageLength;
using editor::imageTag;
using editor::previewNumbers;

TEST(ImageTag, WithNoAttributeItHasItsSourceAlone) {
    EXPECT_EQ(imageTag({.source = registers::pageAddress(u"a.gif"_s)}), u"<IMG SRC=\"./DiaryParts/a.gif\">"_s);
    EXPECT_EQ(imageTag({}), u"<IMG SRC=\"\">"_s);
}

TEST(ImageTag, EachCombinationOfAttributesStandsInTheirOrder) {
    const std::array<QString, 8> pieces{u"width=\"1\""_s,  u"height=\"2%\""_s, u"align=\"left\""_s, u"border=\"3\""_s,
                                        u"hspace=\"4\""_s, u"vspace=\"5\""_s,  u"alt=\"a b\""_s,    u"id='x' ismap"_s};
    for (unsigned set = 0; set < 1U << pieces.size(); ++set) {
        const auto has = [&](unsigned i) { return (set & (1U << i)) != 0; };
        ImageAttributes attributes;
        attributes.source = u"s"_s;
        if (has(0))
            attributes.width.emplace(ImageLength{u"1"_s, u"px"_s});
        if (has(1))
            attributes.height.emplace(ImageLength{u"2"_s, u"%"_s});
        const std::array<std::optional<QString>*, 6> values{&attributes.align,  &attributes.border, &attributes.hspace,
                                                            &attributes.vspace, &attributes.alt,    &attributes.other};
        const std::array<QString, 6> texts{u"left"_s, u"3"_s, u"4"_s, u"5"_s, u"a b"_s, u"id='x' ismap"_s};
        QString expected = u"<IMG SRC=\"s\""_s;
        for (unsigned i = 0; i < pieces.size(); ++i) {
            if (has(i))
                expected += u' ' + pieces[i];
            if (has(i) && i >= 2)
                *values[i - 2] = texts[i - 2];
        }
        EXPECT_EQ(imageTag(attributes), expected + u'>');
        attributes.division = u"align=\"center\""_s;
        EXPECT_EQ(imageTag(attributes), u"<div align=\"center\">"_s + expected + u"></div>"_s);
    }
}

TEST(ImageTag, APercentSignStandsForThatUnitAlone) {
    EXPECT_EQ(imageTag({.source = u"s"_s, .width = ImageLength{u"50"_s, u"%"_s}}), u"<IMG SRC=\"s\" width=\"50%\">"_s);
    EXPECT_EQ(imageTag({.source = u"s"_s, .width = ImageLength{u"50"_s, u"px"_s}}), u"<IMG SRC=\"s\" width=\"50\">"_s);
    EXPECT_EQ(imageTag({.source = u"s"_s, .height = ImageLength{u""_s, u"%"_s}}), u"<IMG SRC=\"s\" height=\"%\">"_s);
}

TEST(ImageTag, ValuesStandAsTyped) {
    EXPECT_EQ(imageTag({.source = u"a\"b<>&.gif"_s, .alt = u"\"q\" & <b>"_s, .other = u""_s, .division = u""_s}),
              u"<div ><IMG SRC=\"a\"b<>&.gif\" alt=\"\"q\" & <b>\" ></div>"_s);
}

TEST(ImageTag, ThePreviewFitsTheSquareAndSmallPicturesGrow) {
    struct Case {
        QSize size;
        QSize drawn;
        QString scale;
    };
    for (const Case& c : std::vector<Case>{{{500, 100}, {167, 33}, u"プレビュー[33%]"_s},
                                           {{100, 500}, {33, 167}, u"プレビュー[33%]"_s},
                                           {{500, 500}, {167, 167}, u"プレビュー[33%]"_s},
                                           {{167, 167}, {167, 167}, u"プレビュー[100%]"_s},
                                           {{10, 10}, {167, 167}, u"プレビュー[1670%]"_s},
                                           {{1, 1}, {167, 167}, u"プレビュー[16700%]"_s},
                                           {{334, 3}, {167, 2}, u"プレビュー[50%]"_s}, // 1.5: halves to even
                                           {{334, 5}, {167, 2}, u"プレビュー[50%]"_s}, // 2.5
                                           {{320, 200}, {167, 104}, u"プレビュー[52%]"_s},
                                           {{40000, 30000}, {167, 125}, u"プレビュー[0%]"_s},
                                           {{40000, 1}, {167, 0}, u"プレビュー[0%]"_s}}) {
        EXPECT_EQ(previewNumbers(c.size).drawn, c.drawn) << c.size.width() << " x " << c.size.height();
        EXPECT_EQ(previewNumbers(c.size).scaleText, c.scale);
    }
    EXPECT_EQ(previewNumbers({500, 100}).sizeText, u"Size : 500 x 100"_s);
}

TEST(ImageTag, EachFailureHasItsTextAndItsCaption) {
    using editor::PreviewFailure;
    const auto box = [](PreviewFailure failure) {
        const editor::PreviewBox shown = editor::previewBox(failure);
        return shown.title + u": "_s + shown.text;
    };
    EXPECT_EQ(box(PreviewFailure::Path), u"Velloria for GDI+: イメージファイルのパスが不正です。"_s);
    EXPECT_EQ(box(PreviewFailure::Load), u"Velloria for GDI+: イメージの取得に失敗しました"_s);
    EXPECT_EQ(box(PreviewFailure::Height), u"Velloria by GDI+: イメージの高さの取得に失敗しました"_s);
    EXPECT_EQ(box(PreviewFailure::Width), u"Velloria by GDI+: イメージの幅の取得に失敗しました"_s);
    EXPECT_EQ(box(PreviewFailure::Area), u"Velloria for GDI+: 表示領域の初期化に失敗しました"_s);
    EXPECT_EQ(box(PreviewFailure::Draw), u"Velloria for GDI+: イメージの描画に失敗しました"_s);
}

class AutomaticName : public TestHome {
protected:
    QString next(const QString& extension = u"jpg"_s, const QString& day = u"2004/01/05"_s) {
        return automaticImageName(files(), day, extension);
    }
    void add(const QString& name, const QString& day = u"2004/01/05"_s) { files().addFile({0, name, day, 1}); }
    registers::FileRegister files() const { return registers::FileRegister(session.databaseFile()); }
};

TEST_F(AutomaticName, RisesWithTheRegisteredPicturesOfTheDay) {
    EXPECT_EQ(next(), u"dimage20040105_01.jpg"_s);
    EXPECT_EQ(next(), u"dimage20040105_01.jpg"_s) << "nothing was registered in between";
    add(next());
    EXPECT_EQ(next(u"png"_s), u"dimage20040105_02.png"_s);
    add(u"dimage20040105_09.gif"_s);
    EXPECT_EQ(next(), u"dimage20040105_10.jpg"_s);
    EXPECT_EQ(next(u"jpg"_s, u"2004/01/06"_s), u"dimage20040106_01.jpg"_s);
    add(u"photo_50.jpg"_s);
    EXPECT_EQ(next(), u"dimage20040105_10.jpg"_s);
}

TEST_F(AutomaticName, TheLastNameByTextOrderCounts) {
    add(u"dimage20040105_99.jpg"_s);
    EXPECT_EQ(next(), u"dimage20040105_100.jpg"_s);
    add(u"dimage20040105_100.jpg"_s);
    EXPECT_EQ(next(), u"dimage20040105_100.jpg"_s);
}

TEST_F(AutomaticName, ANameWithoutANumberIsPassedOver) {
    add(u"dimage20040105_02.jpg"_s);
    add(u"dimage20040105_x.jpg"_s);
    add(u"dimages.jpg"_s);
    EXPECT_EQ(next(), u"dimage20040105_03.jpg"_s);
}

TEST_F(AutomaticName, AFileWithoutAnEndingKeepsThePoint) {
    EXPECT_EQ(next(u""_s), u"dimage20040105_01."_s);
}

} // namespace
} // namespace velloria::tests
