// Words for tests that work with a plug-in.
#pragma once

#include <QFile>
#include <QString>
#include <QStringList>

namespace velloria::tests {

/// What the plug-in of tests/support/plugin_stub.cpp is to do, for the life of this, and what it was called for.
class StubPlugin {
public:
    explicit StubPlugin(const QString& logFile)
        : m_logFile(logFile) {
        set("LOG", logFile);
    }
    ~StubPlugin() {
        for (const char* name :
             {"LOG", "FAILS", "THROWS", "DENIES", "LACKS", "ENDS", "LOADS", "TALKS", "BRINGS", "NOTES", "WRITES"})
            qunsetenv(variable(name).constData());
    }
    StubPlugin(const StubPlugin&) = delete;
    StubPlugin& operator=(const StubPlugin&) = delete;

    /// Puts it there under one of the plug-ins' names, as a full path.
    static void install(const QString& file) { QFile::copy(QStringLiteral(VELLORIA_PLUGIN_STUB), file); }

    /// "FAILS", "THROWS", "DENIES", "LACKS", "ENDS", "LOADS", "TALKS", "BRINGS", "NOTES" or "WRITES"; the stub says
    /// what the values mean.
    void set(const char* name, const QString& value) { qputenv(variable(name).constData(), value.toUtf8()); }

    /// The calls so far, with their arguments.
    QStringList calls() const {
        QFile file(m_logFile);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(QChar(u'\n'), Qt::SkipEmptyParts);
    }

private:
    static QByteArray variable(const char* name) { return QByteArray("VELLORIA_PLUGIN_") + name; }

    QString m_logFile;
};

} // namespace velloria::tests
