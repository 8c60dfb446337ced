#include "store/kept_lines.h"

#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/utf8.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

constexpr qint64 kMostBytes = 20'000'000;
/// What stays when the oldest lines go: with room for many more, so that not each of them moves the whole file.
constexpr qint64 kBytesLeft = 19'500'000;

platform::Failure refused(const platform::Failure& failure) {
    return {u"消える内容を控えに残せません。"_s, failure.file(), failure.reason(),
            u"日記は変更されていません。空き容量と書き込みの許可を確認してください。"_s};
}

/// A last line without its end was cut by a kill or a crash, was damaged, or was edited by hand. What does not read as
/// a line any more moves to a file of its own: it may be all that is left of a text.
void endLastLine(const QString& path, const QString& damagedFile) {
    const QByteArray last = platform::readEndIfThere(path, 1).value_or(QByteArray());
    if (last.isEmpty() || last == "\n")
        return;
    const QByteArray bytes = platform::readFile(path);
    const qsizetype begin = bytes.lastIndexOf('\n') + 1;
    const QByteArray line = bytes.sliced(begin);
    if (platform::parseJson(platform::withoutSignature(line).toByteArray(), nullptr).isObject()) {
        platform::appendToFile(path, "\n");
        return;
    }
    platform::appendToFile(damagedFile, line + '\n', 0600);
    QFile file(path);
    if (!file.resize(begin))
        throw platform::Failure(u"ファイルを短くできません。"_s, path, file.errorString());
}

} // namespace

KeptLines::KeptLines(const core::Run& run, const core::File& file, const core::File& damagedFile)
    : m_file(file.in(run.session))
    , m_damagedFile(damagedFile)
    , m_clock(run.clock)
    , m_isOn(core::Settings(run.session).text(core::keys::kRescue) != u"0"_s) {}

void KeptLines::keepLines(std::vector<QJsonObject> kept, const QString& reason) {
    if (!m_isOn || kept.empty())
        return;
    QByteArray lines;
    for (QJsonObject& json : kept) {
        json[u"Reason"_s] = reason;
        json[u"Time"_s] = m_clock.now().toString(u"yyyy/MM/dd HH:mm:ss");
        lines += QJsonDocument(json).toJson(QJsonDocument::Compact) + '\n';
    }
    const platform::FolderLock lock(core::GetParentFolder(m_file));
    try {
        append(lines);
    } catch (const platform::Failure& failure) {
        throw refused(failure);
    }
}

void KeptLines::append(const QByteArray& lines) {
    endLastLine(m_file, m_damagedFile.below(core::GetParentFolder(m_file) + u'/'));
    const qint64 size = QFileInfo(m_file).size();
    // Once a change: what it keeps itself must not push its own first lines out.
    if (m_end < 0 && size + lines.size() > kMostBytes) {
        QByteArray kept = size > 0 ? platform::readFile(m_file) : QByteArray();
        const qsizetype cut = kept.indexOf('\n', qMax<qsizetype>(0, kept.size() + lines.size() - kBytesLeft));
        kept = cut < 0 ? QByteArray() : kept.sliced(cut + 1);
        platform::replaceFile(m_file, kept + lines, platform::Durability::Durable, 0600);
        m_begin = kept.size();
        m_end = kept.size() + lines.size();
        return;
    }
    platform::appendToFile(m_file, lines, 0600);
    if (m_end < 0)
        m_begin = size;
    else if (m_end != size)
        m_begin = -1;
    m_end = size + lines.size();
}

void KeptLines::forget() {
    if (m_begin < 0)
        return;
    const platform::FolderLock lock(core::GetParentFolder(m_file));
    QFile file(m_file);
    if (file.size() != m_end)
        return;
    if (m_begin == 0 && !QFileInfo(m_file).isSymLink())
        file.remove();
    else
        file.resize(m_begin);
}

} // namespace velloria::store
