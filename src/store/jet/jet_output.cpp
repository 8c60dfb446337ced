#include "store/jet/jet_output.h"

#include <cstdio>
#include <cstdlib>

namespace velloria::store::jet {

void JetOutput::write(const Record& record) {
    const QByteArray bytes = toBytes(record);
    if (std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout) != size_t(bytes.size()))
        std::_Exit(EXIT_FAILURE);
}

void JetOutput::showProgress() {
    const Clock::time_point now = Clock::now();
    if (now - m_shown < std::chrono::seconds(1))
        return;
    m_shown = now;
    write(Progress{});
    std::fflush(stdout);
}

bool JetOutput::finish() {
    return std::fflush(stdout) == 0;
}

} // namespace velloria::store::jet
