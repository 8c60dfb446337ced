#include "common/input_file.h"

#include "common/calls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace velloria::plugins {
namespace {

class Descriptor {
public:
    explicit Descriptor(int opened)
        : value(opened) {}
    ~Descriptor() {
        if (value >= 0)
            ::close(value);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    const int value;
};

Error cantRead(const std::string& path, const std::string& reason) {
    return Error("ファイルを読み込めません。\n" + path + "\n" + reason);
}

} // namespace

std::string readFile(const std::string& path, std::size_t largest) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)); // a pipe would keep us waiting
    struct stat status;
    if (file.value < 0 || ::fstat(file.value, &status) != 0)
        throw cantRead(path, std::strerror(errno));
    if (!S_ISREG(status.st_mode))
        throw cantRead(path, S_ISDIR(status.st_mode) ? std::strerror(EISDIR) : "通常のファイルではありません");
    const auto tooLarge = [&](std::size_t size) {
        return cantRead(path, "大きすぎます (" + std::to_string(size >> 20) + "MB)。" + std::to_string(largest >> 20) +
                                  "MBまでのファイルに分けてください。");
    };
    if (std::size_t(status.st_size) > largest)
        throw tooLarge(std::size_t(status.st_size));
    std::string bytes(std::size_t(status.st_size), '\0');
    std::size_t size = 0;
    for (;;) { // the file may grow meanwhile
        if (size == bytes.size())
            bytes.resize(size + (1 << 16));
        const ssize_t count = ::read(file.value, bytes.data() + size, bytes.size() - size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw cantRead(path, std::strerror(errno));
        if (count == 0)
            break;
        size += std::size_t(count);
        if (size > largest)
            throw tooLarge(size);
    }
    bytes.resize(size);
    return bytes;
}

bool fileExists(const std::string& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0;
}

} // namespace velloria::plugins
