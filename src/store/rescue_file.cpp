#include "store/rescue_file.h"

#include "core/keys.h"
#include "core/path_names.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "store/entry_line.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

constexpr qint64 kMostBytes = 20'000'000;
/// What stays when the oldest lines go: with room for many more, so that not each of them moves the whole file.
constexpr qint64 kBytesLeft = 19'500'000;

/// A run that was killed while it wrote changed nothing in the diary: its half line keeps nothing. A whole line lacks
/// its end after an edit by hand.
void endLastLine(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) || file.size() == 0)
        return;
    file.seek(file.size() - 1);
    if (file.peek(1) == "\n")
        return;
    file.seek(0);
    const QByteArray bytes = file.readAll();
    const qsizetype begin = bytes.lastIndexOf('\n') + 1;
    if (QJsonDocument::fromJson(bytes.sliced(begin)).isObject())
        file.write("\n");
    else
        file.resize(begin);
}

} // namespace

RescueFile::RescueFile(const core::Session& session, const platform::Clock& clock)
    : m_file(session.UserPath + u"rescue.jsonl"_s)
    , m_clock(clock)
    , m_isOn(core::ReadIniDef(session.DiaryIniFile, core::keys::kRescue.section, core::keys::kRescue.name, u"1"_s) !=
             u"0"_s) {}

void RescueFile::keep(const Entry& entry, const QString& reason) {
    if (!m_isOn)
        return;
    QJsonObject json = toJson(entry);
    json[u"Reason"_s] = reason;
    json[u"Time"_s] = m_clock.now().toString(u"yyyy/MM/dd HH:mm:ss");
    const QByteArray line = QJsonDocument(json).toJson(QJsonDocument::Compact) + '\n';

    const platform::FolderLock lock(core::GetParentFolder(m_file));
    endLastLine(m_file);
    const qint64 size = QFileInfo(m_file).size();
    // Once a change: what it keeps itself must not push its own first lines out.
    if (m_end < 0 && size + line.size() > kMostBytes) {
        QByteArray kept = size > 0 ? platform::readFile(m_file) : QByteArray();
        const qsizetype cut = kept.indexOf('\n', qMax<qsizetype>(0, kept.size() + line.size() - kBytesLeft));
        kept = cut < 0 ? QByteArray() : kept.sliced(cut + 1);
        platform::replaceFile(m_file, kept + line, platform::Durability::Durable, 0600);
        m_begin = kept.size();
        m_end = kept.size() + line.size();
        return;
    }
    if (m_end < 0)
        m_begin = size;
    else if (m_end != size)
        m_begin = -1;
    append(line);
    m_end = size + line.size();
}

void RescueFile::append(const QByteArray& line) {
    QFile file(m_file);
    const auto refuse = [&](const QString& reason) {
        throw platform::Failure(u"消える内容を控えに残せません。"_s, m_file, reason,
                                u"日記は変更されていません。空き容量と書き込みの許可を確認してください。"_s);
    };
    if (!file.exists()) {
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner))
            refuse(file.errorString());
        file.close();
    }
    const qint64 whole = file.size();
    // Unbuffered: what a buffer could not get rid of would also keep the file from being cut.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        refuse(file.errorString());
    if (file.write(line) != line.size()) {
        const QString reason = file.errorString();
        file.resize(whole); // no half line in front of the next one
        m_end = whole;
        refuse(reason);
    }
}

void RescueFile::forget() {
    if (m_begin < 0)
        return;
    const platform::FolderLock lock(core::GetParentFolder(m_file));
    QFile file(m_file);
    if (file.size() != m_end)
        return;
    if (m_begin == 0)
        file.remove();
    else
        file.resize(m_begin);
}

} // namespace velloria::store
