#include "publish/upload_home.h"

#include "core/keys.h"
#include "platform/file_write.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {

using publish::TransferType;
using registers::SiteSide;

bool MemoryServer::accepts(const QString& call) {
    if (beforeCall)
        beforeCall(call);
    if (m_trace)
        m_trace(u"> "_s + call);
    m_transcript += u"> "_s + call;
    m_error = refusals.value(call, 0);
    return m_error == 0;
}

bool MemoryServer::result(bool isDone, int error) {
    m_error = isDone ? 0 : error;
    return isDone;
}

bool MemoryServer::openSession() {
    m_isSessionOpen = accepts(u"open"_s);
    return m_isSessionOpen;
}

bool MemoryServer::connectFtp(const publish::FtpLogin& login) {
    const QString mode = login.isPassive ? u"passive"_s : u"active"_s;
    const QString tls = login.tls == publish::Tls::Off           ? u""_s
                        : login.tls == publish::Tls::WhenOffered ? u" encrypted when offered"_s
                                                                 : u" encrypted"_s;
    m_isFtpOpen = accepts(u"connect %1 %2 %3 %4%5"_s.arg(login.host, login.user, login.password, mode, tls));
    m_current.clear();
    return m_isFtpOpen;
}

bool MemoryServer::changeDirectory(const QString& name) {
    if (!accepts(u"cd "_s + name))
        return false;
    const QString target = name == u".."_s ? m_current.section(u'/', 0, -2) : m_current + u'/' + name;
    if (m_folders.contains(target))
        m_current = target;
    return result(m_folders.contains(target), publish::kExtendedError);
}

bool MemoryServer::createDirectory(const QString& name) {
    if (!accepts(u"mkdir "_s + name))
        return false;
    m_folders.insert(m_current + u'/' + name);
    return true;
}

bool MemoryServer::findFile(const QString& name) {
    return accepts(u"find "_s + name) && result(m_files.contains(m_current + u'/' + name), publish::kNoMoreFiles);
}

bool MemoryServer::findDirectory(const QString& name) {
    return accepts(u"find directory "_s + name) &&
           result(m_folders.contains(m_current + u'/' + name), publish::kNoMoreFiles);
}

bool MemoryServer::deleteFile(const QString& name) {
    return accepts(u"delete "_s + name) &&
           result(m_files.remove(m_current + u'/' + name) == 1, publish::kExtendedError);
}

bool MemoryServer::putFile(const QString& localFile, const QString& name, TransferType type) {
    if (!accepts(u"put %1 %2"_s.arg(name, type == TransferType::Text ? u"text"_s : u"binary"_s)))
        return false;
    if (!QFileInfo(localFile).isFile())
        return result(false, 2);
    m_files[m_current + u'/' + name] = platform::readFile(localFile);
    return true;
}

void MemoryServer::closeFtp() {
    m_transcript += u"> close ftp"_s;
    if (m_trace)
        m_trace(u"> close ftp"_s);
    m_isFtpOpen = false;
}

void MemoryServer::closeSession() {
    m_transcript += u"> close session"_s;
    m_isSessionOpen = false;
}

void TranscriptDesk::progressWindow(const platform::ProgressWindow& window) {
    windows.push_back(window);
    ScriptedDesk::progressWindow(window);
}

void TranscriptDesk::pump() {
    m_transcript += u"pump"_s;
    if (onPump)
        onPump();
}

void TranscriptDesk::record(const QJsonObject& event) {
    ScriptedDesk::record(event);
    const QString kind = event[u"event"_s].toString();
    const auto text = [&](const QString& member) { return event[member].toString().replace(u"\r\n"_s, u" / "_s); };
    if (kind == u"status"_s)
        m_transcript += u"status: "_s + text(u"text"_s);
    else if (kind == u"pointer"_s)
        m_transcript += u"pointer: "_s + text(u"shape"_s);
    else if (kind == u"sound"_s)
        m_transcript += u"sound: "_s + text(u"command"_s);
    else if (kind == u"message"_s)
        m_transcript +=
            u"box %1 %2 %3: %4"_s.arg(text(u"kind"_s), text(u"title"_s), text(u"answer"_s), text(u"text"_s));
    else if (kind == u"progress"_s)
        m_transcript += u"window: %1 | %2 | %3/%4%5"_s.arg(text(u"title"_s), text(u"text"_s))
                            .arg(event[u"value"_s].toInt())
                            .arg(event[u"max"_s].toInt())
                            .arg(event[u"ok"_s].toBool() ? u" | OK"_s : QString());
    else
        m_transcript += kind;
}

