#include "publish/ping.h"

#include "core/files.h"
#include "core/settings.h"
#include "core/site_keys.h"
#include "platform/plugin.h"

using namespace Qt::StringLiterals;

namespace velloria::publish {

Ping::Ping(const core::Run& run)
    : m_session(run.session)
    , m_desk(run.desk) {}

void Ping::MnuPING() const {
    const core::Settings settings(m_session);
    const QString name = settings.text(core::keys::rss::kTitle);
    const QString url = settings.text(core::keys::rss::kDiaryURL);

    const platform::Plugin plugin(core::files::kChimer.in(m_session));
    const velloria_ping& ping = plugin.ping();
    const platform::PluginHost host(m_desk);
    plugin.guarded([&] {
        const platform::PluginObject object = plugin.create(ping, host);
        plugin.check(ping.set_pop_up(object.get(), false));
        const QByteArray servers = core::files::kPingServers.in(m_session).toUtf8();
        plugin.check(ping.set_ping_list_file(object.get(), servers.constData()));
        plugin.check(ping.set_blog_url(object.get(), url.toUtf8().constData()));
        plugin.check(ping.set_blog_name(object.get(), name.toUtf8().constData()));
        plugin.check(ping.pings_execute(object.get()));
    });
}

} // namespace velloria::publish
