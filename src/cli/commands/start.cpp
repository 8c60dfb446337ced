#include "cli/command.h"
#include "shell/plugins.h"

#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

/// The session variables in their fixed order.
void start(Invocation& invocation) {
    const core::Session& session = invocation.session;
    std::vector<std::pair<QString, QJsonValue>> variables{
        {u"dbFileName"_s, session.dbFileName},
        {u"MyPath"_s, session.MyPath},
        {u"FilePath"_s, session.FilePath},
        {u"FileName"_s, session.FileName},
        {u"DiaryIniFile"_s, session.DiaryIniFile},
        {u"CustIniFile"_s, session.CustIniFile},
        {u"FrameIniFile"_s, session.FrameIniFile},
        {u"RSSIniFile"_s, session.RSSIniFile},
        {u"HaloScanIniFile"_s, session.HaloScanIniFile},
        {u"BlogIniFile"_s, session.BlogIniFile},
        {u"Today"_s, session.Today},
        {u"EnterDay"_s, session.EnterDay},
        {u"DataPath"_s, session.DataPath},
        {u"FavoriteFolderPath"_s, session.FavoriteFolderPath},
        {u"CurrentVersion"_s, session.CurrentVersion},
        {u"IsLogin"_s, session.IsLogin},
        {u"UserID"_s, session.UserID},
        {u"UserPath"_s, session.UserPath},
    };
    for (const shell::PluginRow& plugin : shell::plugins())
        variables.emplace_back(plugin.sessionName, session.*plugin.isThere);
    QJsonObject json;
    std::vector<QStringList> rows;
    for (const auto& [name, value] : variables) {
        json[name] = value;
        rows.push_back({name, value.toVariant().toString()});
    }
    invocation.print(json, rows);
}

} // namespace

std::vector<Command> startCommands() {
    return {{u"start"_s, {}, 0, 0, {}, u"起動だけを行い、セッション変数を表示する"_s, Start::Needed, start}};
}

} // namespace velloria::cli