UploadHome::UploadHome() {
    useSite();
    namespace keys = core::keys;
    for (const auto& [key, value] : {std::pair(keys::kFtpUrl, u"ftp.example.com"_s),
                                     {keys::kFtpId, u"me"_s},
                                     {keys::kFtpPass, u"ufsdft"_s},
                                     {keys::kFtpStartFolder, u"pub"_s}})
        set(key, value);
    server.makeFolder(u"/pub"_s);
    server.makeFolder(u"/pub/DiaryParts"_s);
    server.makeFolder(u"/pub/DiaryLog"_s);
    server.makeFolder(u"/pub/DiaryLog/DiaryParts"_s);
    for (const QString& folder : {session.FilePath, logFolder()})
        platform::makeFolder(folder + u"DiaryParts"_s);
    platform::makeFolder(session.DataPath + u"DiaryLog/DiaryParts"_s);
}

void UploadHome::addPage(const QString& name, const QByteArray& bytes) {
    writeFile(session.FilePath + name, bytes);
    core::appendUploadList(list(u"upload.tmp"_s), {{QDir(session.FilePath).absolutePath(), name}});
}

void UploadHome::addLog(const QString& name, const QByteArray& bytes) {
    writeFile(logFolder() + name, bytes);
    core::appendUploadList(list(u"uploadlog.tmp"_s), {{QDir(logFolder()).absolutePath(), name}});
}

void UploadHome::addPart(const QString& name, SiteSide side, const QByteArray& bytes) {
    writeFile((side == SiteSide::Log ? logFolder() : session.FilePath) + u"DiaryParts/"_s + name, bytes);
    addRow(name, side);
}

void UploadHome::addRow(const QString& name, SiteSide side) {
    registers::FileRegister(session.databaseFile())
        .addFile({0, name, u"2004/05/06"_s, 1, false, side == SiteSide::Log});
}

void UploadHome::fillSite() {
    addPage(u"index.htm"_s, "one\r\n");
    addPage(u"index1.htm"_s, "two\r\n");
    addPart(u"a.gif"_s, SiteSide::Current, "\1\r\n\2");
    addLog(u"200404.htm"_s, "log\r\n");
    addLog(u"200403.htm"_s, "older\r\n");
    addPart(u"b.gif"_s, SiteSide::Log, "\3\n");
    core::writeUploadList(list(u"uploadold.tmp"_s), {{session.FilePath, u"index.htm"_s}, {u"x"_s, u"gone.htm"_s}});
    server.addFile(u"/pub/index.htm"_s);
    server.addFile(u"/pub/DiaryLog/200404.htm"_s);
}

QMap<QString, QByteArray> UploadHome::filledServer() {
    return {{u"/pub/index.htm"_s, "one\r\n"},
            {u"/pub/index1.htm"_s, "two\r\n"},
            {u"/pub/DiaryParts/a.gif"_s, "\1\r\n\2"},
            {u"/pub/DiaryLog/200404.htm"_s, "log\r\n"},
            {u"/pub/DiaryLog/200403.htm"_s, "older\r\n"},
            {u"/pub/DiaryLog/DiaryParts/b.gif"_s, "\3\n"}};
}

publish::UploadResult UploadHome::run() {
    m_lines.clear();
    shown.events = {};
    return publish::FtpUpload({session, clock, shown}, server, calls).FTP_Execute();
}

QStringList UploadHome::lines(const QString& beginning) const {
    QStringList found;
    for (const QString& line : m_lines) {
        if (line.startsWith(beginning))
            found += line.sliced(beginning.size());
    }
    return found;
}

QString UploadHome::transcriptFrom(const QString& call) const {
    return m_lines.mid(m_lines.indexOf(u"> "_s + call)).join(u'\n');
}

QString UploadHome::uploaded() {
    return sqlValue(u"SELECT group_concat(FileName || ' ' || Uploaded, ', ') FROM FileDB"_s);
}

QString textOf(const char* utf8) {
    return QString::fromUtf8(utf8).trimmed();
}

} // namespace velloria::tests
