#include "platform/plugin_trial.h"

#include "platform/child_program.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

using std::chrono::milliseconds;

QString stateOf(const QString& file) {
    const QFileInfo info(file);
    return u"%1\n%2\n%3"_s.arg(file).arg(info.size()).arg(info.lastModified().toMSecsSinceEpoch());
}

QString reasonOf(const std::optional<ChildProgram::End>& end) {
    if (!end)
        return u"読み込んでいる途中で応答がなくなります。"_s;
    return end->bySignal ? u"読み込んでいる途中で異常終了します（シグナル%1）。"_s.arg(end->code)
                         : u"読み込んでいる途中でプログラムを終了させます（終了コード%1）。"_s.arg(end->code);
}

QString tried(const QString& file, milliseconds limit) {
    constexpr milliseconds kMoment(50);
    ChildProgram trial(folderOfExecutable() + u"velloria-plugin"_s, {file});
    const auto end = std::chrono::steady_clock::now() + limit;
    QByteArray answer;
    for (;;) {
        switch (trial.read(1, kMoment, answer)) {
        case ChildProgram::Reading::Whole:
            return {};
        case ChildProgram::Reading::End:
            return reasonOf(trial.waitForEnd(limit));
        case ChildProgram::Reading::Silent:
            if (std::chrono::steady_clock::now() >= end)
                return u"読み込みが%1秒たっても終わりません。"_s.arg(double(limit.count()) / 1000);
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        }
    }
}

} // namespace

QString harmOfLoading(const QString& file, milliseconds limit) {
    static QSet<QString> harmless; // plug-ins are loaded from one thread
    const QString state = stateOf(file);
    if (harmless.contains(state))
        return {};
    const QString harm = tried(file, limit);
    if (harm.isEmpty())
        harmless.insert(state);
    return harm;
}

} // namespace velloria::platform
