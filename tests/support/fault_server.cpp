#include "support/fault_server.h"

#include "support/patience.h"

#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

using namespace Qt::StringLiterals;

namespace velloria::tests {

namespace {

/// The variables that say for whom the proxy is not asked; the tests run with one that says for nobody.
constexpr std::array kExceptions{"no_proxy", "NO_PROXY"};

} // namespace

FaultServer::FaultServer(Way way)
    : m_way(way) {
    std::filesystem::create_directory(m_folder.filePath(u"root"_s).toStdString());
    on(u"features"_s, {});
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(u"python3"_s,
                    {QStringLiteral(VELLORIA_FAULT_SERVER), way == Way::Direct ? u"21"_s : u"proxy"_s,
                     m_folder.filePath(u"root"_s), m_folder.filePath(u"rules"_s), m_folder.filePath(u"log"_s)});
    while (!m_process.canReadLine() && m_process.waitForReadyRead(kPatienceMs)) {
    }
    const QList<QByteArray> answer = m_process.readLine().trimmed().split(' ');
    m_isRunning = answer.first() == "ready";
    m_host = QString::fromLatin1(answer.value(1));
    if (way == Way::ThroughProxy) {
        for (const char* name : kExceptions) {
            m_exceptions += qgetenv(name);
            qunsetenv(name);
        }
        qputenv("all_proxy", "socks5h://" + m_host.toLatin1() + ':' + answer.value(2));
    }
}

FaultServer::~FaultServer() {
    if (m_way == Way::ThroughProxy) {
        qunsetenv("all_proxy");
        for (qsizetype i = 0; i < m_exceptions.size(); ++i) {
            if (!m_exceptions[i].isNull())
                qputenv(kExceptions[size_t(i)], m_exceptions[i]);
        }
    }
    kill();
    std::error_code ignored; // the folder's own end can't name what is in there
    std::filesystem::remove_all(pathOf({}), ignored);
}

void FaultServer::kill() {
    m_process.kill();
    m_process.waitForFinished();
}

void FaultServer::on(const QString& command, const QJsonValue& rule) {
    m_rules[command] = rule;
    QSaveFile file(m_folder.filePath(u"rules"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(m_rules).toJson()) < 0 || !file.commit())
        throw std::runtime_error("the rules of the server can't be written");
}

QList<QByteArray> FaultServer::log() const {
    QFile file(m_folder.filePath(u"log"_s));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> lines = file.readAll().split('\n');
    lines.removeLast();
    return lines;
}

int FaultServer::countOf(const QByteArray& line) const {
    return int(log().count(line));
}

void FaultServer::put(const QByteArray& name, const QByteArray& content) const {
    std::ofstream(pathOf(name), std::ios::binary) << content.toStdString();
}

QByteArray FaultServer::content(const QByteArray& name) const {
    std::ifstream file(pathOf(name), std::ios::binary);
    return QByteArray::fromStdString({std::istreambuf_iterator<char>(file), {}});
}

bool FaultServer::has(const QByteArray& name) const {
    return std::filesystem::exists(pathOf(name));
}

void FaultServer::makeFolder(const QByteArray& name) const {
    std::filesystem::create_directory(pathOf(name));
}

void FaultServer::link(const QByteArray& name, const QByteArray& target) const {
    std::filesystem::create_symlink(target.toStdString(), pathOf(name));
}

std::string FaultServer::pathOf(const QByteArray& name) const {
    return m_folder.filePath(u"root/"_s).toStdString() + name.toStdString();
}

} // namespace velloria::tests
