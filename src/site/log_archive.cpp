#include "site/log_archive.h"

#include "core/files.h"
#include "core/numbers.h"
#include "core/path_names.h"
#include "core/site_folder.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "site/calendar_dates.h"
#include "site/month_page.h"
#include "site/save_html.h"
#include "site/weather.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

constexpr std::size_t kFilesPerProgress = 16;

/// Below the site or the data folder.
QString partsOfLogs(const QString& root) {
    return core::files::kLogParts.below(root) + u'/';
}

/// A log takes its file name from year and month.
void requireFileName(const QString& name) {
    if (!core::isBareName(name))
        throw platform::Failure(u"ログのファイル名にできません。"_s, {}, name,
                                u"年と月を数字で指定してください。何も作成していません。"_s);
}

} // namespace

LogMonth monthToLog(const QDate& today) {
    const QDate month = QDate(today.year(), today.month(), 1).addMonths(-1);
    return {QString::number(month.year()), QString::number(month.month())};
}

LogArchive::LogArchive(const core::Run& run, registers::SiteFiles* siteFiles)
    : m_session(run.session)
    , m_desk(run.desk)
    , m_monthPage(run)
    , m_files(run.session.databaseFile())
    , m_logs(run.session.databaseFile())
    , m_siteFiles(siteFiles ? *siteFiles : m_ownSiteFiles.emplace(run.session)) {}

void LogArchive::save(const QString& year, const QString& typedMonth, const std::function<void()>& beforeLastBox) {
    const QString month = typedMonth.size() == 1 ? u'0' + typedMonth : typedMonth;
    const QString yearMonth = year + u'/' + month;
    const QString logName = year + month + u".htm"_s;
    requireFileName(logName);
    core::requireSiteFolder(m_session);
    for (const QString& root : roots())
        platform::makeFolder(core::files::kLogs.below(root));

    // The list on disk may be that of another run by now.
    const std::vector<core::UploadRow> pages = m_monthPage.MakeHTML(
        core::files::kLogs.in(m_session) + u'/' + logName, yearMonth, PageKind::Log, MakeList::Yes, WithPrivate::No);
    if (!m_session.FilePath.isEmpty())
        copyPages(pages);
    core::appendUploadList(core::files::kLogList.in(m_session), pages);
    for (const QString& root : roots())
        platform::makeFolder(core::files::kLogParts.below(root));
    // A log may be the first that is ever made of the site.
    placeWeatherPictures(m_session, m_siteFiles);
    archiveFilesOfMonth(year, month);
    archiveCommonFiles();
    m_logs.addLogOfMonth({yearMonth, logName});
    m_desk.status(yearMonth + u"の日記をLog化しました。"_s);
    if (beforeLastBox)
        beforeLastBox();
    m_desk.message(platform::MessageKind::Information, u"Logファイル化しました。"_s);
    if (m_session.FilePath.isEmpty())
        m_desk.notice(
            u"保存先のフォルダが決まっていないので、%1のログはデータフォルダにだけ作成しました。"_s.arg(yearMonth));
    if (m_ownSiteFiles)
        m_siteFiles.tell(m_desk);
}

QStringList LogArchive::roots() const {
    return m_session.FilePath.isEmpty() ? QStringList{m_session.DataPath}
                                        : QStringList{m_session.FilePath, m_session.DataPath};
}

void LogArchive::copyPages(const std::vector<core::UploadRow>& pages) {
    for (const core::UploadRow& page : pages) {
        const QString source = page.folder + core::nativeSeparator() + page.name;
        if (platform::fileExists(source))
            platform::copyFile(source, core::files::kLogs.below(m_session.FilePath) + u'/' + page.name);
    }
}

/// Fails after the page: year and month are numbers here for the first time.
int LogArchive::daysOfMonth(const QString& year, const QString& month) const {
    try {
        const int days = GetMonthDays(core::cint(year), core::cint(month));
        if (days == 0)
            throw platform::Failure(u"月を読み取れません。"_s, {}, month, u"1から12までの月を指定してください。"_s);
        return days;
    } catch (platform::Failure& failure) {
        const QString made = m_session.FilePath.isEmpty() ? u"ログのページ"_s : u"ログのページとそのコピー"_s;
        failure.addStage(made + u"、アップロードの一覧の行は作成済みで、残っています"_s);
        throw;
    }
}

