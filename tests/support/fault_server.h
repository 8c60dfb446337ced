// An FTP server of our own on the local machine, which refuses, stalls, cuts and talks nonsense where a test wants it.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace velloria::tests {

class FaultServer {
public:
    enum class Way { Direct, ThroughProxy };

    /// Starts it on a folder of its own. The port of FTP is the superuser's: without such rights isRunning is false.
    /// Through a proxy anybody reaches it, in passive mode alone: the variable "all_proxy" tells, for this one's life.
    explicit FaultServer(Way way = Way::Direct);
    ~FaultServer();

    bool isRunning() const { return m_isRunning; }
    /// An address of this server alone, so that tests may run side by side though the port is always the same.
    QString host() const { return m_host; }

    /// What a command brings from now on; see fault_server.py.
    void on(const QString& command, const QJsonValue& rule);

    /// The commands that came, "connected" for a connection; the user's and the login's own included.
    QList<QByteArray> log() const;
    int countOf(const QByteArray& line) const;
    /// Names are the bytes on the server's disk.
    void put(const QByteArray& name, const QByteArray& content) const;
    QByteArray content(const QByteArray& name) const;
    bool has(const QByteArray& name) const;
    void makeFolder(const QByteArray& name) const;
    void link(const QByteArray& name, const QByteArray& target) const;
    /// Ends it in the middle of what it does.
    void kill();

private:
    std::string pathOf(const QByteArray& name) const;

    QTemporaryDir m_folder;
    QProcess m_process;
    QString m_host;
    QJsonObject m_rules;
    Way m_way;
    QList<QByteArray> m_exceptions; ///< what the variables about the proxy said before
    bool m_isRunning = false;
};

} // namespace velloria::tests
