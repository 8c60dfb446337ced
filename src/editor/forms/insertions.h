// What the tools of the editor insert into the pane in front.
#pragma once

#include "desktop/combo.h"
#include "desktop/context.h"
#include "editor/forms/entry_panes.h"
#include "editor/tags.h"
#include "exchange/clipboard_import.h"

#include <functional>

namespace velloria::editor {

/// Each of them needs an open day, and nothing that is still being composed. All throw platform::Failure.
class Insertions {
public:
    /// All outlive this. `tagList` is filled here; `goOn` leads back to writing when a maker closes.
    Insertions(desktop::Context& context, EntryPanes& panes, desktop::Combo& tagList, std::function<void()> goOn);

    /// A link to what the browser shows, around what is selected.
    void insertAddress();
    void insertFromClipboard(exchange::ParagraphTags tags);
    /// An item of the list of tags, by its maker if it has one.
    void insertTag(int index);

private:
    void openMaker(TagMaker maker);

    desktop::Context& m_context;
    EntryPanes& m_panes;
    std::function<void()> m_goOn;
};

} // namespace velloria::editor
