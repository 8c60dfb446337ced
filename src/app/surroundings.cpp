#include "app/surroundings.h"

#include "core/session.h"
#include "desktop/house_style.h"
#include "desktop/icons.h"

#include <QApplication>
#include <QFontDatabase>
#include <QLibraryInfo>
#include <QTranslator>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::app {
namespace {

void say(const QString& text) {
    std::fputs(qUtf8Printable(u"velloria: "_s + text + u'\n'), stderr);
}

bool isSet(const char* variable) {
    return !qEnvironmentVariableIsEmpty(variable);
}

} // namespace

bool hasScreen() {
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") && !isSet("QT_QPA_PLATFORM")) {
        say(u"画面がありません (DISPLAY も WAYLAND_DISPLAY も設定されていません)。"_s
            u"画面のない環境では velloria-cli を使用してください。"_s);
        return false;
    }
#endif
    return true;
}

void letBrowserRunAsRoot() {
    if (::geteuid() != 0 || isSet("QTWEBENGINE_DISABLE_SANDBOX"))
        return;
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    say(u"rootで起動したので、内蔵ブラウザはサンドボックスなしで動作します。"_s);
}

void prepareApplication(QApplication& application) {
    // Without a display name: the toolkit would add it to the title of every window.
    QApplication::setApplicationName(u"velloria"_s);
    QApplication::setApplicationVersion(core::kProgramVersion.text());
    QApplication::setStyle(new desktop::HouseStyle);
    QApplication::setWindowIcon(desktop::programIcon());
    QApplication::setQuitOnLastWindowClosed(false); // the main window ends the program itself
    auto* translator = new QTranslator(&application);
    if (translator->load(u"qtbase_ja"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(translator);
    if (QFontDatabase::families(QFontDatabase::Japanese).isEmpty())
        say(u"日本語のフォントが見つかりません。fonts-noto-cjk などをインストールしてください。"_s);
}

} // namespace velloria::app
