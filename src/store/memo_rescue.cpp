#include "store/memo_rescue.h"

#include "platform/utf8.h"
#include "store/memo_line.h"
#include "store/own_lines.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::store {

MemoRescue::MemoRescue(const core::Run& run)
    : KeptLines(run, core::files::kMemoRescue, core::files::kDamagedMemoRescue) {}

void MemoRescue::keep(const Memo& memo, const QString& reason) {
    keepLines({toJson(memo)}, reason);
}

std::vector<KeptMemo> MemoRescue::all(const core::Run& run) {
    const QList<QByteArray> lines = OwnLines(core::files::kMemoRescue.in(run.session)).all();
    std::vector<KeptMemo> kept;
    for (auto line = lines.crbegin(); line != lines.crend(); ++line) {
        if (std::optional<Memo> memo = parseMemoLine(*line)) {
            const QJsonDocument json = platform::parseJson(*line, nullptr);
            kept.push_back({std::move(*memo), json["Reason"_L1].toString(), json["Time"_L1].toString()});
        }
    }
    return kept;
}

} // namespace velloria::store