void LogArchive::archiveFilesOfMonth(const QString& year, const QString& month) {
    const QString start = year + u'/' + month + u'/';
    const int days = daysOfMonth(year, month);
    const platform::FolderNames published(partsOfLogs(m_session.FilePath));
    const bool hasSite = !m_session.FilePath.isEmpty() && !platform::isSameFile(m_session.FilePath, m_session.DataPath);
    const auto isPublished = [&](const store::FileRow& row) { return hasSite && published.hasFile(row.name); };
    const std::vector<store::FileRow> files =
        m_siteFiles.take(m_files.FilesOfPeriod(start + u"01"_s, start + QString::number(days)), isPublished);
    // Only to tell of those that an earlier run has taken along and that would not go any more.
    m_siteFiles.take(m_files.FilesOfMonth(start.chopped(1)), isPublished);
    const platform::FolderNames parts(platform::existingPath(core::files::kParts.in(m_session) + u'/'));
    std::vector<qint64> logged;
    try {
        for (std::size_t i = 0; i < files.size(); ++i) {
            if (archiveFile(files[i], month, parts))
                logged.push_back(files[i].id);
            if ((i + 1) % kFilesPerProgress == 0)
                m_desk.progress(u"日記のファイルをコピーしています"_s, int(i + 1), int(files.size()));
        }
    } catch (const platform::Failure&) {
        markQuietly(logged);
        throw;
    }
    m_files.markLogged(logged);
}

/// What has been copied by now is marked even if the disk takes no more; what can't be marked is copied again.
void LogArchive::markQuietly(const std::vector<qint64>& logged) const {
    try {
        m_files.markLogged(logged);
    } catch (const platform::Failure&) {
        return; // the failure that led here is the one to tell
    }
}

/// Whether the file lies among the logs now. It stays in "DiaryParts" as well, where the preview finds it: the row in
/// hand is one that still needs it there.
bool LogArchive::archiveFile(const store::FileRow& file, const QString& month, const platform::FolderNames& parts) {
    if (!parts.hasFile(file.name)) {
        m_desk.message(platform::MessageKind::Critical,
                       month + u"月分として登録されたファイル["_s + file.name +
                           u"]が見つかりません。\r\n"_s
                           u"[UserData\\DiaryParts]フォルダに該当ファイルをコピーして、再度ログ化して下さい。"_s);
        return false;
    }
    if (!m_siteFiles.isCopy(parts.path(file.name)))
        return false;
    for (const QString& root : roots())
        platform::placeFile(parts.path(file.name), partsOfLogs(root) + file.name);
    return true;
}

void LogArchive::archiveCommonFiles() {
    const std::vector<store::FileRow> files = m_siteFiles.take(m_files.CommonFiles());
    const platform::FolderNames parts(platform::existingPath(core::files::kParts.in(m_session) + u'/'));
    for (const QString& root : roots()) {
        platform::FolderNames logged(partsOfLogs(root));
        for (const store::FileRow& file : files) {
            if (!parts.hasFile(file.name) || !m_siteFiles.isCopy(parts.path(file.name)) || logged.hasFile(file.name))
                continue;
            platform::placeFile(parts.path(file.name), partsOfLogs(root) + file.name);
            logged.add(file.name);
        }
    }
    // The upload takes the file of such a row from the data folder's logs and stops when it is missing there.
    const platform::FolderNames logged(partsOfLogs(m_session.DataPath));
    QStringList names;
    for (const store::FileRow& file : files) {
        if (logged.hasFile(file.name))
            names += file.name;
    }
    m_files.addCommonFiles(names, registers::SiteSide::Log);
}

void logCommand(const core::Run& run, const QString& year, const QString& month,
                const std::function<void()>& beforeLastBox) {
    const platform::Hourglass hourglass(run.desk);
    LogArchive(run).save(year, month, beforeLastBox);
    SaveHtml(run).previewStep();
}

} // namespace velloria::site
