#include "exchange/customize_exchange.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "core/site_keys.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/profile_file.h"
#include "site/customize_sets.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

namespace keys = core::keys;

constexpr QLatin1StringView kIniEnding(".ini");
constexpr QLatin1StringView kCstEnding(".cst");
constexpr qint64 kLargestSet = 1024 * 1024;

QLatin1StringView endingOf(CustomizeFormat format) {
    return format == CustomizeFormat::Ini ? kIniEnding : kCstEnding;
}

/// Whatever does not say that it is the one is taken for the other.
CustomizeFormat formatOf(const QString& path) {
    return path.last(qMin<qsizetype>(3, path.size())).toLower() == u"ini" ? CustomizeFormat::Ini : CustomizeFormat::Cst;
}

/// The folder of last time; the program's when there is none, or none of this machine.
QString startFolder(const core::Session& session, const core::Setting& kept) {
    const QString folder = core::Settings(session).text(kept);
    return core::isAbsoluteFolder(folder) ? folder : session.MyPath;
}

bool holdsCustomizeKeys(const QString& file) {
    if (QFileInfo(file).size() > kLargestSet)
        return false;
    const QStringList sections = platform::ProfileFile(file).sections();
    return std::ranges::any_of(keys::kCustomizeSet, [&](const core::Setting* setting) {
        return sections.contains(setting->section, Qt::CaseInsensitive);
    });
}

/// What an export writes over the copy.
std::vector<platform::ProfileChange> signature(CustomizeFormat format, const CustomizeAuthor& author) {
    std::vector<platform::ProfileChange> changes;
    const auto set = [&](const core::Setting& setting, const QString& value) {
        changes.push_back({setting.section.toString(), setting.name.toString(), value});
    };
    if (format == CustomizeFormat::Cst) {
        for (const core::Setting* setting : keys::kCustomizeSet) {
            if (setting->isPersonal)
                set(*setting, u""_s);
        }
    }
    set(keys::author::kName, author.name);
    set(keys::author::kURL, author.url);
    set(keys::author::kEmail, author.email);
    return changes;
}

/// Whether a new file in the place of `target` would be the new `source`: not so for a hard link.
bool isReplacedWith(const QString& source, const QString& target) {
    return QFileInfo(source).canonicalFilePath() == QFileInfo(target).canonicalFilePath();
}

[[noreturn]] void refuse(const QString& target, const QString& reason) {
    throw platform::Failure(u"カスタマイズファイルを保存できません。"_s, target, reason,
                            u"別のファイル名を指定してください。元のファイルはそのままです。"_s);
}

/// In one piece: at no moment there is a file for others that still says who made it.
void writeCopy(const QString& source, const QString& target, const std::vector<platform::ProfileChange>& changes) {
    QByteArray bytes = platform::readFile(source);
    for (const platform::ProfileChange& change : changes)
        bytes = platform::changedProfile(bytes, change.section, change.key, change.value);
    platform::replaceFile(target, bytes, platform::Durability::Durable);
}

} // namespace

CustomizeExchange::CustomizeExchange(const core::Run& run, std::optional<QString> path)
    : m_run(run)
    , m_path(std::move(path)) {}

QString CustomizeExchange::setFolder() const {
    return core::withSeparator(platform::existingPath(core::GetParentFolder(m_run.session.CustIniFile)));
}

bool CustomizeExchange::importCommand() {
    const bool isDone = ImportCustomize();
    m_run.desk.status(isDone ? u"カスタマイズファイルの読み込みに成功しました。"_s
                             : u"カスタマイズファイルの読み込みに失敗しました。"_s);
    if (isDone && !remark().isEmpty())
        m_run.desk.notice(remark());
    return isDone;
}

bool CustomizeExchange::ImportCustomize() {
    const std::optional<QString> source = chosenSource();
    if (!source || source->isEmpty())
        return false;
    const std::optional<QString> target = targetOfImport(*source);
    if (!target)
        return false;
    platform::copyFile(*source, *target, 0666, platform::Durability::Durable);
    core::writeQuietly(m_run.session, keys::kLoadCustPath, core::GetParentFolder(*source));
    m_imported = *target;
    return true;
}

std::optional<QString> CustomizeExchange::chosenSource() const {
    if (m_path)
        return m_path;
    return m_run.desk.choosePath({platform::PathMode::Open, u"カスタマイズファイルを開く"_s,
                                  u"Customize Files(*.cst,*.ini)|*.cst;*.ini|ALL Files(*.*)|*.*"_s,
                                  startFolder(m_run.session, keys::kLoadCustPath)});
}

