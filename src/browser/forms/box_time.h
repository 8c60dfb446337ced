// How long boxes have been open.
#pragma once

#include <QElapsedTimer>

#include <chrono>
#include <memory>

namespace velloria::browser {

/// The time in which a page could not go on because somebody was asked. Boxes may open within boxes.
class BoxTime {
public:
    /// All of it so far, with that of a box that is open now.
    std::chrono::milliseconds total() const { return m_closed + sinceOpened(); }
    bool isOpen() const { return m_open > 0; }

private:
    friend class OpenBox;

    std::chrono::milliseconds sinceOpened() const {
        return std::chrono::milliseconds(isOpen() ? m_sinceOpened.elapsed() : 0);
    }

    int m_open = 0;
    QElapsedTimer m_sinceOpened;
    std::chrono::milliseconds m_closed{0};
};

/// A box is open as long as this lives.
class OpenBox {
public:
    explicit OpenBox(std::shared_ptr<BoxTime> time)
        : m_time(std::move(time)) {
        if (m_time->m_open++ == 0)
            m_time->m_sinceOpened.start();
    }
    ~OpenBox() {
        const std::chrono::milliseconds open = m_time->sinceOpened();
        if (--m_time->m_open == 0)
            m_time->m_closed += open;
    }
    OpenBox(const OpenBox&) = delete;
    OpenBox& operator=(const OpenBox&) = delete;

private:
    const std::shared_ptr<BoxTime> m_time; ///< the page may be gone when its box is closed
};

} // namespace velloria::browser
