// The libraries beside the program that add to it.
#pragma once

#include "platform/desk.h"
#include "platform/failure.h"
#include "velloria_plugin.h"

#include <QString>

#include <exception>
#include <memory>

class QLibrary;

namespace velloria::platform {

/// What a plug-in may ask of the program while one of its objects lives. It goes before the Desk does.
class PluginHost {
public:
    explicit PluginHost(Desk& desk);
    PluginHost(const PluginHost&) = delete;
    PluginHost& operator=(const PluginHost&) = delete;

    const velloria_host* table() const { return &m_table; }

private:
    velloria_host m_table;
};

/// An object of a plug-in; it is released with this.
using PluginObject = std::unique_ptr<void, void (*)(void*)>;

/// A plug-in for use. The library stays loaded until the program ends.
class Plugin {
public:
    /// `file` is a full path. Throws Failure when it is missing, is no plug-in, or serves another interface.
    explicit Plugin(const QString& file);
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    /// "1.2.3". Throws Failure when the plug-in does not tell it.
    QString version() const;

    // The parts, all members there. They throw Failure when the plug-in lacks the part or a member of it.
    const velloria_diary_information& diaryInformation() const;
    const velloria_ping& ping() const;
    const velloria_movable_type_exchange& movableTypeExchange() const;
    const velloria_hatena_exchange& hatenaExchange() const;

    /// Makes the object of a part. Throws Failure when the plug-in makes none.
    template <typename Part>
    PluginObject create(const Part& part, const PluginHost& host) const {
        return created({part.create(host.table()), part.release});
    }

    /// Makes calls of the plug-in. One that throws in spite of the contract ends in a Failure and not the program.
    template <typename Calls>
    void guarded(const Calls& calls) const {
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

    /// Takes what a call has returned and gives its answer: false for 0, true for more. Throws Failure with the
    /// plug-in's own words below 0.
    bool check(int32_t result) const;

private:
    template <typename Member>
    Member known(Member velloria_plugin::*member) const;
    template <typename Part, typename... Members>
    const Part& complete(const Part* part, Members... members) const;
    PluginObject created(PluginObject object) const;
    QString lastError() const;
    Failure failed(const QString& reason) const;

    QString m_file;
    std::unique_ptr<QLibrary> m_library;
    const velloria_plugin* m_plugin = nullptr;
};

} // namespace velloria::platform
