// The libraries beside the program that add to it.
#pragma once

#include "velloria_plugin.h"

#include <QString>

#include <memory>

class QLibrary;

namespace velloria::platform {

/// A plug-in while it is in use; it is unloaded with this.
class Plugin {
public:
    /// Throws Failure when the file is missing, is no plug-in, or serves another interface.
    explicit Plugin(const QString& file);
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    /// "1.2.3"
    QString version() const;

    /// Null when the plug-in has no such part.
    const velloria_diary_information* diaryInformation() const;

private:
    bool knows(std::size_t endOfMember) const { return m_plugin->size >= endOfMember; }

    QString m_file;
    std::unique_ptr<QLibrary> m_library;
    const velloria_plugin* m_plugin = nullptr;
};

} // namespace velloria::platform
