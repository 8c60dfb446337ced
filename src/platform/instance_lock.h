// One program at a time.
#pragma once

#include <QString>

namespace velloria::platform {

/// Held from its making to its end, and let go by the system when the program dies. The same name within one login of
/// a user is held by one program at a time. Where the system gives no lock, everybody holds it.
class InstanceLock {
public:
    explicit InstanceLock(const QString& name);
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    bool isHeld() const { return m_isHeld; }

private:
    int m_descriptor = -1;
    bool m_isHeld = true;
};

} // namespace velloria::platform
