#include "site/save_html.h"

#include "core/day_key.h"
#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings_change.h"
#include "core/site_folder.h"
#include "core/stored_name.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "registers/file_register.h"
#include "site/local_page.h"
#include "site/weather.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

constexpr QLatin1StringView kPageEnding(".htm");

} // namespace

SaveHtml::SaveHtml(const core::Run& run)
    : m_session(run.session)
    , m_desk(run.desk)
    , m_monthPage(run)
    , m_siteFiles(run.session) {}

platform::Outcome SaveHtml::saveCommand() {
    if (m_session.FilePath.isEmpty() || m_session.FileName.isEmpty())
        return saveAsCommand();
    SaveHTML();
    return platform::Outcome::Done;
}

platform::Outcome SaveHtml::saveAsCommand() {
    return saveTo([this] { return chooseTarget() == platform::Outcome::Done; });
}

platform::Outcome SaveHtml::saveAs(const QString& path) {
    return saveTo([&] { return takeTarget(path); });
}

platform::Outcome SaveHtml::saveTo(const std::function<bool()>& takeTarget) {
    const QString oldPath = m_session.FilePath;
    const QString oldName = m_session.FileName;
    const QString list = core::files::kPageList.in(m_session);
    const std::optional<QByteArray> oldList = platform::readFileIfThere(list);
    try {
        if (!takeTarget())
            return platform::Outcome::Refused;
        SaveHTML();
    } catch (...) {
        m_session.FilePath = oldPath;
        m_session.FileName = oldName;
        bringBack(list, oldList);
        throw;
    }
    return platform::Outcome::Done;
}

/// The list of the site that stays the user's; one that can't be brought back names pages that are there as well.
void SaveHtml::bringBack(const QString& list, const std::optional<QByteArray>& bytes) const {
    try {
        core::restoreUploadList(list, m_listed, bytes);
    } catch (const platform::Failure&) {
        return; // the failure that led here is the one to tell
    }
}

platform::Outcome SaveHtml::chooseTarget() {
    const QString proposed = m_session.FileName.isEmpty() ? u"index.htm"_s : m_session.FileName;
    const std::optional<QString> path = m_desk.choosePath({platform::PathMode::Save,
                                                           u"日記の書き出し..."_s,
                                                           u"HTML Files(*.htm;*.html)|*.htm;*html|"_s,
                                                           m_session.FilePath,
                                                           {},
                                                           proposed});
    return path && !path->isEmpty() && takeTarget(*path) ? platform::Outcome::Done : platform::Outcome::Refused;
}

bool SaveHtml::takeTarget(const QString& path) {
    if (core::GetFileName(path).isEmpty()) {
        m_desk.message(platform::MessageKind::Critical, u"ファイル名を指定してください。\r\n"_s + path);
        return false;
    }
    const QString absolute = QFileInfo(path).absoluteFilePath();
    const QString folder = core::withSeparator(core::GetParentFolder(absolute));
    // As the settings give it back: the next Save HTML writes the same page.
    const QString name = core::keptOfPath(core::GetFileName(absolute));
    constexpr qsizetype kMostBytes = 255; // of a text that the settings can keep
    if (name.isEmpty() ||
        platform::toCodePage(core::storedName(core::GetFileName(absolute)) + kPageEnding).size() > kMostBytes)
        throw platform::Failure(u"このファイル名は設定に保存できません。"_s, absolute, {},
                                u"もっと短い別の名前を指定してください。"_s);
    if (!core::fitsSetting(folder)) {
        m_desk.message(
            platform::MessageKind::Critical,
            u"フォルダの名前が長すぎて設定に保存できません。\r\nもっと短い名前のフォルダを指定して下さい。"_s);
        return false;
    }
    platform::makeFolder(core::GetParentFolder(folder));
    if (platform::isSameFile(folder, m_session.DataPath)) {
        if (isLocalPage(name)) {
            m_desk.message(
                platform::MessageKind::Critical,
                u"「%1」はプレビューなどに使われる名前です。\r\n別の名前かフォルダを指定してください。"_s.arg(name));
            return false;
        }
        if (m_session.IsLogin)
            m_desk.status(u"データフォルダに保存したページは、終了時に削除されます。"_s);
    }
    m_session.FilePath = folder;
    m_session.FileName = name;
    return true;
}

void SaveHtml::SaveHTML() {
    const platform::Hourglass hourglass(m_desk);
    if (!m_session.FileName.endsWith(u".htm"_s) && !m_session.FileName.endsWith(u".html"_s))
        m_session.FileName += kPageEnding;
    core::requireSiteFolder(m_session);
    // It would be overwritten by a page with private entries.
    if (isLocalPage(m_session, m_session.FilePath + m_session.FileName))
        throw platform::Failure(u"プレビューなどに使われる名前のページは、データフォルダに保存できません。"_s,
                                m_session.FilePath + m_session.FileName, {},
                                u"名前を付けて保存で、別の名前かフォルダを指定してください。"_s);
    m_listed = m_monthPage.MakeHTML(m_session.FilePath + m_session.FileName, core::monthOf(m_session.Today),
                                    PageKind::Current, MakeList::Yes, WithPrivate::No);
    placeWeatherPictures(m_session, m_siteFiles);
    copyParts();
    core::SettingsChange target; // two programs that save at once must not end with one's folder and the other's name
    target.set(m_session, core::keys::kSaveFileName, m_session.FileName);
    target.set(m_session, core::keys::kSaveFilePath, m_session.FilePath);
    target.writeQuietly();
    m_desk.status(u"HTMLファイル "_s + m_session.FilePath + m_session.FileName + u" を保存しました。"_s);
    m_siteFiles.tell(m_desk);
}

void SaveHtml::copyParts() {
    const registers::FileRegister files(m_session.databaseFile());
    const QString folder = core::files::kParts.in(m_session) + u'/';
    const QString published = core::files::kParts.below(m_session.FilePath) + u'/';
    const platform::FolderNames sources(platform::existingPath(folder));
    platform::FolderNames targets(published);
    const bool isElsewhere = !platform::isSameFile(platform::existingPath(folder), published);
    const auto copy = [&](const std::vector<store::FileRow>& rows) {
        const auto isPublished = [&](const store::FileRow& row) { return isElsewhere && targets.hasFile(row.name); };
        for (const store::FileRow& row : m_siteFiles.take(rows, isPublished)) {
            m_desk.status(u"Copying "_s + folder + row.name);
            if (!sources.hasFile(row.name) || !m_siteFiles.isCopy(sources.path(row.name)) || targets.hasFile(row.name))
                continue;
            platform::placeFile(sources.path(row.name), published + row.name);
            targets.add(row.name);
        }
    };
    copy(files.FilesOfMonth(core::monthOf(m_session.Today)));
    copy(files.CommonFilesToUpload());
}

void SaveHtml::SaveTmpFile() {
    const platform::Hourglass hourglass(m_desk);
    m_monthPage.MakeHTML(core::files::kPreview.in(m_session), core::monthOf(m_session.EnterDay), PageKind::Current,
                         MakeList::No, WithPrivate::Yes);
}

void SaveHtml::previewStep() {
    SaveTmpFile();
    showPreview();
}

void SaveHtml::showPreview() {
    m_desk.status(u"Webページ表示中..."_s);
    m_desk.navigate(core::files::kPreview.in(m_session) + u'#' + m_session.EnterDay);
}

} // namespace velloria::site
