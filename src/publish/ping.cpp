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
    plugin.use(&velloria_plugin::ping, platform::PluginHost(m_desk), [&](const velloria_ping& ping, void* object) {
        plugin.check(ping.set_pop_up(object, false));
        const QByteArray servers = core::files::kPingServers.in(m_session).toUtf8();
        plugin.check(ping.set_ping_list_file(object, servers.constData()));
        plugin.check(ping.set_blog_url(object, url.toUtf8().constData()));
        plugin.check(ping.set_blog_name(object, name.toUtf8().constData()));
        plugin.check(ping.pings_execute(object));
    });
}

} // namespace velloria::publish
