#include "site/customize_backup.h"

#include "core/files.h"
#include "core/stored_name.h"
#include "core/text_file.h"
#include "platform/file_write.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

/// Settings are made with this mode.
constexpr unsigned kFileMode = 0666;

void replaceSet(const QString& set, QByteArrayView bytes) {
    platform::replaceFile(set, bytes, platform::Durability::Durable, kFileMode);
}

/// The name goes first: a backup without one is of no set.
void removeBackup(const core::Session& session) {
    platform::removeFile(core::files::kCustomizeBackupOf.in(session));
    platform::removeFile(core::files::kCustomizeBackup.in(session));
}

QString setOfBackup(const core::Session& session) {
    const QStringList lines = core::readLines(core::files::kCustomizeBackupOf.in(session));
    return lines.isEmpty() ? QString() : core::nameOfStored(lines.first());
}

} // namespace

CustomizeBackup::CustomizeBackup(const core::Session& session)
    : m_session(session) {}

void CustomizeBackup::take() {
    m_bytes.reset();
    removeBackup(m_session);
    const QByteArray bytes = platform::readFile(m_session.CustIniFile);
    platform::replaceFile(core::files::kCustomizeBackup.in(m_session), bytes, platform::Durability::Durable,
                          platform::modeOf(m_session.CustIniFile, kFileMode));
    core::writeLines(core::files::kCustomizeBackupOf.in(m_session), {core::storedName(m_session.CustIniFile)});
    m_set = m_session.CustIniFile;
    m_bytes = bytes;
}

bool CustomizeBackup::isSetChanged() const {
    return m_bytes && platform::readFileIfThere(m_set) != m_bytes;
}

void CustomizeBackup::restore() const {
    if (isSetChanged())
        replaceSet(m_set, *m_bytes);
}

void CustomizeBackup::drop() {
    m_bytes.reset();
    removeBackup(m_session);
}

void settleLeftBackup(const core::Run& run) {
    const QString backup = core::files::kCustomizeBackup.in(run.session);
    const std::optional<QByteArray> bytes = platform::readFileIfThere(backup);
    const QString set = run.session.CustIniFile;
    const QString named = setOfBackup(run.session);
    const bool isOfSet = bytes && (named == set || platform::isSameFile(named, set));
    if (isOfSet && platform::readFileIfThere(set) != bytes && run.desk.ask(u"前回の編集を取り消しますか？"_s))
        replaceSet(set, *bytes);
    removeBackup(run.session);
}

} // namespace velloria::site
