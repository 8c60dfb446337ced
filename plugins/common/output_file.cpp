#include "common/output_file.h"

#include "common/calls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <random>

namespace velloria::plugins {
namespace {

constexpr std::size_t kBlock = 1 << 16;

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

} // namespace

// The name and the lock are those of the program's own temporary files: what a killed run leaves is cleared away with
// them.
OutputFile::OutputFile(std::string path, unsigned mode)
    : m_path(std::move(path)) {
    struct stat status;
    if (::stat(m_path.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        fail(S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    std::random_device random;
    do {
        m_temporary = folderOf(m_path) + ".velltmp-" + std::to_string(random()) + std::to_string(random());
        m_descriptor = ::open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    } while (m_descriptor < 0 && errno == EEXIST);
    if (m_descriptor < 0)
        fail(errno);
    ::flock(m_descriptor, LOCK_EX | LOCK_NB);
}

OutputFile::~OutputFile() {
    if (!m_isNamed)
        ::unlink(m_temporary.c_str());
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

void OutputFile::write(std::string_view bytes) {
    m_waiting += bytes;
    if (m_waiting.size() >= kBlock)
        flush();
}

void OutputFile::commit() {
    flush();
    if (::fsync(m_descriptor) != 0)
        fail(errno);
    if (::rename(m_temporary.c_str(), m_path.c_str()) != 0)
        fail(errno);
    m_isNamed = true;
    const int folder = ::open(folderOf(m_path).c_str(), O_RDONLY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
}

void OutputFile::flush() {
    std::string_view left = m_waiting;
    while (!left.empty()) {
        const ssize_t written = ::write(m_descriptor, left.data(), left.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            fail(errno);
        left.remove_prefix(std::size_t(written));
    }
    m_waiting.clear();
}

void OutputFile::fail(int errorNumber) const {
    const bool isFull = errorNumber == ENOSPC || errorNumber == EDQUOT;
    throw Error("ファイルを保存できません。\n" + m_path + "\n" + std::strerror(errorNumber) + "\n" +
                (isFull ? "空き容量を増やしてから、もう一度実行してください。"
                        : "保存先を確認してから、もう一度実行してください。") +
                "日記は変更されていません。");
}

} // namespace velloria::plugins
