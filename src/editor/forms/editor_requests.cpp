#include "editor/forms/editor_requests.h"

#include "editor/forms/frmContents.h"

namespace velloria::editor {

void serveRequests(desktop::Context& context) {
    const auto editor = [&context]() -> frmContents& { return context.windows.get<frmContents>(); };
    const auto openDay = [&context]() -> OpenDay& { return context.windows.get<OpenDay>(); };
    desktop::Requests& requests = context.requests;
    requests.isEntryOpen = [openDay] { return openDay().isOpen(); };
    requests.seenEditor = [&context]() -> std::optional<QRect> {
        const auto* shown = context.windows.find<frmContents>();
        if (!shown || !shown->isVisible())
            return std::nullopt;
        const QRect seen = shown->visibleRegion().boundingRect();
        return QRect(shown->mapToGlobal(seen.topLeft()), seen.size());
    };
    requests.openEntry = [editor](const QString& day, int number) { editor().day().openEntry(day, number); };
    requests.makeImage = [editor](const QString& path) { editor().openImageMaker(path); };
    requests.daysChanged = [openDay](const QStringList& days) { openDay().daysChanged(days); };
    requests.rebuildGenres = [openDay] { openDay().MakeGenretxt(); };
}

} // namespace velloria::editor
