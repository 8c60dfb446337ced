// The libraries beside the program that add to it.
#pragma once

#include "platform/desk.h"
#include "platform/failure.h"
#include "platform/import_plan.h"
#include "velloria_plugin.h"

#include <QString>

#include <chrono>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <type_traits>

class QLibrary;

namespace velloria::platform {

/// What a plug-in may ask of the program while one of its objects lives. It goes before the Desk does.
class PluginHost {
public:
    /// Without `beginImport` no import is wanted.
    explicit PluginHost(Desk& desk, BeginImport beginImport = {});
    PluginHost(const PluginHost&) = delete;
    PluginHost& operator=(const PluginHost&) = delete;

    const velloria_host* table() const { return &m_table; }
    /// Whether the plug-in has written to the status panel.
    bool hasSpoken() const { return m_hasSpoken; }
    /// Throws what showing a plan has thrown, which can't fly through the plug-in.
    void rethrow() const;

private:
    struct Calls; ///< of the table, each with a PluginHost as its context

    Desk& m_desk;
    BeginImport m_beginImport;
    QByteArray m_mark;
    bool m_hasSpoken = false;
    std::exception_ptr m_thrown;
    velloria_host m_table;
};

/// A plug-in for use. The library stays loaded until the program ends. Every call of it is made within `use`: what it
/// throws in spite of the contract, of whatever type, ends in a Failure and not the program.
///
///     const Plugin plugin(file);
///     plugin.use(&velloria_plugin::ping, PluginHost(desk), [&](const velloria_ping& ping, void* object) {
///         plugin.check(ping.set_pop_up(object, false));
///         plugin.check(ping.pings_execute(object));
///     });
class Plugin {
public:
    /// A member of a structure of a plug-in; null when that ends ahead of it.
    template <typename Structure, typename Member>
    static Member known(const Structure& structure, Member Structure::*member) {
        const Member* place = &(structure.*member);
        const auto end = reinterpret_cast<const char*>(place + 1) - reinterpret_cast<const char*>(&structure);
        return static_cast<std::ptrdiff_t>(structure.size) >= end ? *place : nullptr;
    }

    /// `file` is a full path. Throws Failure when it is missing, is no plug-in, serves another interface, or does harm
    /// while it is loaded, which is tried beside this program; that has no end when it takes longer than `limit`.
    explicit Plugin(const QString& file, std::chrono::milliseconds limit = std::chrono::seconds(10));
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    /// "1.2.3". Throws Failure when the plug-in does not tell it.
    QString version() const;

    /// Makes calls of a part. Throws Failure, and has called nothing, when the plug-in lacks the part or a member of
    /// it.
    template <typename Part, typename Calls>
    void use(const Part* velloria_plugin::*part, const Calls& calls) const {
        const Part& whole = complete(known(*m_plugin, part));
        guarded([&] { calls(whole); });
    }

    /// Makes calls of a part that works with an object, which is released behind them. Throws Failure also when the
    /// plug-in makes none.
    template <typename Part, typename Calls>
    void use(const Part* velloria_plugin::*part, const PluginHost& host, const Calls& calls) const {
        const Part& whole = complete(known(*m_plugin, part));
        guarded([&] {
            const Object object{*this, whole.create(host.table()), whole.release};
            object.use([&](void* pointer) {
                try {
                    calls(whole, pointer);
                } catch (...) {
                    host.rethrow();
                    throw;
                }
                host.rethrow();
            });
        });
    }

    /// Takes what a call has returned and gives its answer: false for 0, true for more. Throws Failure with the
    /// plug-in's own words below 0. Belongs into the calls of `use`.
    bool check(int32_t result) const;

private:
    struct Object {
        const Plugin& plugin;
        void* pointer;
        void (*release)(void*);

        void use(const std::function<void(void*)>& calls) const;
    };

    template <typename Part>
    const Part& complete(const Part* part) const {
        requireCalls(part, firstSize<Part>());
        return *part;
    }

    /// Up to where a part was in the first interface: what came later may be missing.
    template <typename Part>
    static constexpr std::size_t firstSize() {
        if constexpr (std::is_same_v<Part, velloria_diary_information>)
            return offsetof(velloria_diary_information, run_with_host);
        else
            return sizeof(Part);
    }

    void requireCalls(const void* part, std::size_t size) const;
    void guarded(const std::function<void()>& calls) const;
    QString lastError() const;
    Failure failed(const QString& reason) const;

    QString m_file;
    std::unique_ptr<QLibrary> m_library;
    const velloria_plugin* m_plugin = nullptr;
};

} // namespace velloria::platform
