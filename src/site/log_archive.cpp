#include "site/log_archive.h"

#include "core/numbers.h"
#include "core/path_names.h"
#include "core/upload_list.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/text_order.h"
#include "site/calendar_dates.h"
#include "site/month_page.h"
#include "site/site_folder.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

constexpr std::size_t kFilesPerProgress = 16;

/// Whether the name stays in the folder that it is put behind.
bool isFileName(const QString& name) {
    return !name.contains(u'/') && !name.contains(core::nativeSeparator()) && !name.contains(QChar(0));
}

/// A log takes its file name from year and month.
void requireFileName(const QString& name) {
    if (!isFileName(name))
        throw platform::Failure(u"ログのファイル名にできません。"_s, {}, name,
                                u"年と月を数字で指定してください。何も作成していません。"_s);
}

} // namespace

LogMonth monthToLog(const QDate& today) {
    const QDate month = QDate(today.year(), today.month(), 1).addMonths(-1);
    return {QString::number(month.year()), QString::number(month.month())};
}

LogArchive::LogArchive(const core::Session& session, const store::DiaryStore& store, platform::Desk& desk,
                       const platform::Clock& clock)
    : m_session(session)
    , m_store(store)
    , m_desk(desk)
    , m_clock(clock)
    , m_files(session.databaseFile())
    , m_logs(session.databaseFile()) {}

void LogArchive::save(const QString& year, const QString& typedMonth, const std::function<void()>& beforeLastBox) {
    requireFileName(year + typedMonth);
    requireSiteFolder(m_session);
    for (const QString& root : roots())
        platform::makeFolder(root + u"DiaryLog"_s);
    const QString month = typedMonth.size() == 1 ? u'0' + typedMonth : typedMonth;
    const QString yearMonth = year + u'/' + month;
    const QString logName = year + month + u".htm"_s;

    MonthPage(m_session, m_store, m_clock)
        .MakeHTML(m_session.DataPath + u"DiaryLog/"_s + logName, yearMonth, PageKind::Log, MakeList::Yes,
                  WithPrivate::No);
    const std::vector<core::UploadRow> pages = core::readUploadList(m_session.UserPath + u"uplogtmp.tmp"_s);
    if (!m_session.FilePath.isEmpty())
        copyPages(pages);
    core::appendUploadList(m_session.UserPath + u"uploadlog.tmp"_s, pages);
    for (const QString& root : roots())
        platform::makeFolder(root + u"DiaryLog/DiaryParts"_s);
    archiveFilesOfMonth(year, month);
    archiveCommonFiles();
    if (!m_logs.LogOfMonth(yearMonth))
        m_logs.AddLog({yearMonth, logName});
    m_desk.status(yearMonth + u"の日記をLog化しました。"_s);
    if (beforeLastBox)
        beforeLastBox();
    m_desk.message(platform::MessageKind::Information, u"Logファイル化しました。"_s);
    if (m_session.FilePath.isEmpty())
        m_desk.notice(
            u"保存先のフォルダが決まっていないので、%1のログはデータフォルダにだけ作成しました。"_s.arg(yearMonth));
}

QStringList LogArchive::roots() const {
    return m_session.FilePath.isEmpty() ? QStringList{m_session.DataPath}
                                        : QStringList{m_session.FilePath, m_session.DataPath};
}

void LogArchive::copyPages(const std::vector<core::UploadRow>& pages) {
    for (const core::UploadRow& page : pages) {
        const QString source = page.folder + core::nativeSeparator() + page.name;
        if (platform::fileExists(source))
            platform::copyFile(source, m_session.FilePath + u"DiaryLog/"_s + page.name);
    }
}

/// Fails behind the page: year and month are numbers here for the first time.
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
    const auto files = m_files.FilesOfPeriod(start + u"01"_s, start + QString::number(days));
    for (std::size_t i = 0; i < files.size(); ++i) {
        archiveFile(files[i], month);
        if ((i + 1) % kFilesPerProgress == 0)
            m_desk.progress(u"日記のファイルをコピーしています"_s, int(i + 1), int(files.size()));
    }
}

void LogArchive::archiveFile(const store::FileRow& file, const QString& month) {
    const QString source = platform::existingPath(m_session.DataPath + u"DiaryParts/"_s + file.name);
    if (!isFileName(file.name) || !platform::fileExists(source)) {
        m_desk.message(platform::MessageKind::Critical,
                       month + u"月分として登録されたファイル["_s + file.name +
                           u"]が見つかりません。\r\n"_s
                           u"[UserData\\DiaryParts]フォルダに該当ファイルをコピーして、再度ログ化して下さい。"_s);
        return;
    }
    for (const QString& root : roots())
        platform::copyFile(source, root + u"DiaryLog/DiaryParts/"_s + file.name);
    // The present row still counts here, so a file that only this row names stays where the preview finds it.
    if (m_files.CountUnloggedFile(file.name) == 0)
        platform::removeFile(source);
    m_files.MarkLogged(file.id);
}

void LogArchive::archiveCommonFiles() {
    const std::vector<store::FileRow> files = m_files.CommonFiles();
    QSet<QString> logged;
    for (const store::FileRow& file : files) {
        if (file.isLogged)
            logged.insert(platform::fold(file.name));
    }
    for (const store::FileRow& file : files) {
        const QString& name = file.name;
        if (!isFileName(name))
            continue;
        const QString source = m_session.DataPath + u"DiaryParts/"_s + name;
        for (const QString& root : {m_session.DataPath, m_session.FilePath}) {
            const QString target = root + u"DiaryLog/DiaryParts/"_s + name;
            if (!root.isEmpty() && platform::fileExists(source) && !platform::fileExists(target))
                platform::copyFile(platform::existingPath(source), target);
        }
        // The upload takes the file of this row from the data folder's logs and stops when it is missing there.
        if (!logged.contains(platform::fold(name)) &&
            platform::fileExists(m_session.DataPath + u"DiaryLog/DiaryParts/"_s + name))
            m_files.AddLoggedCommonFile(name);
    }
}

} // namespace velloria::site
