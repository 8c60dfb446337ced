#include "registers/log_registration.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/numbers.h"
#include "core/path_names.h"
#include "core/settings_change.h"
#include "core/site_folder.h"
#include "core/upload_list.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/text_order.h"
#include "registers/register_source.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::registers {
namespace {

const QString kTitle = u"Resist Log Files"_s;

void tellCopied(platform::Failure& failure, const QStringList& copied) {
    if (!copied.isEmpty())
        failure.addStage(u"「"_s + copied.join(u"」と「"_s) + u"」にはコピーしました"_s);
}

/// A new page bears the exact name: what nobody has registered and differs from it in case is another page.
QString newLogPath(const QString& root, const QString& name) {
    return platform::existingPath(core::files::kLogs.below(root)) + core::nativeSeparator() + name;
}

} // namespace

QString shownLog(const store::LogRow& row) {
    return row.month + u" : "_s + row.fileName;
}

std::optional<QString> yearProblem(const QString& year) {
    const std::optional<double> number = core::numericValue(year);
    if (!number)
        return u"不正な文字が入力されました。半角数字を入力してください。"_s;
    if (*number < 0)
        return u"不正な文字が入力されました。半角で西暦を入力してください。"_s;
    constexpr qsizetype kFewestCharacters = 3; // the text speaks of four, as it always has
    if (year.size() < kFewestCharacters)
        return u"不正な文字が入力されました。半角で4桁の西暦を入力してください。"_s;
    return std::nullopt;
}

void tellLogProblem(platform::Desk& desk, const QString& problem) {
    desk.message(platform::MessageKind::Critical, problem, kTitle);
}

LogRegistration::LogRegistration(const core::Run& run)
    : m_session(run.session)
    , m_desk(run.desk)
    , m_logs(run.session.databaseFile()) {}

platform::Outcome LogRegistration::ResistLogFile(const QString& path, const QString& year, const QString& month) {
    if (path.isEmpty() || year.isEmpty() || month.isEmpty())
        return platform::Outcome::Refused;
    const RegisterSource source = registerSource(path);
    requireRegisterName(source.name);
    core::requireSiteFolder(m_session);
    platform::Outcome outcome = platform::Outcome::Done;
    // Asked outside of the lock: nobody has to wait for an answer.
    if (!add(source, year + u'/' + (month.size() == 1 ? u'0' + month : month)))
        outcome = replace(source);
    core::writeQuietly(m_session, core::keys::kLogResistPath, source.folder);
    return outcome;
}

QString LogRegistration::logFolder(const QString& root) {
    return platform::existingPath(core::files::kLogs.below(root));
}

QString LogRegistration::logPath(const QString& root, const QString& name) {
    return platform::existingPath(logFolder(root) + core::nativeSeparator() + name);
}

/// The data folder and, when it has one, the site's.
QStringList LogRegistration::roots() const {
    return m_session.FilePath.isEmpty() ? QStringList{m_session.DataPath}
                                        : QStringList{m_session.DataPath, m_session.FilePath};
}

/// False when the name has a row already. That it has none holds until the row is there: another program may register
/// a page of this name at the same time.
bool LogRegistration::add(const RegisterSource& source, const QString& month) {
    platform::makeFolder(logFolder(m_session.DataPath));
    const platform::FolderLock lock(logFolder(m_session.DataPath));
    if (m_logs.FindLog(source.name))
        return false;
    addNew(source, month);
    return true;
}

void LogRegistration::addNew(const RegisterSource& source, const QString& month) {
    QStringList targets = roots();
    std::reverse(targets.begin(), targets.end());
    QStringList copied;
    try {
        copyTo(targets, source, copied, newLogPath);
        m_logs.addLog({month, source.name});
    } catch (platform::Failure& failure) {
        tellCopied(failure, copied);
        throw;
    }
    m_desk.notice(u"「%1」を%2のログとして登録しました。"_s.arg(source.name, month));
}

/// Copies the page to where it does not lie yet; `copied` tells, also after a failure, what has been written.
void LogRegistration::copyTo(const QStringList& targets, const RegisterSource& source, QStringList& copied,
                             PathOf pathOf) {
    for (const QString& root : targets) {
        const QString page = pathOf(root, source.name);
        if (platform::isInPlace(source.path, page))
            continue;
        platform::makeFolder(logFolder(root));
        platform::placeFile(source.path, page);
        copied += page;
    }
}

platform::Outcome LogRegistration::replace(const RegisterSource& source) {
    if (!m_desk.ask(u"すでに登録済みのファイルです。\r\n上書きしますか？"_s, kTitle))
        return platform::Outcome::Refused;
    if (platform::isInPlace(source.path, logPath(m_session.DataPath, source.name))) {
        m_desk.message(platform::MessageKind::Critical,
                       u"同じフォルダの同じファイルを指定しました。\r\nコピーできません。"_s, u"Resist Files"_s);
        return platform::Outcome::Refused;
    }
    QStringList copied;
    try {
        copyTo(roots(), source, copied, logPath);
    } catch (platform::Failure& failure) {
        tellCopied(failure, copied);
        throw;
    }
    // What waits for the upload is what the making of logs has listed.
    const std::vector<core::UploadRow> waiting = core::readUploadList(core::files::kLogList.in(m_session));
    const bool goesUp = std::any_of(waiting.begin(), waiting.end(),
                                    [&](const core::UploadRow& row) { return row.name == source.name; });
    m_desk.notice(u"登録済みのログ「%1」を指定したファイルで置き換えました。登録された月は元のままです。%2"_s.arg(
        source.name, goesUp ? u"次のFTPでアップロードされます。"_s
                            : u"アップロードの予定はなく、サーバーのページは変わりません。"_s));
    return platform::Outcome::Done;
}

platform::Outcome LogRegistration::deleteLog(const store::LogRow& row) {
    const QString question = u"本当に削除しますか？"_s;
    if (!m_desk.ask(question, kTitle))
        return platform::Outcome::Refused;
    m_logs.DeleteLog(row);
    m_desk.status(u"「%1」の登録を削除しました。"_s.arg(shownLog(row)));
    if (!m_desk.ask(u"ファイルも削除しますか？"_s, kTitle) || !m_desk.ask(question, kTitle))
        return platform::Outcome::Done;
    removePages(row.fileName);
    return platform::Outcome::Done;
}

/// A row of an old diary may hold a path: what it leads to is no page of the register. A page that can't be removed
/// does not keep the other one.
void LogRegistration::removePages(const QString& name) {
    QStringList left;
    QString reason;
    for (const QString& root : roots()) {
        const QString page = logPath(root, name);
        if (!core::isBareName(name) || !platform::fileExists(page)) {
            m_desk.message(platform::MessageKind::Exclamation, u"ファイルがありませんでした。"_s, kTitle);
            continue;
        }
        try {
            platform::removeFile(page);
        } catch (const platform::Failure& failure) {
            left += page;
            reason = failure.reason();
        }
    }
    if (!left.isEmpty())
        throw removalFailure(left, reason);
}

std::vector<store::LogRow> LogRegistration::rows() const {
    std::vector<store::LogRow> rows = m_logs.listLogs();
    const platform::TextOrder order;
    std::stable_sort(rows.begin(), rows.end(), [&](const store::LogRow& left, const store::LogRow& right) {
        return order.compare(left.month, right.month) > 0;
    });
    return rows;
}

} // namespace velloria::registers
