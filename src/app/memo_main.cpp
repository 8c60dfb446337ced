// VellMemo.exe FILE_OF_USERS USER PASSWORD: the memos of a user. With "-" for the password it is the first line of the
// standard input. Without arguments: the memos of who has no user name.
#include "app/surroundings.h"
#include "app/termination.h"
#include "desktop/qt_desk.h"
#include "desktop/wait_box.h"
#include "memo/entrance.h"
#include "memo/forms/frmMemo.h"
#include "memo/forms/questions.h"
#include "platform/failure.h"

#include <QApplication>
#include <QFile>
#include <QTranslator>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace velloria {
namespace {

QByteArray readFirstLine() {
    constexpr qint64 kLongest = 4096;
    QFile input;
    return input.open(stdin, QIODevice::ReadOnly) ? input.readLine(kLongest) : QByteArray();
}

/// The toolkit's own texts in the language of the rest.
void setLanguage(const QApplication& application, const core::Session& session) {
    if (core::menuLanguage(session) != core::MenuLanguage::English)
        return;
    for (QTranslator* translator : application.findChildren<QTranslator*>())
        QCoreApplication::removeTranslator(translator);
}

int run(QApplication& application) {
    core::Session session;
    const platform::SystemClock clock;
    desktop::QtDesk desk;
    desktop::WaitBox waits;
    desk.beforeBox = [&waits] { waits.makeWay(); };
    const core::Run run{session, clock, desk};
    try {
        const QStringList arguments = QCoreApplication::arguments().sliced(1);
        if (!memo::enter(run, arguments, readFirstLine, QCoreApplication::applicationDirPath()))
            return 1;
        setLanguage(application, session);
        memo::frmMemo window(run);
        desk.setMainWindow(&window);
        desk.showStatus = [&window](const QString& text) { window.setStatus(text); };
        if (!window.begin())
            return 1;
        const app::Termination termination(
            application, [&window] { window.keepDraft(); },
            [&window] {
                window.keepDraft();
                window.keepPlace();
                std::_Exit(0);
            });
        return QApplication::exec();
    } catch (const platform::Failure& failure) {
        desk.failure(failure);
        return 1;
    }
}

} // namespace
} // namespace velloria

int main(int argc, char** argv) {
    if (!velloria::app::hasScreen())
        return 1;
    QApplication application(argc, argv);
    velloria::app::prepareApplication(application);
    QApplication::setApplicationName(u"VellMemo"_s);
    QApplication::setQuitOnLastWindowClosed(true);
    return velloria::run(application);
}
