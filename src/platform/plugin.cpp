#include "platform/plugin.h"

#include "platform/directory.h"
#include "platform/library_file.h"
#include "platform/utf8.h"

#include <QCoreApplication>
#include <QLibrary>

#include <cstddef>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

QString reinstall() {
    return u"このVelloriaに合うプラグインを入れ直してください。"_s;
}

/// As the Desk wants it: line ends are CR LF.
QString shown(const char* text) {
    return fromUtf8(text).replace(u"\r\n"_s, u"\n"_s).replace(u'\n', u"\r\n"_s);
}

MessageKind kindOf(int32_t kind) {
    switch (kind) {
    case VELLORIA_MESSAGE_INFORMATION:
        return MessageKind::Information;
    case VELLORIA_MESSAGE_EXCLAMATION:
        return MessageKind::Exclamation;
    case VELLORIA_MESSAGE_CRITICAL:
        return MessageKind::Critical;
    default:
        return MessageKind::Plain;
    }
}

// Nothing may fly through the plug-in, which may be written in another language: a Desk that can't show something is
// an answer of no.

void pump(void*) {
    try {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    } catch (...) {
        return;
    }
}

int32_t message(void* context, int32_t kind, const char* title, const char* text, int32_t isQuestion) {
    try {
        Desk& desk = *static_cast<Desk*>(context);
        if (isQuestion)
            return desk.ask(shown(text), fromUtf8(title)) ? 1 : 0;
        desk.message(kindOf(kind), shown(text), fromUtf8(title));
        return 1;
    } catch (...) {
        return 0;
    }
}

void status(void* context, const char* text) {
    try {
        static_cast<Desk*>(context)->status(shown(text));
    } catch (...) {
        return;
    }
}

} // namespace

PluginHost::PluginHost(Desk& desk)
    : m_table{sizeof m_table, &desk, pump, message, status} {}

Plugin::Plugin(const QString& file)
    : m_file(existingPath(file)) {
    const auto unusable = [this](const QString& reason) {
        return Failure(u"プラグインを使用できません。"_s, m_file, reason, reinstall());
    };
    // Of a name that is not there the library's loader would try variants.
    if (!fileExists(m_file))
        throw unusable(u"ファイルがありません。"_s);
    if (isCutLibrary(m_file))
        throw unusable(u"ファイルが途中で切れています。"_s);
    // Only now: a library object that has loaded nothing breaks the end of a program that has logged nothing.
    m_library = std::make_unique<QLibrary>(m_file);
    m_library->setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    const auto get = reinterpret_cast<velloria_plugin_get_function>(m_library->resolve("velloria_plugin_get"));
    if (!get)
        throw unusable(m_library->errorString());
    m_plugin = get(VELLORIA_PLUGIN_INTERFACE);
    if (!m_plugin)
        throw unusable(u"バージョンが合いません。"_s);
}

Plugin::~Plugin() = default;

QString Plugin::version() const {
    using Part = velloria_information;
    const Part& information = complete(known(&velloria_plugin::information), &Part::get_version_major,
                                       &Part::get_version_minor, &Part::get_version_revision);
    return u"%1.%2.%3"_s.arg(information.get_version_major())
        .arg(information.get_version_minor())
        .arg(information.get_version_revision());
}

const velloria_diary_information& Plugin::diaryInformation() const {
    using Part = velloria_diary_information;
    return complete(known(&velloria_plugin::diary_information), &Part::set_paths, &Part::run);
}

const velloria_ping& Plugin::ping() const {
    using Part = velloria_ping;
    return complete(known(&velloria_plugin::ping), &Part::create, &Part::release, &Part::set_pop_up,
                    &Part::set_ping_list_file, &Part::set_blog_url, &Part::set_blog_name, &Part::pings_execute);
}

const velloria_movable_type_exchange& Plugin::movableTypeExchange() const {
    using Part = velloria_movable_type_exchange;
    return complete(known(&velloria_plugin::movable_type_exchange), &Part::create, &Part::release, &Part::connect,
                    &Part::prepare_import, &Part::prepare_export, &Part::set_user_id, &Part::write_entries,
                    &Part::open_file, &Part::finish, &Part::read_entries);
}

const velloria_hatena_exchange& Plugin::hatenaExchange() const {
    using Part = velloria_hatena_exchange;
    return complete(known(&velloria_plugin::hatena_exchange), &Part::create, &Part::release, &Part::connect,
                    &Part::prepare_import, &Part::prepare_export, &Part::write_entries, &Part::open_file,
                    &Part::finish);
}

bool Plugin::check(int32_t result) const {
    if (result < 0)
        throw failed(lastError());
    return result > 0;
}

Failure Plugin::failed(const QString& reason) const {
    return Failure(u"プラグインの処理に失敗しました。"_s, m_file, reason,
                   u"原因を取り除いてから、もう一度実行してください。"_s);
}

PluginObject Plugin::created(PluginObject object) const {
    if (!object)
        throw Failure(u"プラグインを開始できません。"_s, m_file, lastError(), reinstall());
    return object;
}

/// The member, null when the plug-in's structure ends before it.
template <typename Member>
Member Plugin::known(Member velloria_plugin::*member) const {
    const Member* place = &(m_plugin->*member);
    const auto end = reinterpret_cast<const std::byte*>(place + 1) - reinterpret_cast<const std::byte*>(m_plugin);
    return static_cast<std::ptrdiff_t>(m_plugin->size) >= end ? *place : nullptr;
}

template <typename Part, typename... Members>
const Part& Plugin::complete(const Part* part, Members... members) const {
    const bool isComplete = part && part->size >= sizeof(Part);
    if (!isComplete || !(... && (part->*members != nullptr)))
        throw Failure(u"プラグインを使用できません。"_s, m_file, u"必要な機能がありません。"_s, reinstall());
    return *part;
}

QString Plugin::lastError() const {
    const auto lastErrorOf = known(&velloria_plugin::last_error);
    const QString words = lastErrorOf ? shown(lastErrorOf()) : QString();
    return words.isEmpty() ? u"プラグインは理由を知らせていません。"_s : words;
}

} // namespace velloria::platform
