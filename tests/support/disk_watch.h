// The disk, watched: what a program makes durable, and a disk that refuses it at that moment.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace velloria::tests {

/// Sees every fsync and fdatasync of this process for its life; one at a time.
class DiskWatch {
public:
    DiskWatch();
    ~DiskWatch();
    DiskWatch(const DiskWatch&) = delete;
    DiskWatch& operator=(const DiskWatch&) = delete;

    /// The names, without folder, of the files and folders that were made durable, in turn.
    QStringList synced() const;
    /// From here on the disk fails for names that end like this, as one does that breaks while it is written to.
    void refuse(const QString& ending);
    /// Called before each.
    void onSync(std::function<void()> called);
};

/// Asked before each fsync and fdatasync, watched or not: true refuses it, with the reason in errno.
extern bool (*refusesSync)(int descriptor);

} // namespace velloria::tests
