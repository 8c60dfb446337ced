#include "platform/plugin.h"

#include "platform/directory.h"
#include "platform/failure.h"

#include <QLibrary>

#include <cstddef>

using namespace Qt::StringLiterals;

namespace velloria::platform {

Plugin::Plugin(const QString& file)
    : m_file(existingPath(file))
    , m_library(std::make_unique<QLibrary>(m_file)) {
    const auto get = reinterpret_cast<velloria_plugin_get_function>(m_library->resolve("velloria_plugin_get"));
    if (!get)
        throw Failure(u"プラグインを使用できません。"_s, m_file, m_library->errorString(),
                      u"この環境用のプラグインを入れ直してください。"_s);
    m_plugin = get(VELLORIA_PLUGIN_INTERFACE);
    if (!m_plugin) {
        m_library->unload();
        throw Failure(u"プラグインを使用できません。"_s, m_file, u"バージョンが合いません。"_s,
                      u"このVelloriaに合うプラグインを入れ直してください。"_s);
    }
}

Plugin::~Plugin() {
    m_library->unload();
}

QString Plugin::version() const {
    const velloria_information* information =
        knows(offsetof(velloria_plugin, information) + sizeof m_plugin->information) ? m_plugin->information : nullptr;
    if (!information)
        throw Failure(u"プラグインのバージョンがわかりません。"_s, m_file, {});
    return u"%1.%2.%3"_s.arg(information->get_version_major())
        .arg(information->get_version_minor())
        .arg(information->get_version_revision());
}

const velloria_diary_information* Plugin::diaryInformation() const {
    return knows(offsetof(velloria_plugin, diary_information) + sizeof m_plugin->diary_information)
               ? m_plugin->diary_information
               : nullptr;
}

} // namespace velloria::platform
