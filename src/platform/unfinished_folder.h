// A folder that another run must find whole: filled under a name that nobody looks at, and renamed at the end.
#pragma once

#include <QString>
#include <QStringList>

#include <memory>

namespace velloria::platform {

class Descriptor;

class UnfinishedFolder {
public:
    /// For a folder that is missing or empty. Throws Failure.
    explicit UnfinishedFolder(const QString& target);
    /// Unless it was finished nothing of it stays.
    ~UnfinishedFolder();
    UnfinishedFolder(const UnfinishedFolder&) = delete;
    UnfinishedFolder& operator=(const UnfinishedFolder&) = delete;

    /// Where its files are to be written.
    QString path() const { return m_path; }

    /// Brings all of it to the disk and gives it its name. A folder that was there already stays the one it is, and the
    /// files move into it. Throws Failure, and the target is as it was.
    void finish();

    /// Removes what killed runs have left unfinished in a folder.
    static void removeLeftovers(const QString& folder);

private:
    void moveIn();

    QString m_target;
    bool m_isNew;
    QString m_path;
    std::unique_ptr<Descriptor> m_lock;
    QStringList m_moved;
    bool m_isFinished = false;
};

} // namespace velloria::platform