/// Nothing when the name is taken and no other one is given.
std::optional<QString> CustomizeExchange::targetOfImport(const QString& source) const {
    QString name = core::GetFileName(source);
    if (formatOf(source) == CustomizeFormat::Cst)
        name = core::GetBaseName(name) + kIniEnding;
    if (core::GetBaseName(name).isEmpty())
        throw platform::Failure(u"カスタマイズファイルを取り込めません。"_s, source,
                                u"ファイル名に、セットの名前になる部分がありません"_s,
                                u"何も取り込んでいません。ファイル名を変えてから、もう一度実行してください。"_s);
    const QString target = setFolder() + name;
    if (!QFileInfo::exists(platform::existingPath(target)))
        return target;
    const QString answer = m_run.desk.input(u"同じ名称の物が存在します。\r\n新しい名前を入力して下さい。"_s, {});
    const QString other = setFolder() + answer + kIniEnding;
    if (!site::isCustomizeName(m_run.session, answer) || QFileInfo::exists(platform::existingPath(other)))
        return std::nullopt;
    return other;
}

QString CustomizeExchange::remark() const {
    if (holdsCustomizeKeys(m_imported))
        return {};
    return u"取り込んだ「%1」には、カスタマイズの項目が見つかりませんでした。"_s.arg(core::GetFileName(m_imported));
}

bool CustomizeExchange::exportCommand(const QString& setName, CustomizeFormat format, const CustomizeAuthor& author) {
    const bool isDone = ExportCustomize(setName, format, author);
    m_run.desk.status(isDone ? u"カスタマイズファイルの出力に成功しました。"_s
                             : u"カスタマイズファイルの出力に失敗しました。"_s);
    return isDone;
}

bool CustomizeExchange::ExportCustomize(const QString& setName, CustomizeFormat format, const CustomizeAuthor& author) {
    const std::optional<QString> target = chosenTarget(format);
    if (!target)
        return false;
    requireFreeName(*target);
    const QString source = platform::existingPath(setFolder() + setName + kIniEnding);
    const bool isThere = QFileInfo::exists(*target);
    const bool isCopied = !isThere || m_run.desk.ask(u"同名のファイルが存在します。\r\n上書きしますか？"_s);
    if (isThere && isReplacedWith(source, *target))
        platform::writeProfile(*target, signature(CustomizeFormat::Ini, author));
    else if (isCopied)
        writeCopy(source, *target, signature(format, author));
    else
        platform::writeProfile(*target, signature(format, author));
    core::writeQuietly(m_run.session, keys::kSaveCustPath, core::GetParentFolder(*target));
    m_exported = *target;
    return true;
}

/// With its ending; nothing after a cancel. Beside the sets it is the one that differs in case alone.
std::optional<QString> CustomizeExchange::chosenTarget(CustomizeFormat format) const {
    std::optional<QString> chosen = m_path;
    if (!chosen) {
        const QString filter = format == CustomizeFormat::Ini ? u"Customize Files(*.ini)|*.ini|ALL Files(*.*)|*.*"_s
                                                              : u"Customize Files(*.cst)|*.cst|ALL Files(*.*)|*.*"_s;
        chosen = m_run.desk.choosePath({.mode = platform::PathMode::Save,
                                        .title = u"カスタマイズファイルの保存..."_s,
                                        .filter = filter,
                                        .folder = startFolder(m_run.session, keys::kSaveCustPath),
                                        .asksBeforeReplacing = false});
    }
    if (!chosen || chosen->isEmpty())
        return std::nullopt;
    if (core::GetFileName(*chosen).isEmpty())
        refuse(*chosen, u"ファイル名がありません"_s);
    if (!chosen->toLower().endsWith(endingOf(format)))
        *chosen += endingOf(format);
    const bool isBesideSets = platform::isSameFile(core::GetParentFolder(*chosen), setFolder());
    return isBesideSets ? platform::existingPath(*chosen) : *chosen;
}

/// Settings of the program bear the same ending, and lie where the first export begins.
void CustomizeExchange::requireFreeName(const QString& target) const {
    const core::Session& session = m_run.session;
    namespace files = core::files;
    QStringList own{session.DiaryIniFile, session.FrameIniFile, session.RSSIniFile, session.HaloScanIniFile,
                    session.BlogIniFile};
    for (const core::File& file : {files::kUsers, files::kEndpoints, files::kFirstSettings, files::kFirstCustomizeIni,
                                   files::kHtmlToText, files::kFeedHtmlToText})
        own += file.in(session);
    if (std::ranges::any_of(own, [&](const QString& file) { return platform::isSameFile(file, target); }))
        refuse(target, u"日記に必要なファイルです"_s);
}

} // namespace velloria::exchange
