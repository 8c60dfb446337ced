#include "exchange/plugin_exchange.h"

#include "core/files.h"
#include "exchange/export_target.h"
#include "exchange/import_preview.h"
#include "exchange/set_aside.h"
#include "platform/file_read.h"
#include "platform/plugin.h"
#include "store/diary_store.h"

#include <QFileInfo>
#include <QMap>
#include <QStandardPaths>

#include <exception>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

namespace files = core::files;
using platform::MessageKind;
using platform::Outcome;
using platform::PathMode;

struct FormatRow {
    core::File plugin;
    QStringView importTitle;
    QStringView importFilter;
    QStringView exportTitle;
    QStringView exportFilter; ///< its pattern has always been without the dot
    QStringView ending;
};

constexpr FormatRow kMovableType{
    .plugin = files::kLarkport,
    .importTitle = u"MovableType形式の読み込み",
    .importFilter = u"Text/HTML Files(*.txt,*.htm,*.html)|*.txt;*.htm;*.html|ALL Files(*.*)|*.*",
    .exportTitle = u"MovableType形式の書き出し",
    .exportFilter = u"TEXT Files(*.txt)|*txt|",
    .ending = u"txt",
};
constexpr FormatRow kHatena{
    .plugin = files::kWrenport,
    .importTitle = u"はてな形式の読み込み",
    .importFilter = u"Text/XML Files(*.txt,*.xml)|*.txt;*.xml|ALL Files(*.*)|*.*",
    .exportTitle = u"はてな形式の書き出し",
    .exportFilter = u"XML Files(*.xml)|*xml|",
    .ending = u"xml",
};

const FormatRow& rowOf(PluginFormat format) {
    return format == PluginFormat::MovableType ? kMovableType : kHatena;
}

QString askForImport(platform::Desk& desk, const FormatRow& row) {
    const QString start = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return desk.choosePath({PathMode::Open, row.importTitle.toString(), row.importFilter.toString(), start})
        .value_or(QString());
}

QString askForExport(platform::Desk& desk, const FormatRow& row) {
    const QString start = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    platform::PathRequest request{PathMode::Save, row.exportTitle.toString(), row.exportFilter.toString(), start};
    request.defaultSuffix = row.ending.toString();
    return desk.choosePath(request).value_or(QString());
}

/// Makes calls with an object of the plug-in that knows the format. They are the same ones for every format; which of
/// them there are, and so their order, is each one's own. Gives whether the plug-in has told anything.
template <typename Calls>
bool useWorker(const core::Run& run, PluginFormat format, const platform::BeginImport& begin, const Calls& calls) {
    const platform::Plugin plugin(rowOf(format).plugin.in(run.session));
    const platform::PluginHost host(run.desk, begin);
    const auto use = [&](const auto& worker, void* object) { calls(plugin, worker, object); };
    if (format == PluginFormat::MovableType)
        plugin.use(&velloria_plugin::movable_type_exchange, host, use);
    else
        plugin.use(&velloria_plugin::hatena_exchange, host, use);
    return host.hasSpoken();
}

template <typename Worker>
bool openFile(const platform::Plugin& plugin, const Worker& worker, void* object, const QByteArray& path,
              bool isExport) {
    int32_t isAccepted = 0;
    plugin.check(worker.open_file(object, path.constData(), &isAccepted, isExport));
    return isAccepted != 0;
}

template <typename Worker>
bool takeEntriesIn(const platform::Plugin& plugin, const Worker& worker, void* object) {
    if constexpr (requires { worker.read_entries; }) {
        if (!plugin.check(worker.read_entries(object)))
            return false;
    }
    return plugin.check(worker.finish(object));
}

template <typename Worker>
bool writeEntries(const platform::Plugin& plugin, const Worker& worker, void* object, const QByteArray& user) {
    if constexpr (requires { worker.set_user_id; })
        plugin.check(worker.set_user_id(object, user.constData()));
    return plugin.check(worker.write_entries(object)) && plugin.check(worker.finish(object));
}

/// How many entries a diary has on each day. A plug-in may be anybody's: what it wrote is seen in the diary.
class EntriesByDay {
public:
    explicit EntriesByDay(const core::Run& run) {
        for (const store::EntryKey& key : store::DiaryStore(run).AllEntryKeys())
            ++m_counts[key.day];
    }
    qsizetype countSince(const EntriesByDay& before) const {
        qsizetype count = 0;
        for (const QString& day : daysSince(before))
            count += m_counts[day] - before.m_counts[day];
        return count;
    }
    QStringList daysSince(const EntriesByDay& before) const {
        QStringList days;
        for (auto day = m_counts.cbegin(); day != m_counts.cend(); ++day) {
            if (day.value() != before.m_counts[day.key()])
                days += day.key();
        }
        return days;
    }

private:
    QMap<QString, qsizetype> m_counts;
};

