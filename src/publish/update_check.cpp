#include "publish/update_check.h"

#include "core/files.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "core/text_file.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/launcher.h"
#include "publish/archive_name.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

namespace files = core::files;
namespace keys = core::keys;
using platform::MessageKind;

/// Who reads an offer that nobody on the line could have written trusts the archive as well.
bool isEncrypted(const QString& address) {
    return address.startsWith("https:"_L1, Qt::CaseInsensitive);
}

/// The check goes on with the version that stood there when it can't be written.
void writeRunningVersion(const QString& file) {
    core::SettingsChange version;
    version.set(file, keys::kRunningVersion, core::kProgramVersion.text());
    version.writeQuietly();
}

} // namespace

UpdateCheck::UpdateCheck(const core::Run& run, Internet& internet, UpdateCalls calls)
    : m_session(run.session)
    , m_internet(internet)
    , m_desk(run.desk)
    , m_calls(std::move(calls))
    , m_download(internet, run.desk, {m_calls.isProgramEnding, m_calls.isStopWanted}) {}

UpdateResult UpdateCheck::MnuUpdateCheck() {
    if (m_calls.stopBrowser)
        m_calls.stopBrowser();
    m_desk.navigate(core::Settings(m_session).text(keys::kMakerSoftware));
    m_isLaunched = false;
    m_refusal.clear();
    UpdateResult result;
    try {
        result = check();
    } catch (const platform::Failure& failure) {
        if (!isProgramEnding())
            throw;
        m_desk.notice(u"エラー："_s + failure.line()); // a box would hold up the end
        return {false, failure.line()};
    }
    if (m_isLaunched)
        endProgram();
    return result;
}

void UpdateCheck::MnuVellUpdater() {
    if (updateFolder().isEmpty()) {
        tellNoOffer();
        enableUpdater(false);
        return;
    }
    // In the working folder, unlike the version that the check writes.
    writeRunningVersion(files::kOffers.name);
    if (launch())
        endProgram();
}

UpdateResult UpdateCheck::check() {
    const auto ending = qScopeGuard([this] {
        m_internet.closeSession();
        m_desk.pointer(platform::Pointer::Default);
    });
    auto withoutUpdater = qScopeGuard([this] { enableUpdater(false); });
    m_desk.pointer(platform::Pointer::Hourglass);
    if (updateFolder().isEmpty()) { // whoever installed the program keeps it up to date
        tellNoOffer();
        return {true};
    }
    m_desk.status(u"Openning Internet"_s);
    if (!m_internet.openSession()) {
        m_desk.status(u"Can't connect Internet!"_s);
        return refuse(u"インターネットに接続できませんでした。"_s);
    }
    if (!fetchOffers())
        return refuse(u"update.txtの取得に失敗しました。"_s);
    const std::optional<Offer> offer = readOffer();
    if (!offer) {
        tellNoOffer();
        return {true};
    }
    enableUpdater(true);
    if (!m_desk.ask(u"新しいバージョンが存在します("_s + offer->version + u")。\r\nダウンロードしますか？"_s)) {
        withoutUpdater.dismiss(); // the updater may be started later
        return {false, kStopped};
    }
    m_desk.status(u"ダウンロード実行中..."_s);
    const bool isFetched = fetchArchive(*offer);
    if (m_download.isStopped())
        return {false, kStopped};
    if (!isFetched)
        return refuse(u"ダウンロードに失敗しました。"_s);
    withoutUpdater.dismiss();
    return handOver();
}

bool UpdateCheck::fetchOffers() {
    m_desk.status(u"Downloading update.txt"_s);
    const QString file = platform::existingPath(files::kOffers.in(m_session));
    return m_download.DownloadHTTP(files::kOffers.below(updateFolder()), file, DownloadMode::Text, ShowProgress::No) >
           0;
}

/// Versions compare as plain text: "1.10.0" comes before "1.9.0".
std::optional<UpdateCheck::Offer> UpdateCheck::readOffer() const {
    const core::Settings settings(m_session);
    writeRunningVersion(settings.file(core::SettingsFile::Update));
    const core::IniReader offers = settings.read(core::SettingsFile::Update);
    const QString running = offers.text(keys::kRunningVersion);
    const Offer patch{offers.text(keys::kPatchVersion), offers.text(keys::kPatchUrl),
                      offers.text(keys::kPatchFileName)};
    if (patch.version > running && running > offers.text(keys::kPatchRequiredVersion))
        return patch;
    const Offer release{offers.text(keys::kReleaseVersion), offers.text(keys::kReleaseUrl),
                        offers.text(keys::kReleaseFileName)};
    return release.version > running ? std::optional(release) : std::nullopt;
}

