#include "blog/scripted_page.h"

#include "platform/failure.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using By = blog::ElementPlace::By;

QString shown(const blog::ElementPlace& place) {
    switch (place.by) {
    case By::NameInForm:
        return u"name=%1 form=%2"_s.arg(place.name).arg(place.form);
    case By::InputIndex:
        return u"input=%1"_s.arg(place.index);
    case By::TextAreaIndex:
        return u"textarea=%1"_s.arg(place.index);
    case By::InputName:
        return u"inputname=%1"_s.arg(place.name);
    case By::NameInDocument:
        return u"anywhere=%1"_s.arg(place.name);
    }
    return {};
}

platform::Failure missing() {
    return {u"ページの要素を使えません。"_s, {}, u"要素がありません"_s};
}

} // namespace

ScriptedElement& ScriptedPage::element(const QString& address, int form, const QString& name) {
    for (ScriptedElement& element : documents[address].forms[form].elements) {
        if (element.name == name)
            return element;
    }
    throw std::logic_error("no such element: " + name.toStdString());
}

QStringList ScriptedPage::calls(const QString& begin) const {
    QStringList found;
    std::ranges::copy_if(done, std::back_inserter(found), [&](const QString& call) { return call.startsWith(begin); });
    return found;
}

void ScriptedPage::did(const QString& call) {
    done += call;
    if (beforeCall)
        beforeCall(call);
}

void ScriptedPage::beginRun(const blog::PageRun& told) {
    did(u"begin"_s);
    run = told;
    isRunning = true;
}

void ScriptedPage::endRun() {
    did(u"end"_s);
    run = {};
    isRunning = false;
}

void ScriptedPage::stop() {
    did(u"stop"_s);
    m_coming.clear();
}

void ScriptedPage::navigate(const QUrl& url) {
    did(u"navigate "_s + url.toString());
    lead({url.toString()});
}

/// What was on its way before counts no more.
void ScriptedPage::lead(const QStringList& addresses) {
    m_coming = addresses;
}

blog::PageEnd ScriptedPage::waitComplete(std::chrono::milliseconds limit) {
    did(u"wait %1"_s.arg(limit.count()));
    if (isProgramEnding)
        return blog::PageEnd::ProgramEnding;
    QString address = m_coming.isEmpty() ? QString() : m_coming.takeFirst();
    if (!documents.contains(address))
        return blog::PageEnd::TimedOut;
    const QString& instead = documents[address].whenLoggedOut;
    m_address = isLoggedIn || instead.isEmpty() ? address : instead;
    return blog::PageEnd::Complete;
}

QString ScriptedPage::locationUrl() {
    did(u"location"_s);
    return m_address;
}

int ScriptedPage::formCount() {
    did(u"forms"_s);
    return int(documents[m_address].forms.size());
}

/// Of all elements of the page those that the place may mean, in their order.
QList<ScriptedElement*> ScriptedPage::among(const blog::ElementPlace& place) {
    QList<ScriptedElement*> found;
    QList<ScriptedForm>& forms = documents[m_address].forms;
    for (qsizetype form = 0; form < forms.size(); ++form) {
        if (place.by == By::NameInForm && form != place.form)
            continue;
        for (ScriptedElement& element : forms[form].elements) {
            const bool isKind = place.by == By::InputIndex || place.by == By::InputName ? element.tag == u"INPUT"_s
                                : place.by == By::TextAreaIndex                         ? element.tag == u"TEXTAREA"_s
                                                                                        : true;
            const bool isNamed = place.by == By::InputIndex || place.by == By::TextAreaIndex ||
                                 (!place.name.isEmpty() && element.name.compare(place.name, Qt::CaseInsensitive) == 0);
            if (isKind && isNamed)
                found += &element;
        }
    }
    return found;
}

ScriptedElement* ScriptedPage::find(const blog::ElementPlace& place, Use use) {
    const QList<ScriptedElement*> found = among(place);
    if (place.by == By::InputIndex || place.by == By::TextAreaIndex)
        return found.value(place.index, nullptr);
    const QStringList fitting =
        use == Use::Check ? QStringList{u"checkbox"_s, u"radio"_s} : QStringList{u"submit"_s, u"button"_s};
    for (ScriptedElement* element : found) {
        if (use != Use::Any && fitting.contains(element->type))
            return element;
    }
    return found.value(0, nullptr);
}

ScriptedElement& ScriptedPage::need(const blog::ElementPlace& place, Use use) {
    ScriptedElement* element = find(place, use);
    if (!element)
        throw missing();
    return *element;
}

bool ScriptedPage::hasElement(const blog::ElementPlace& place) {
    did(u"has "_s + shown(place));
    return find(place, Use::Any) != nullptr;
}

void ScriptedPage::setValue(const blog::ElementPlace& place, const QString& text) {
    did(u"set "_s + shown(place));
    need(place).value = text;
}

void ScriptedPage::setChecked(const blog::ElementPlace& place, bool isChecked) {
    did((isChecked ? u"check "_s : u"uncheck "_s) + shown(place));
    need(place, Use::Check).isChecked = isChecked;
}

void ScriptedPage::click(const blog::ElementPlace& place) {
    did(u"click "_s + shown(place));
    const ScriptedElement& element = need(place, Use::Click);
    isLoggedIn = isLoggedIn || element.logsIn;
    lead(element.leadsTo);
}

void ScriptedPage::submit(int form) {
    did(u"submit %1"_s.arg(form));
    const QList<ScriptedForm>& forms = documents[m_address].forms;
    if (form < 0 || form >= forms.size())
        throw missing();
    isLoggedIn = isLoggedIn || forms[form].logsIn;
    lead(forms[form].leadsTo);
}

QStringList ScriptedPage::options(const blog::ElementPlace& place) {
    did(u"options "_s + shown(place));
    return need(place).options;
}

void ScriptedPage::selectOption(const blog::ElementPlace& place, int index) {
    did(u"select %1 %2"_s.arg(index).arg(shown(place)));
    ScriptedElement& element = need(place);
    if (index != 0)
        element.selected = index;
}

QStringList ScriptedPage::linkHosts() {
    did(u"links"_s);
    QStringList hosts;
    for (const ScriptedLink& link : documents[m_address].links)
        hosts += link.host;
    return hosts;
}

void ScriptedPage::clickLink(int index) {
    did(u"link %1"_s.arg(index));
    const QList<ScriptedLink>& links = documents[m_address].links;
    if (index < 0 || index >= links.size())
        throw missing();
    lead(links[index].leadsTo);
}

} // namespace velloria::tests
