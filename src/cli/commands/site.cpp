#include "cli/command.h"
#include "core/files.h"
#include "site/find_page.h"
#include "site/log_archive.h"
#include "site/same_day_page.h"
#include "site/save_html.h"
#include "site/site_rebuild.h"

#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void printFile(const Invocation& invocation, const QString& file) {
    invocation.print(QJsonObject{{u"file"_s, file}}, {{file}});
}

void save(Invocation& invocation) {
    site::SaveHtml saver(invocation);
    const platform::Outcome outcome =
        invocation.has(u"--as"_s) ? saver.saveAs(invocation.option(u"--as"_s)) : saver.saveCommand();
    if (outcome == platform::Outcome::Refused)
        throw Refusal(u"HTMLファイルの保存を中止しました。"_s);
    printFile(invocation, invocation.session.FilePath + invocation.session.FileName);
}

void preview(Invocation& invocation) {
    site::SaveHtml(invocation).SaveTmpFile();
    invocation.desk.navigate(core::files::kPreview.in(invocation.session));
    printFile(invocation, core::files::kPreview.in(invocation.session));
}

void log(Invocation& invocation) {
    site::logCommand(invocation, invocation.argument(0), invocation.argument(1));
}

void rebuild(Invocation& invocation) {
    const site::RebuildResult result =
        site::rebuildSite(invocation, invocation.option(u"--from"_s), invocation.option(u"--to"_s));
    if (result.outcome == platform::Outcome::Refused)
        throw Refusal(u"保存先が決まっていないので中止しました。site save --as で指定してください。"_s);
    invocation.print(QJsonObject{{u"logs"_s, result.logs}, {u"failures"_s, result.failures}},
                     {{u"logs"_s, QString::number(result.logs)}, {u"failures"_s, QString::number(result.failures)}});
    if (result.failures > 0)
        throw Refusal(u"%1か月分を作成できませんでした。残りは作成しました。"_s.arg(result.failures));
}

/// The tool has one browser, which knows no captions.
site::ShowPage browserOf(const Invocation& invocation) {
    return [&desk = invocation.desk](const QString&, const QString& file) { desk.navigate(file); };
}

void sameDay(Invocation& invocation) {
    printFile(invocation, site::sameDayCommand(invocation, invocation.argument(0), browserOf(invocation)));
}

void find(Invocation& invocation) {
    site::SearchForm form;
    form.word = invocation.argument(0);
    if (invocation.has(u"--from"_s) || invocation.has(u"--to"_s))
        form.term = {invocation.option(u"--from"_s), invocation.option(u"--to"_s)};
    form.isOfGenre = invocation.has(u"--genre"_s);
    if (!invocation.option(u"--genre"_s).isEmpty())
        form.genre = invocation.option(u"--genre"_s);
    const std::optional<site::Found> found = site::findCommand(invocation, form, browserOf(invocation));
    if (!found)
        throw Refusal(u"検索を中止しました。"_s);
    invocation.print(QJsonObject{{u"count"_s, found->count}, {u"file"_s, found->file}},
                     {{QString::number(found->count)}});
}

} // namespace

std::vector<Command> siteCommands() {
    return {
        {u"site save"_s,
         u"[--as PATH]"_s,
         0,
         0,
         {{u"--as"_s, u"PATH"_s}},
         u"今月のページを保存する (名前を付けて保存は --as)"_s,
         Start::Needed,
         save},
        {u"site preview"_s, {}, 0, 0, {}, u"作業する日の月のプレビュー tmp.htm を作る"_s, Start::Needed, preview},
        {u"site log"_s, u"YEAR MONTH"_s, 2, 2, {}, u"その月をログにする"_s, Start::Needed, log},
        {u"site rebuild"_s,
         u"[--from M] [--to M]"_s,
         0,
         0,
         {{u"--from"_s, u"yyyy/mm"_s}, {u"--to"_s, u"yyyy/mm"_s}},
         u"過去の月をすべてログにし、今月のページを保存する"_s,
         Start::Needed,
         rebuild},
        {u"site sameday"_s,
         u"DAY"_s,
         1,
         1,
         {},
         u"ほかの年の同じ日のページ oldtmp.htm を作る"_s,
         Start::Needed,
         sameDay},
        {u"site find"_s,
         u"WORD [--from D --to D] [--genre G]"_s,
         1,
         1,
         {{u"--from"_s, u"D"_s}, {u"--to"_s, u"D"_s}, {u"--genre"_s, u"G"_s}},
         u"日記を検索してページ findtmp.htm を作り、見つかった数を出力する"_s,
         Start::Needed,
         find},
    };
}

} // namespace velloria::cli
