#include "shell/factory_files.h"

#include "platform/directory.h"
#include "platform/file_write.h"

namespace velloria::shell {

QString FactoryFiles::path(const QString& name) const {
    return platform::existingPath(m_session.MyPath + name);
}

bool FactoryFiles::has(const QString& name) const {
    platform::refuseLostLink(path(name));
    return platform::fileExists(path(name));
}

void FactoryFiles::copy(const QString& name, const QString& target, unsigned mode) const {
    platform::copyFile(path(name), target, mode);
}

} // namespace velloria::shell
