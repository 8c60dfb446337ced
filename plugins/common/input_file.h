// A file that a person has chosen, read whole.
#pragma once

#include <cstddef>
#include <string>

namespace velloria::plugins {

/// What is larger is no diary that fits into memory several times.
inline constexpr std::size_t kLargestInput = std::size_t(256) << 20;

/// The bytes of a file. Throws Error for what is no regular file or larger than `largest`.
std::string readFile(const std::string& path, std::size_t largest = kLargestInput);

/// Whether there is something by this name.
bool fileExists(const std::string& path);

} // namespace velloria::plugins
