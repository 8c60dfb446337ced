#include "platform/plugin.h"

#include "platform/directory.h"
#include "platform/library_file.h"
#include "platform/plugin_trial.h"
#include "platform/utf8.h"

#include <QCoreApplication>
#include <QLibrary>

#include <cstddef>
#include <cstring>
#include <exception>

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

ImportPlan planOf(const velloria_import_plan& plan) {
    ImportPlan read{fromUtf8(plan.program), {}, shown(plan.notes)};
    for (uint32_t at = 0; at < plan.count; ++at)
        read.days += fromUtf8(plan.days[at]);
    return read;
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

} // namespace

// Nothing may fly through the plug-in, which may be written in another language: a Desk that can't show something is
// an answer of no.
struct PluginHost::Calls {
    static Desk& deskOf(void* context) { return static_cast<PluginHost*>(context)->m_desk; }

    static void pump(void*) {
        try {
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        } catch (...) {
            return;
        }
    }

    static int32_t message(void* context, int32_t kind, const char* title, const char* text, int32_t isQuestion) {
        try {
            if (isQuestion)
                return deskOf(context).ask(shown(text), fromUtf8(title)) ? 1 : 0;
            deskOf(context).message(kindOf(kind), shown(text), fromUtf8(title));
            return 1;
        } catch (...) {
            return 0;
        }
    }

    static void status(void* context, const char* text) {
        try {
            static_cast<PluginHost*>(context)->m_hasSpoken = true;
            deskOf(context).status(shown(text));
        } catch (...) {
            return;
        }
    }

    static const char* beginImport(void* context, const velloria_import_plan* plan) {
        PluginHost& host = *static_cast<PluginHost*>(context);
        try {
            const std::optional<QString> mark = host.m_beginImport ? host.m_beginImport(planOf(*plan)) : std::nullopt;
            if (!mark)
                return nullptr;
            host.m_mark = mark->toUtf8();
            return host.m_mark.constData();
        } catch (...) {
            host.m_thrown = std::current_exception();
            return nullptr;
        }
    }
};

PluginHost::PluginHost(Desk& desk, BeginImport beginImport)
    : m_desk(desk)
    , m_beginImport(std::move(beginImport))
    , m_table{sizeof m_table, this, Calls::pump, Calls::message, Calls::status, Calls::beginImport} {}

void PluginHost::rethrow() const {
    if (m_thrown)
        std::rethrow_exception(m_thrown);
}

Plugin::Plugin(const QString& file, std::chrono::milliseconds limit)
    : m_file(existingPath(file)) {
    const auto unusable = [this](const QString& reason) {
        return Failure(u"プラグインを使用できません。"_s, m_file, reason, reinstall());
    };
    // Of a name that is not there the library's loader would try variants.
    if (!fileExists(m_file))
        throw unusable(u"ファイルがありません。"_s);
    if (isCutLibrary(m_file))
        throw unusable(u"ファイルが途中で切れています。"_s);
    if (const QString harm = harmOfLoading(m_file, limit); !harm.isEmpty())
        throw unusable(harm);
    // Only now: a library object that has loaded nothing breaks the end of a program that has logged nothing.
    m_library = std::make_unique<QLibrary>(m_file);
    m_library->setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    guarded([&] { // what a library does while it is loaded may throw as well
        const auto get = reinterpret_cast<velloria_plugin_get_function>(m_library->resolve("velloria_plugin_get"));
        if (!get)
            throw unusable(m_library->errorString());
        m_plugin = get(VELLORIA_PLUGIN_INTERFACE);
    });
    if (!m_plugin)
        throw unusable(u"バージョンが合いません。"_s);
}

Plugin::~Plugin() = default;

QString Plugin::version() const {
    QString version;
    use(&velloria_plugin::information, [&](const velloria_information& information) {
        version = u"%1.%2.%3"_s.arg(information.get_version_major())
                      .arg(information.get_version_minor())
                      .arg(information.get_version_revision());
    });
    return version;
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

/// What the release throws is told unless there is an earlier failure to tell.
void Plugin::Object::use(const std::function<void(void*)>& calls) const {
    if (!pointer)
        throw Failure(u"プラグインを開始できません。"_s, plugin.m_file, plugin.lastError(), reinstall());
    try {
        calls(pointer);
    } catch (...) {
        try {
            release(pointer);
        } catch (...) {
        }
        throw;
    }
    release(pointer);
}

/// A part is its size, with the place of a pointer, and pointers to its calls.
void Plugin::requireCalls(const void* part, std::size_t size) const {
    using Call = void (*)();
    static_assert(offsetof(velloria_information, get_version_major) == sizeof(Call));
    bool isComplete = part && *static_cast<const uint32_t*>(part) >= size;
    for (std::size_t at = sizeof(Call); isComplete && at < size; at += sizeof(Call)) {
        Call call = nullptr;
        std::memcpy(&call, static_cast<const std::byte*>(part) + at, sizeof call);
        isComplete = call != nullptr;
    }
    if (!isComplete)
        throw Failure(u"プラグインを使用できません。"_s, m_file, u"必要な機能がありません。"_s, reinstall());
}

void Plugin::guarded(const std::function<void()>& calls) const {
    try {
        calls();
    } catch (const Failure&) {
        throw;
    } catch (const std::exception& thrown) {
        throw failed(QString::fromLocal8Bit(thrown.what()));
    } catch (...) {
        throw failed({});
    }
}

QString Plugin::lastError() const {
    const auto lastErrorOf = known(*m_plugin, &velloria_plugin::last_error);
    const QString words = lastErrorOf ? shown(lastErrorOf()) : QString();
    return words.isEmpty() ? u"プラグインは理由を知らせていません。"_s : words;
}

} // namespace velloria::platform
