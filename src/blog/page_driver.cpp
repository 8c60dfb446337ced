#include "blog/page_driver.h"

#include "blog/template_words.h"
#include "blog/web_address.h"
#include "core/numbers.h"
#include "platform/failure.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

/// "VALUE_Title (フォーム 1 の「title」)"
QString shown(const Target& target) {
    return u"%1 (%2)"_s.arg(target.key, shownPlace(target.place));
}

} // namespace

Target byIndex(ElementPlace::By by, QStringView key, const QString& value) {
    try {
        return {key, {.by = by, .index = core::cint(value)}};
    } catch (platform::Failure& failure) {
        failure.addStage(key.toString());
        throw;
    }
}

Target byName(QStringView key, const QString& value, int form) {
    return {key, {.by = ElementPlace::By::NameInForm, .name = value, .form = form}};
}

Target byNameOrInput(QStringView key, const TemplateElement& element, int form) {
    return element.type == words::kName ? byName(key, element.value, form)
                                        : byIndex(ElementPlace::By::InputIndex, key, element.value);
}

PageDriver::PageDriver(BlogPage& page, BlogProtocol& protocol, std::chrono::milliseconds waitLimit)
    : m_page(page)
    , m_protocol(protocol)
    , m_waitLimit(waitLimit) {}

void PageDriver::navigate(const QString& address) {
    const QUrl url = webAddress(address);
    note(u"開くページ: "_s + addressForProtocol(url));
    m_page.navigate(url);
}

bool PageDriver::WaitPageComplete() {
    m_lastEnd = m_page.waitComplete(m_waitLimit);
    switch (m_lastEnd) {
    case PageEnd::Complete:
        note(u"ページが届きました: "_s + reached());
        break;
    case PageEnd::TimedOut:
        note(u"ページが届かないまま制限時間が過ぎました。"_s);
        break;
    case PageEnd::ProgramEnding:
        note(u"プログラムの終了のため待つのをやめました。"_s);
        break;
    }
    return m_lastEnd == PageEnd::Complete;
}

/// For the protocol alone: a page that can't be asked any more is met by the step that needs it, if there is one.
QString PageDriver::reached() {
    try {
        const QString problem = m_page.problem();
        return addressForProtocol(QUrl(m_page.locationUrl())) + (problem.isEmpty() ? problem : u' ' + problem);
    } catch (const platform::Failure& failure) {
        return failure.line();
    }
}

void PageDriver::setValue(const Target& target, const QString& text) {
    note(shown(target) + u" に書き込みます。"_s);
    m_page.setValue(target.place, text);
}

void PageDriver::setChecked(const Target& target, bool isChecked) {
    note(shown(target) + (isChecked ? u" をオンにします。"_s : u" をオフにします。"_s));
    m_page.setChecked(target.place, isChecked);
}

void PageDriver::click(const Target& target) {
    note(shown(target) + u" をクリックします。"_s);
    m_page.click(target.place);
}

void PageDriver::submit(int form) {
    note(u"フォーム %1 を送信します。"_s.arg(form));
    m_page.submit(form);
}

void PageDriver::clickLink(int index) {
    note(u"リンク %1 をクリックします。"_s.arg(index));
    m_page.clickLink(index);
}

void PageDriver::choose(const Target& select, const QString& text) {
    const QStringList options = m_page.options(select.place);
    const qsizetype index = options.indexOf(text);
    if (index < 0) {
        note(shown(select) + u" の選択肢 %1 個に一致するものはありません。"_s.arg(options.size()));
        return;
    }
    note(shown(select) + u" の選択肢 %1 を選びます。"_s.arg(index));
    m_page.selectOption(select.place, int(index));
}

} // namespace velloria::blog
