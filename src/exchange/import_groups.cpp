#include "exchange/import_groups.h"

#include "platform/failure.h"
#include "platform/text_fold.h"
#include "store/diary_store.h"
#include "store/rescue_file.h"

using namespace Qt::StringLiterals;

namespace velloria::exchange {

using platform::MessageKind;

std::optional<QStringList> deleteImportGroup(const core::Run& run, const QString& group) {
    if (platform::fold(group).isEmpty()) {
        run.desk.message(MessageKind::Critical, u"削除するグループが選択されていないため、終了します。"_s);
        return std::nullopt;
    }
    store::RescueFile rescue(run);
    QStringList days;
    const auto keep = [&](const std::vector<store::Entry>& rows) {
        rescue.keep(rows, u"削除"_s);
        for (const store::Entry& row : rows) {
            if (days.isEmpty() || days.constLast() != row.day) // they come by day
                days += row.day;
        }
    };
    rescue.guard([&] { store::DiaryStore(run).DeleteImportBatch(group, keep); });
    return days;
}

void finishImportDeletion(platform::Desk& desk, const std::function<void()>& makeGenres) {
    try {
        makeGenres();
    } catch (platform::Failure& failure) {
        failure.addStage(u"グループの日記は削除しました"_s);
        throw;
    }
    desk.message(MessageKind::Information, u"完了！"_s);
}

} // namespace velloria::exchange
