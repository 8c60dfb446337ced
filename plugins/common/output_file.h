// A file that others find whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace velloria::plugins {

/// Written to a temporary name beside its place, and named when it is whole and on the disk; without a commit nothing
/// is left of it. Throws Error.
class OutputFile {
public:
    /// `mode` are the rights of a new file, less what the user's mask takes.
    explicit OutputFile(std::string path, unsigned mode = 0666);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(std::string_view bytes);
    void commit();

private:
    void flush();
    [[noreturn]] void fail(int errorNumber) const;

    std::string m_path;
    std::string m_temporary;
    std::string m_waiting; ///< for a larger block
    int m_descriptor = -1;
    bool m_isNamed = false;
};

} // namespace velloria::plugins
