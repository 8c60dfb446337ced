#include "editor/tags.h"

#include "convert/paragraphs.h"

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

// The mix of capitals and small letters is fixed.
constexpr Tag kTags[] = {
    {u"改行 <BR>", u"<BR>", u""},
    {u"段落 <P>", u"<P>", u"</P>"}, // the opening is paragraphOpening's
    {u"太字 <B>", u"<B>", u"</B>"},
    {u"斜体 <I>", u"<I>", u"</I>"},
    {u"下線 <U>", u"<U>", u"</U>"},
    {u"取消線 <S>", u"<S>", u"</S>"},
    {u"強調 <EM>", u"<em>", u"</em>"},
    {u"より強い強調 <STRONG>", u"<strong>", u"</strong>"},
    {u"追加 <INS>", u"<ins>", u"</ins>"},
    {u"削除 <DEL>", u"<del>", u"</del>"},
    {u"上付 <SUP>", u"<SUP>", u"</SUP>"},
    {u"下付 <SUB>", u"<SUB>", u"</SUB>"},
    {u"文字色/大きさ <FONT>", u"", u"", TagMaker::Font},
    {u"区切り線<HR>", u"", u"", TagMaker::Rule},
    {u"リスト <OL>/<UL>", u"", u"", TagMaker::List},
    {u"短文引用 <Q>", u"<q>", u"</q>"},
    {u"引用 <BLOCKQUOTE>", u"<BLOCKQUOTE>", u"</BLOCKQUOTE>"},
    {u"等幅 <TT>", u"<TT>", u"</TT>"},
    {u"そのまま表示 <PRE>", u"<PRE>", u"</PRE>"},
    {u"そのまま表示 <XMP>", u"<XMP>", u"</XMP>"},
};

} // namespace

std::span<const Tag> tags() {
    return kTags;
}

std::optional<QString> insertion(const core::Session& session, int index, const QString& selection) {
    if (index < 0 || std::size_t(index) >= std::size(kTags))
        return selection;
    const Tag& tag = kTags[index];
    if (tag.maker != TagMaker::None)
        return std::nullopt;
    const QString opening = index == kParagraphTag ? convert::paragraphOpening(session) : tag.opening.toString();
    return opening + selection + tag.closing.toString();
}

} // namespace velloria::editor
