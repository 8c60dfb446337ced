// "upload.log" in the user's folder: what an upload and its server have said to each other.
#pragma once

#include <QFile>
#include <QString>

namespace velloria::publish {

/// Begun by the constructor; then add for each line, and end once. Nothing is thrown. UTF-8, a line each. It holds this
/// run and the one before, and is readable by its owner alone. A log that the disk refuses is done without: it is a
/// help after a failure and must not become one.
class UploadLog {
public:
    /// Begins a run under this heading.
    UploadLog(const QString& file, const QString& heading);

    /// A server may talk without end: beyond some megabytes a run's lines are left out.
    void add(const QString& line);
    /// How the run has ended; this line always goes in.
    void end(const QString& line);

private:
    void write(const QString& line);

    QFile m_file;
    qint64 m_room;
};

} // namespace velloria::publish
