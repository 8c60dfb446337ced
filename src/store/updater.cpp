#include "store/updater.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

platform::UpdaterWindow firstShown() {
    return {u"アップデートを開始します。"_s};
}

int barSteps(qint64 steps) {
    return int(qMin<qint64>(steps, std::numeric_limits<int>::max()));
}

} // namespace

ShownUpdater::ShownUpdater(platform::Desk& desk)
    : m_desk(desk) {
    m_desk.updaterWindow(firstShown());
}

ShownUpdater::~ShownUpdater() {
    m_desk.closeUpdaterWindow();
}

UpdaterLines::UpdaterLines(platform::Desk& desk)
    : m_desk(desk)
    , m_shown(firstShown()) {}

void UpdaterLines::append(const QString& line) {
    m_shown.text += u"\r\n"_s + line;
    m_desk.updaterWindow(m_shown);
}

void UpdaterLines::beginBar(qint64 steps, qint64 value) {
    constexpr int kWithoutSteps = 100;
    m_shown.max = steps == 0 ? kWithoutSteps : barSteps(steps);
    m_shown.value = barSteps(value);
    m_desk.updaterWindow(m_shown);
}

void UpdaterLines::setBar(qint64 value) {
    m_shown.value = barSteps(value);
    m_desk.updaterWindow(m_shown);
}

} // namespace velloria::store
