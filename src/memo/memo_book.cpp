#include "memo/memo_book.h"

#include "convert/password_text.h"
#include "core/files.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "platform/failure.h"
#include "shell/users.h"
#include "store/memo_rescue.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::memo {

using store::Memo;
using store::MemoOutcome;

namespace {

/// The copies that the optimisation of the diary and its update leave, the newest first.
QStringList formerDiaries(const core::Session& session) {
    const QString newest = core::files::kBackup.in(session);
    return {newest, newest + u".1"_s, newest + u".2"_s, newest + u".3"_s};
}

} // namespace

MemoBook::MemoBook(const core::Run& run)
    : m_run(run)
    , m_store(run) {}

bool MemoBook::hasPassword() const {
    const core::Settings settings(m_run.session);
    const core::Setting row = core::inSection(core::keys::kUserPass, m_run.session.UserID);
    return m_run.session.IsLogin && !convert::passwordFromSetting(settings.text(row)).isEmpty();
}

bool MemoBook::unlock(const QString& password) {
    m_isUnlocked = shell::Users(m_run.session.MyPath).UserCheck(m_run.session.UserID, password);
    return m_isUnlocked;
}

std::vector<Memo> MemoBook::list(const QString& word, const std::optional<QString>& category) const {
    try {
        m_store.takeBackReset(formerDiaries(m_run.session));
    } catch (const platform::Failure&) {
        // A diary that can't be written to can still be read.
    }
    return m_store.list({word, category, isOpen()});
}

std::optional<Memo> MemoBook::load(qint64 row) const {
    std::optional<Memo> memo = m_store.load(row);
    if (memo && isClosed(*memo))
        memo->text = QString();
    return memo;
}

std::optional<Memo> MemoBook::find(std::optional<qint64> no, const QString& publishTime) const {
    const std::vector<Memo> memos = m_store.list({});
    const auto found = std::find_if(memos.begin(), memos.end(), [&](const Memo& memo) {
        return no && memo.no == no && memo.publishTime == publishTime;
    });
    return found == memos.end() ? std::nullopt : m_store.load(found->row);
}

MemoOutcome MemoBook::save(const Memo& memo, const std::optional<Memo>& seen) const {
    store::MemoRescue rescue(m_run);
    return rescue.guard(
        [&] { return m_store.save(memo, seen, [&](const Memo& former) { rescue.keep(former, u"上書き"_s); }); });
}

MemoOutcome MemoBook::remove(const Memo& seen) const {
    store::MemoRescue rescue(m_run);
    return rescue.guard(
        [&] { return m_store.remove(seen, [&](const Memo& former) { rescue.keep(former, u"削除"_s); }); });
}

} // namespace velloria::memo
