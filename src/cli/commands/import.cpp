#include "cli/command.h"
#include "exchange/clipboard_import.h"
#include "exchange/import_groups.h"
#include "platform/failure.h"
#include "site/save_html.h"
#include "store/genre_list.h"

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void checkForm(const Invocation& invocation) {
    if (invocation.has(u"--plain"_s) == invocation.has(u"--formatted"_s))
        throw UsageError(u"--formatted か --plain のどちらか一つを指定してください。"_s);
}

void clipboard(Invocation& invocation) {
    const auto form =
        invocation.has(u"--plain"_s) ? exchange::ClipboardForm::Plain : exchange::ClipboardForm::Formatted;
    const auto outcome =
        exchange::importCommand(invocation, form, readArgumentText(invocation.argument(0)),
                                {.preview = [&] { site::SaveHtml(invocation).previewStep(); },
                                 .written = [&](const QStringList& days) { invocation.printList(days); }});
    if (outcome == platform::Outcome::Refused)
        throw Refusal(u"クリップボードの読み込みを中止しました。"_s);
}

void deleteGroup(Invocation& invocation) {
    const std::optional<QStringList> days = exchange::deleteImportGroup(invocation, invocation.argument(0));
    if (!days)
        throw Refusal(u"グループの削除を中止しました。"_s);
    try {
        exchange::finishImportDeletion(invocation.desk, [&] { store::MakeGenretxt(invocation); });
    } catch (const platform::Failure&) {
        invocation.printList(*days); // their entries are gone, whatever becomes of the list of genres
        throw;
    }
    invocation.printList(*days);
}

void groups(Invocation& invocation) {
    invocation.printList(invocation.store().ListImportBatches());
}

} // namespace

std::vector<Command> importCommands() {
    return {
        {u"import clipboard"_s,
         u"--formatted|--plain FILE"_s,
         1,
         1,
         {{u"--formatted"_s, {}}, {u"--plain"_s, {}}},
         u"クリップボードの代わりにファイル (- は標準入力) から日記を読み込む"_s,
         Start::Needed,
         clipboard,
         checkForm},
        {u"import delete"_s,
         u"GROUP"_s,
         1,
         1,
         {},
         u"インポートした日記をグループごと削除する"_s,
         Start::Needed,
         deleteGroup},
        {u"import groups"_s, {}, 0, 0, {}, u"インポートした日記のグループの一覧"_s, Start::Needed, groups},
    };
}

} // namespace velloria::cli
