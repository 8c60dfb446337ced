#include "desktop/command.h"

#include "platform/failure.h"
#include "platform/utf8.h"

#include <cstdio>

using namespace Qt::StringLiterals;

namespace velloria::desktop {

bool runCommand(platform::Desk& desk, const std::function<void()>& action) {
    try {
        action();
        return true;
    } catch (const platform::Failure& failure) {
        desk.failure(failure);
    } catch (const std::bad_alloc&) {
        desk.failure(platform::Failure(u"メモリが足りません。"_s, {}, {},
                                       u"ほかのプログラムを終了してから、もう一度実行してください。"_s));
    } catch (const std::exception& error) {
        desk.failure(platform::Failure(u"処理を続けられません。"_s, {}, platform::fromUtf8(error.what())));
    } catch (...) { // a foreign library's
        desk.failure(platform::Failure(u"処理を続けられません。"_s, {}, {}));
    }
    return false;
}

void runQuietly(platform::Desk& desk, const std::function<void()>& action) {
    try {
        action();
    } catch (const platform::Failure& failure) {
        desk.notice(failure.line());
        std::fputs(qUtf8Printable(u"velloria: "_s + failure.line() + u'\n'), stderr);
    }
}

} // namespace velloria::desktop
