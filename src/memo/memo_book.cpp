#include "memo/memo_book.h"

#include "convert/password_text.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "platform/failure.h"
#include "shell/users.h"
#include "store/diary_copies.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::memo {

using store::Memo;
using store::MemoOutcome;

namespace {

/// The copies that the optimisation of the diary and its update leave, and those of each day: the newest first.
QStringList formerDiaries(const core::Session& session) {
    QStringList files;
    for (const store::DiaryCopy& copy : store::diaryCopyFiles(session))
        files += copy.file;
    return files;
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

/// Until then a memo that was locked would open, and a new one would get the number of another.
const store::MemoStore& MemoBook::settled() const {
    if (!m_store.hasReset())
        return m_store;
    try {
        m_store.takeBackReset(formerDiaries(m_run.session));
    } catch (const platform::Failure&) {
        // A diary that can't be written to can still be read.
    }
    return m_store;
}

std::vector<Memo> MemoBook::list(const QString& word, const std::optional<QString>& category) const {
    return settled().list({word, category, isOpen()});
}

std::optional<Memo> MemoBook::load(qint64 row) const {
    std::optional<Memo> memo = settled().load(row);
    if (memo && isClosed(*memo))
        memo->text = QString();
    return memo;
}

std::optional<Memo> MemoBook::find(std::optional<qint64> no, const QString& publishTime) const {
    const std::vector<Memo> memos = settled().list({});
    const auto found = std::find_if(memos.begin(), memos.end(), [&](const Memo& memo) {
        return no && memo.no == no && memo.publishTime == publishTime;
    });
    return found == memos.end() ? std::nullopt : m_store.load(found->row);
}

bool MemoBook::isClosed(std::optional<qint64> no) const {
    if (!no || isOpen())
        return false;
    const std::vector<Memo> memos = settled().list({});
    return std::any_of(memos.begin(), memos.end(), [&](const Memo& memo) { return memo.isLocked && memo.no == no; });
}

MemoOutcome MemoBook::save(const Memo& memo, const std::optional<Memo>& seen) const {
    store::MemoRescue rescue(m_run);
    return rescue.guard(
        [&] { return settled().save(memo, seen, [&](const Memo& former) { rescue.keep(former, u"上書き"_s); }); });
}

MemoOutcome MemoBook::remove(const Memo& seen) const {
    store::MemoRescue rescue(m_run);
    return rescue.guard(
        [&] { return settled().remove(seen, [&](const Memo& former) { rescue.keep(former, u"削除"_s); }); });
}

} // namespace velloria::memo
