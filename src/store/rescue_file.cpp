#include "store/rescue_file.h"

#include "core/keys.h"
#include "core/path_names.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "store/entry_line.h"

#include <QFile>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

constexpr qint64 kMostBytes = 20'000'000;

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
    QFile file(m_file);
    const auto refuse = [&] {
        throw platform::Failure(u"消える内容を控えに残せません。"_s, m_file, file.errorString(),
                                u"日記は変更されていません。"_s);
    };
    if (!file.exists() &&
        (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner)))
        refuse();
    file.close();
    if (file.size() + line.size() > kMostBytes) {
        QByteArray kept = platform::readFile(m_file);
        const qsizetype cut = kept.indexOf('\n', qMax<qsizetype>(0, kept.size() + line.size() - kMostBytes));
        kept = cut < 0 ? QByteArray() : kept.sliced(cut + 1);
        platform::replaceFile(m_file, kept + line, platform::Durability::Durable, 0600);
        return;
    }
    const qint64 whole = file.size();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        refuse();
    if (file.write(line) != line.size() || !file.flush()) {
        file.resize(whole); // no half line in front of the next one
        refuse();
    }
}

} // namespace velloria::store
