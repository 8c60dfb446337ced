// A file of lines to which several programs add theirs: drafts.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace velloria::store {

/// Readable by its owner alone. One object a program, in one thread; other programs may write at the same time.
class OwnLines {
public:
    explicit OwnLines(QString file);

    /// The file's lines but the empty ones. Throws platform::Failure for a file that is there and can't be read.
    QList<QByteArray> all() const;

    /// From here on these lines are this object's, for write().
    void own(const QList<QByteArray>& lines) { m_own = lines; }

    /// Puts lines in the place of this object's own; those of other programs stay. An empty file is removed. Throws
    /// platform::Failure, also for a file that is there and can't be read: it stays as it is.
    void write(const QList<QByteArray>& lines);

private:
    QString m_file;
    QList<QByteArray> m_own;
};

} // namespace velloria::store
