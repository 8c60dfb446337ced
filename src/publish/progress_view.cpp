#include "publish/progress_view.h"

#include <algorithm>

namespace velloria::publish {

void ProgressView::open(const QString& caption) {
    m_window = {};
    m_window.caption = caption;
    show();
}

void ProgressView::setTitle(const QString& title) {
    m_window.title = title;
    show();
}

void ProgressView::setText(const QString& text) {
    m_window.text = text;
    show();
}

void ProgressView::setTitleAndText(const QString& title, const QString& text) {
    m_window.title = title;
    setText(text);
}

void ProgressView::setBar(int value, int max) {
    m_window.value = value;
    m_window.max = max;
}

void ProgressView::allowOk() {
    m_window.isOkEnabled = true;
    m_window.isStopEnabled = false;
    show();
}

void ProgressView::allowClosing() {
    m_window.isFrameEnabled = true;
    allowOk();
}

void ProgressView::close() {
    m_desk.closeProgressWindow();
}

void ProgressView::show() {
    platform::ProgressWindow shown = m_window;
    shown.max = std::max(shown.max, 1); // 0 would be the bar of work without an end
    shown.value = std::min(shown.value, shown.max);
    m_desk.progressWindow(shown);
}

} // namespace velloria::publish
