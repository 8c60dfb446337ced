#include "publish/update_home.h"

#include "core/program_keys.h"
#include "core/setting.h"
#include "core/settings_change.h"
#include "platform/code_page.h"
#include "support/patience.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QRegularExpression>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::tests {

bool MemoryWeb::openSession() {
    m_transcript += u"> open"_s;
    m_isSessionOpen = isReachable;
    m_error = isReachable ? 0 : 12029;
    return isReachable;
}

bool MemoryWeb::openUrl(const QString& url) {
    m_transcript += u"> url "_s + url;
    m_isUrlOpen = files.contains(url);
    m_error = m_isUrlOpen ? 0 : 12007;
    m_file = files.value(url);
    return m_isUrlOpen;
}

QByteArray MemoryWeb::readUrl() {
    if (onRead)
        onRead();
    const QByteArray block = m_file.bytes.first(std::min<qsizetype>(1024, m_file.bytes.size()));
    m_file.bytes.remove(0, block.size());
    m_error = block.isEmpty() ? m_file.error : 0;
    return block;
}

void MemoryWeb::closeUrl() {
    m_transcript += u"> close url"_s;
    m_isUrlOpen = false;
    if (onClose)
        onClose();
}

void MemoryWeb::closeSession() {
    m_transcript += u"> close session"_s;
    m_isSessionOpen = m_isUrlOpen = false;
}

UpdateHome::UpdateHome() {
    setEndpoint(core::keys::kMakerSoftware, u"http://maker/news.htm"_s);
    setEndpoint(core::keys::kMakerUpdateFolder, u"http://maker/up/"_s);
    calls.stopBrowser = [this] { m_lines += u"browser stops"_s; };
    calls.enableUpdater = [this](bool isEnabled) { m_lines += isEnabled ? u"updater on"_s : u"updater off"_s; };
    calls.endProgram = [this] { m_lines += u"program ends"_s; };
}

void UpdateHome::offer(const QString& lines) {
    web.files[u"http://maker/up/update.txt"_s] = {platform::toCodePage(QString(lines).replace(u" / "_s, u"\r\n"_s))};
}

void UpdateHome::offerRelease(const QString& fileName, const QByteArray& bytes) {
    offer(u"[Release] / version=2.2.1 / URL_Full=http://maker/v.lzh / FileName="_s + fileName);
    web.files[u"http://maker/v.lzh"_s] = {bytes};
}

void UpdateHome::putUpdater(const QByteArray& script) const {
    writeFile(path(u"VellUpdater.exe"_s), script);
}

void UpdateHome::setEndpoint(const core::Setting& key, const QString& value) const {
    core::writeQuietly(session, key, value);
}

publish::UpdateResult UpdateHome::check() {
    forget();
    const publish::UpdateResult result = publish::UpdateCheck({session, clock, shown}, web, calls).MnuUpdateCheck();
    EXPECT_FALSE(web.isOpen());
    return result;
}

void UpdateHome::forget() {
    m_lines.clear();
    shown.events = {};
}

QString UpdateHome::transcript() const {
    static const QRegularExpression speed(u"\\(\\d+\\.\\dkbps\\)"_s);
    return m_lines.join(u'\n').replace(session.MyPath, u"HOME/"_s).replace(speed, u"(0.0kbps)"_s);
}

QStringList UpdateHome::lines(const QString& beginning) const {
    QStringList found;
    for (const QString& line : m_lines) {
        if (line.startsWith(beginning))
            found += line.sliced(beginning.size());
    }
    return found;
}

void UpdateHome::expectEnding() const {
    EXPECT_EQ(m_lines.last(2), (QStringList{u"> close session"_s, u"pointer: default"_s}));
}

QByteArray UpdateHome::waitFor(const QString& name) const {
    for (const QDeadlineTimer deadline(kPatienceMs); !deadline.hasExpired(); QThread::msleep(20)) {
        QFile file(path(name));
        if (file.open(QIODevice::ReadOnly) && file.size() > 0)
            return file.readAll();
    }
    return {};
}

} // namespace velloria::tests