bool UpdateCheck::fetchArchive(const Offer& offer) {
    if (!mayBeSaved(offer.fileName))
        return false;
    if (isEncrypted(updateFolder()) && !isEncrypted(offer.url)) {
        m_refusal = kNoWayOutOfEncryption;
        m_desk.status(m_refusal);
        return false;
    }
    if (m_download.DownloadHTTP(offer.url, inHome(offer.fileName), DownloadMode::Binary, ShowProgress::Yes) == 0)
        return false;
    rememberArchive(offer.fileName);
    return true;
}

/// Of what is there the archive may take the place of an earlier one alone.
bool UpdateCheck::mayBeSaved(const QString& fileName) const {
    if (!isArchiveName(fileName))
        return false;
    const QFileInfo there(platform::existingPath(inHome(fileName)));
    return (!there.exists() && !there.isSymLink()) ||
           core::readLines(files::kArchives.in(m_session)).contains(there.fileName(), Qt::CaseInsensitive);
}

/// An archive that is not in the list would count as the user's own file, and no later one could take its place.
void UpdateCheck::rememberArchive(const QString& fileName) const {
    try {
        const platform::FolderLock lock(m_session.MyPath); // another program may remember one as well
        QStringList archives = core::readLines(files::kArchives.in(m_session));
        if (!archives.contains(fileName))
            core::writeLines(files::kArchives.in(m_session), archives << fileName);
    } catch (const platform::Failure&) {
        platform::removeFile(inHome(fileName));
        throw;
    }
}

UpdateResult UpdateCheck::handOver() {
    m_desk.message(MessageKind::Information, u"ダウンロードが完了しました。"_s);
    if (!platform::fileExists(files::kUpdater.in(m_session)))
        return refuse(u"Velloria Updaterが見つかりません。"_s);
    if (!m_desk.ask(u"VelloriaUpdaterを起動しますか？\r\n(Velloriaは終了します。)"_s))
        return {true};
    m_isLaunched = launch();
    return m_isLaunched ? UpdateResult{true} : UpdateResult{false, u"「UNLHA32.DLL」が存在しません。"_s};
}

/// True when the updater runs. It runs as a copy, so that it can replace its own file.
bool UpdateCheck::launch() {
    QString library;
    if (!platform::FindOnSearchPath(m_session.MyPath, files::kArchiveLibrary.name, library)) {
        m_desk.message(MessageKind::Critical,
                       u"「UNLHA32.DLL」が存在しません。\r\nインストール後、再度実行してください。"_s);
        return false;
    }
    constexpr unsigned kExecutable = 0777;
    platform::removeFile(platform::existingPath(files::kUpdaterCopy.in(m_session)));
    platform::copyFile(platform::existingPath(files::kUpdater.in(m_session)), files::kUpdaterCopy.in(m_session),
                       kExecutable);
    if (!platform::cExecute(m_session.MyPath).ShellX(files::kUpdaterCopy.name, platform::Wait::No))
        throw platform::Failure(u"Velloria Updaterを起動できません。"_s, files::kUpdaterCopy.in(m_session), {},
                                u"Velloriaは変更されていません。実行できるファイルか確認してください。"_s);
    return true;
}

void UpdateCheck::tellNoOffer() {
    m_desk.status(u"Sorry,New Version is not released!"_s);
    m_desk.message(MessageKind::Information, u"確認しましたが、新しいバージョンはありませんでした。"_s);
}

UpdateResult UpdateCheck::refuse(const QString& text) {
    m_desk.message(MessageKind::Critical, text);
    const QString& error = m_refusal.isEmpty() ? m_download.networkError() : m_refusal;
    return {false, error.isEmpty() ? text : text + u' ' + error};
}

QString UpdateCheck::updateFolder() const {
    const QString folder = core::Settings(m_session).text(keys::kMakerUpdateFolder);
    return folder.isEmpty() || folder.endsWith(u'/') ? folder : folder + u'/';
}

void UpdateCheck::enableUpdater(bool isEnabled) const {
    if (m_calls.enableUpdater)
        m_calls.enableUpdater(isEnabled);
}

void UpdateCheck::endProgram() const {
    if (m_calls.endProgram)
        m_calls.endProgram();
}

} // namespace velloria::publish