/// Steps of which each is taken, whatever becomes of those ahead of it; the first failure is the one to tell.
class EveryStep {
public:
    void take(const std::function<void()>& step) {
        try {
            step();
        } catch (const platform::Failure&) {
            if (!m_failure)
                m_failure = std::current_exception();
        }
    }
    bool hasFailed() const { return m_failure != nullptr; }
    void rethrow() const {
        if (m_failure)
            std::rethrow_exception(m_failure);
    }

private:
    std::exception_ptr m_failure;
};

} // namespace

Outcome importThroughPlugin(const core::Run& run, PluginFormat format, const std::optional<QString>& chosen,
                            const PluginImportCalls& calls) {
    const QString path = chosen ? *chosen : askForImport(run.desk, rowOf(format));
    if (path.isEmpty())
        return Outcome::Refused;
    const EntriesByDay before(run);
    const QByteArray database = run.session.databaseFile().toUtf8();
    const QByteArray file = path.toUtf8();
    bool isOpened = false;
    bool isDone = false;
    EveryStep steps;
    steps.take([&] {
        const auto begin = [&run](const platform::ImportPlan& plan) { return beginImport(run, plan); };
        useWorker(run, format, begin, [&](const platform::Plugin& plugin, const auto& worker, void* object) {
            plugin.check(worker.connect(object, database.constData()));
            plugin.check(worker.prepare_import(object));
            isOpened = openFile(plugin, worker, object, file, false);
            if (isOpened)
                isDone = takeEntriesIn(plugin, worker, object);
            else
                run.desk.message(MessageKind::Critical, u"入力パスのエラーです"_s);
        });
    });
    if (!isOpened) {
        steps.rethrow();
        return Outcome::Refused;
    }
    steps.take(calls.makeGenres);
    steps.take([&] {
        const EntriesByDay after(run);
        if (isDone)
            run.desk.status(u"%1件の日記をインポートしました。"_s.arg(after.countSince(before)));
        const QStringList days = after.daysSince(before);
        if (!days.isEmpty() || !steps.hasFailed())
            calls.written(days);
    });
    steps.rethrow();
    return isDone ? Outcome::Done : Outcome::Refused;
}

Outcome exportThroughPlugin(const core::Run& run, PluginFormat format, const std::optional<QString>& chosen) {
    const QString path = chosen ? *chosen : askForExport(run.desk, rowOf(format));
    if (path.isEmpty())
        return Outcome::Refused;
    requireExportTarget(run.session, path);
    platform::refuseLostLink(path);
    // A link stays, and the file behind it is the one to replace.
    const QString target = QFileInfo(path).isSymLink() ? QFileInfo(path).canonicalFilePath() : path;
    const QByteArray database = run.session.databaseFile().toUtf8();
    const QByteArray user = run.session.UserID.toUtf8();
    const QByteArray file = target.toUtf8();
    std::optional<SetAside> old;
    bool isDone = false;
    bool isTold = false;
    try {
        isTold = useWorker(run, format, {}, [&](const platform::Plugin& plugin, const auto& worker, void* object) {
            plugin.check(worker.connect(object, database.constData()));
            plugin.check(worker.prepare_export(object));
            old.emplace(target);
            if (openFile(plugin, worker, object, file, true)) {
                isDone = writeEntries(plugin, worker, object, user);
                return;
            }
            old->bringBack();
            run.desk.message(MessageKind::Critical, u"出力先パスのエラーです"_s);
        });
    } catch (const platform::Failure&) {
        if (old)
            old->bringBack();
        throw;
    }
    if (!isDone) {
        old->bringBack();
        return Outcome::Refused;
    }
    if (!isTold) // what it has told may be what was left out
        run.desk.status(u"「%1」に日記をエクスポートしました。"_s.arg(path));
    if (const QString kept = old->drop(); !kept.isEmpty())
        run.desk.notice(u"新しいファイルができなかったので、前のファイルを「%1」に残しました。"_s.arg(kept));
    return Outcome::Done;
}

} // namespace velloria::exchange
