// A disk that refuses on demand. The calls by which this program and its libraries (the data engine too) reach files
// come through here: those on one folder are counted, and the n-th of them fails, or those that find no room.
#pragma once

#include <QString>

#include <string>

namespace velloria::tests {

enum class Fault {
    FullDisk,     ///< from the n-th change on nothing more is written; what a full disk still does, it does
    IoError,      ///< the n-th reading or changing call fails, the others succeed
    BrokenDisk,   ///< all of them fail from the n-th on
    KilledProgram ///< the n-th change ends the program, in the middle of it where it is a write
};

/// One folder on such a disk, for the life of this; one at a time. Of itself it fails nowhere.
class FaultyDisk {
public:
    explicit FaultyDisk(const QString& folder);
    ~FaultyDisk();
    FaultyDisk(const FaultyDisk&) = delete;
    FaultyDisk& operator=(const FaultyDisk&) = delete;

    /// The n-th call, from 1 on, that this fault can meet.
    void failAt(Fault fault, int n);

    /// The folder takes so many bytes more and is full then, until something in it is removed. Asked for its room, the
    /// disk tells that.
    void leaveRoom(qint64 bytes);

    /// Whether the fault has come.
    bool hasFailed() const;

    /// What makes changes last, in turn: "f" a file brought to the disk, "d" a folder, "r" a rename.
    std::string turns() const;

    /// How a killed program ends.
    static constexpr int kKilled = 137;
};

} // namespace velloria::tests
