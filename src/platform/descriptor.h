// Open files of the operating system. For the sources of this folder alone.
#pragma once

#include <QString>

#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace velloria::platform {

/// An open descriptor that closes itself.
class Descriptor {
public:
    explicit Descriptor(int value = -1)
        : m_value(value) {}
    Descriptor(Descriptor&& other) noexcept
        : m_value(std::exchange(other.m_value, -1)) {}
    ~Descriptor() { reset(-1); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&&) = delete;
    int value() const { return m_value; }
    void reset(int value) {
        if (m_value >= 0)
            ::close(m_value);
        m_value = value;
    }

private:
    int m_value;
};

/// The file open for reading and its status, without waiting for it. Throws Failure with `what` for anything but a
/// regular file: a pipe or a device that a name leads to may never answer, or never end.
Descriptor openRegularFile(const QString& file, const QString& what, struct stat& status);

/// Throws Failure with `what` for a file that is no regular one.
void requireRegular(const QString& file, const QString& what, const struct stat& status);

} // namespace velloria::platform
