// The folders of the web server: the one to enter is made when the user wants it.
#pragma once

#include "platform/desk.h"
#include "publish/internet.h"

namespace velloria::publish {

/// CheckFTPFolder comes before ChangeFTPDirectory, for it alone makes a missing folder. A refusal is false, not thrown.
/// Both routines work in the connection's current directory, tell on the status panel what they do, and tell in a box
/// why they return false.
class FtpFolders {
public:
    FtpFolders(Internet& internet, platform::Desk& desk)
        : m_internet(internet)
        , m_desk(desk) {}

    /// Makes sure that the directory exists; a missing one is made if the user says so.
    bool CheckFTPFolder(const QString& name);

    /// Enters the directory `name`, or leaves the current one with "..". `path` is for display alone: what stands in
    /// front of the name, for ".." the directory that is left, with a "/" at its end.
    bool ChangeFTPDirectory(const QString& path, const QString& name);

    /// Why the last of them was false, in one line.
    const QString& refusal() const { return m_refusal; }

private:
    bool makeFolder(const QString& name);
    bool refused(const QString& text);

    Internet& m_internet;
    platform::Desk& m_desk;
    QString m_refusal;
};

} // namespace velloria::publish
