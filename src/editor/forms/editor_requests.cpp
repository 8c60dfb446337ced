#include "editor/forms/editor_requests.h"

#include "editor/forms/frmContents.h"

namespace velloria::editor {

void serveRequests(desktop::Context& context) {
    const auto editor = [&context]() -> frmContents& { return context.windows.get<frmContents>(); };
    const auto made = [&context] { return context.windows.find<frmContents>(); };
    desktop::Requests& requests = context.requests;
    requests.isEntryOpen = [made] { return made() && made()->day().isOpen(); };
    requests.seenEditor = [made]() -> std::optional<QRect> {
        const frmContents* shown = made();
        if (!shown || !shown->isVisible())
            return std::nullopt;
        const QRect seen = shown->visibleRegion().boundingRect();
        return QRect(shown->mapToGlobal(seen.topLeft()), seen.size());
    };
    requests.openEntry = [editor](const QString& day, int number) { editor().day().openEntry(day, number); };
    requests.makeImage = [editor](const QString& path) { editor().openImageMaker(path); };
    requests.daysChanged = [editor](const QStringList& days) { editor().day().daysChanged(days); };
    requests.rebuildGenres = [editor] { editor().day().MakeGenretxt(); };
}

} // namespace velloria::editor
