// The two sides of a call of a plug-in: no exception leaves it, and why it failed is kept for last_error.
#pragma once

#include "velloria_plugin.h"

#include <functional>
#include <stdexcept>
#include <string>

#if defined(_WIN32)
#define VELLORIA_PLUGIN_EXPORT extern "C" __declspec(dllexport)
#else
#define VELLORIA_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace velloria::plugins {

/// What the person is told: what failed, to which file, and what to do, in lines that end in LF.
class Error : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Runs a call that answers a question. Gives its answer, 1 or 0, and below 0 for what it throws.
int32_t answers(const std::function<bool()>& call) noexcept;

/// Runs a call that does something: 1, and below 0 for what it throws.
int32_t does(const std::function<void()>& call) noexcept;

/// Makes an object of a plug-in; null when it throws.
void* makes(const std::function<void*()>& create) noexcept;

/// Why the last call of `answers`, `does` or `makes` failed, "" when it did not: for velloria_plugin::last_error.
const char* lastError();

/// 1.0.0, the version of the plug-ins that come along.
extern const velloria_information kInformation;

/// What the program does for a plug-in. A member that the program does not know does nothing, and answers no.
class Host {
public:
    /// `table` stays the program's.
    explicit Host(const velloria_host* table)
        : m_table(table) {}

    void pump() const;
    void status(const std::string& text) const;
    /// A box with what the person must not overlook, which `status` shows only until the next one.
    void warns(const std::string& text, const std::string& title) const;
    /// A question with Yes and No.
    bool asks(const std::string& text, const std::string& title) const;
    /// Null when the person does not want the entries. A program that shows no plans is asked by a question; the mark
    /// is then today's date and the program's name.
    const char* beginImport(const velloria_import_plan& plan);

private:
    bool knows(std::size_t end) const { return m_table && m_table->size >= end; }

    const velloria_host* m_table;
    std::string m_mark;
};

} // namespace velloria::plugins
