#include "editor/forms/insertions.h"

#include "browser/forms/frmBrowser.h"
#include "desktop/clipboard.h"
#include "editor/forms/frmHTMLMakeFont.h"
#include "editor/forms/frmHTMLMakeHR.h"
#include "editor/forms/frmHTMLMakeList.h"

using namespace Qt::StringLiterals;

namespace velloria::editor {

Insertions::Insertions(desktop::Context& context, EntryPanes& panes, desktop::Combo& tagList,
                       std::function<void()> goOn)
    : m_context(context)
    , m_panes(panes)
    , m_goOn(std::move(goOn)) {
    tagList.setPlaceholderText(kTagListRest.toString());
    tagList.setToolTip(kTagListRest.toString());
    for (const Tag& tag : tags())
        tagList.addItem(tag.text.toString());
    tagList.setItemData(kLineBreakTag, u"Shift+Enter"_s, Qt::ToolTipRole);
    tagList.setItemData(kParagraphTag, u"Ctrl+Enter"_s, Qt::ToolTipRole);
}

void Insertions::insertAddress() {
    const QString url = m_context.windows.get<browser::frmBrowser>().LocationURL();
    desktop::TextPane& pane = m_panes.front();
    pane.replaceSelection(u"<A HREF=\""_s + url + u"\">"_s + pane.selectedText() + u"</A>"_s);
    pane.setFocus();
}

void Insertions::insertFromClipboard(exchange::ParagraphTags tags) {
    const QString text = exchange::GetClipboardText(m_context, desktop::clipboardText(), tags);
    if (text.isEmpty())
        return;
    m_panes.insertAtCaret(text);
    m_panes.front().setFocus();
}

void Insertions::insertTag(int index) {
    desktop::TextPane& pane = m_panes.front();
    const std::optional<QString> text = insertion(m_context.session, index, pane.selectedText());
    if (!text) {
        openMaker(tags()[std::size_t(index)].maker);
        return;
    }
    if (*text != pane.selectedText())
        pane.replaceSelection(*text);
    pane.setFocus();
}

/// Whatever becomes of the maker, writing goes on in the first pane, where makers insert.
void Insertions::openMaker(TagMaker maker) {
    const auto open = [&](desktop::ToolWindow& window) {
        window.giveBackTo(m_goOn);
        window.showWindow();
    };
    try {
        if (maker == TagMaker::Font)
            open(m_context.windows.get<frmHTMLMakeFont>());
        else if (maker == TagMaker::Rule)
            open(m_context.windows.get<frmHTMLMakeHR>());
        else
            open(m_context.windows.get<frmHTMLMakeList>());
    } catch (...) {
        m_goOn();
        throw;
    }
}

} // namespace velloria::editor
