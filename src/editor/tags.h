// The tags that the editor inserts. A place in the list is picked, then what it inserts is asked for; a tag with a
// maker has its window asked instead.
#pragma once

#include "core/session.h"

#include <QString>

#include <optional>
#include <span>

namespace velloria::editor {

/// A tag whose parameters a window asks for.
enum class TagMaker { None, Font, Rule, List };

/// One item of the tag list; its place in the list tells it apart, not its text.
struct Tag {
    QStringView text;
    QStringView opening;
    QStringView closing;
    TagMaker maker = TagMaker::None;
};

constexpr int kLineBreakTag = 0;
constexpr int kParagraphTag = 1;

/// What the list shows before anything was picked.
inline constexpr QStringView kTagListRest = u"HTMLタグを選んでください。";

/// The twenty items in order.
std::span<const Tag> tags();

/// What takes the place of `selection` (which may be empty) when the tag of this index is inserted. An index outside
/// the list inserts nothing: the selection is its own replacement. Nothing for a tag with a maker.
std::optional<QString> insertion(const core::Session& session, int index, const QString& selection);

} // namespace velloria::editor
