#include "publish/upload_progress.h"

#include "platform/failure.h"
#include "publish/internet_error.h"

using namespace Qt::StringLiterals;

namespace velloria::publish {

UploadProgress::UploadProgress(const Internet& internet, platform::Desk& desk, std::function<bool()> isProgramEnding)
    : m_internet(internet)
    , m_desk(desk)
    , m_isProgramEnding(std::move(isProgramEnding))
    , m_view(desk) {}

void UploadProgress::show(const QString& text) {
    m_view.setText(text);
    pump();
}

void UploadProgress::show(const QString& title, const QString& text) {
    m_view.setTitleAndText(title, text);
    pump();
}

void UploadProgress::pump() {
    m_desk.pump();
    if (m_isProgramEnding && m_isProgramEnding())
        throw platform::Failure(u"プログラムを終了するため、アップロードを中止しました。"_s, {}, {},
                                u"次の起動後にもう一度アップロードしてください。"_s);
}

bool UploadProgress::fail(const QString& title, const QString& text, const QString& status) {
    m_reason = text;
    m_view.setTitleAndText(title, text);
    m_desk.status(status);
    return false;
}

bool UploadProgress::refused(const QString& title, const QString& text) {
    m_view.setTitleAndText(title, text);
    return refused();
}

bool UploadProgress::refused() {
    m_reason = m_view.text();
    addReason(showNetworkError(m_internet, m_desk));
    return false;
}

bool UploadProgress::notEntered(const QString& folder, const QString& reason) {
    m_reason = folder + u"へ移動失敗"_s;
    m_view.setText(m_reason);
    addReason(reason);
    return false;
}

void UploadProgress::addReason(const QString& reason) {
    if (!m_reason.contains(reason))
        m_reason += u' ' + reason;
}

} // namespace velloria::publish
