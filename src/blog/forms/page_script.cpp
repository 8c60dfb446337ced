#include "blog/forms/page_script.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

/// A page may name an element like anything that documents and forms have themselves, and that element takes its
/// place: everything is reached by the prototypes. Tags are spelt small, as pages in XML have them.
constexpr char16_t kScript[] = uR"js((request => {
const refuse = error => JSON.stringify({ok: false, error});
const answer = value => JSON.stringify({ok: true, value: value === undefined ? null : value});
const need = (condition, error) => { if (!condition) throw error; };
try {
    const getter = (kind, name) => {
        const get = Object.getOwnPropertyDescriptor(kind.prototype, name).get;
        return object => get.call(object);
    };
    const tagOf = getter(Element, 'localName');
    const controlsOf = getter(HTMLFormElement, 'elements');
    const byTag = tag => Array.from(Document.prototype.getElementsByTagName.call(document, tag));
    const bySelector = selector => Array.from(Document.prototype.querySelectorAll.call(document, selector));
    const attribute = (element, name) => Element.prototype.getAttribute.call(element, name);
    const isA = (element, ...tags) => element instanceof HTMLElement && tags.includes(tagOf(element));
    const isInput = (element, ...types) => isA(element, 'input') && types.includes(element.type);

    const uses = {
        SetValue: element => isA(element, 'input', 'textarea', 'select', 'button', 'output'),
        SetChecked: element => isInput(element, 'checkbox', 'radio'),
        Click: element => isA(element, 'button') || isInput(element, 'submit', 'button', 'image', 'reset'),
        Options: element => isA(element, 'select'),
        Select: element => isA(element, 'select'),
    };
    const named = (elements, name) => {
        const wanted = name.toLowerCase();
        const isWanted = text => text !== null && text.toLowerCase() === wanted;
        const found = name === '' ? [] : elements.filter(
            element => isWanted(attribute(element, 'name')) || isWanted(attribute(element, 'id')));
        return found.find(uses[request.call] || (() => true)) || found[0];
    };
    const form = index => byTag('form')[index];
    const links = () => bySelector('a[href],area[href]').filter(link => isA(link, 'a', 'area'));
    const find = {
        NameInForm: ({name, form: index}) => {
            const owner = form(index);
            return owner && named(Array.from(controlsOf(owner)), name);
        },
        InputIndex: ({index}) => byTag('input')[index],
        TextAreaIndex: ({index}) => byTag('textarea')[index],
        InputName: ({name}) => named(byTag('input'), name),
        NameInDocument: ({name}) => named(bySelector('[name],[id]'), name),
    };
    const element = () => {
        const found = find[request.place.by](request.place);
        need(found, 'missing');
        return found;
    };
    const fitting = () => {
        const found = element();
        need(uses[request.call](found), 'unfit');
        return found;
    };

    // No name of an element is a symbol.
    const known = Symbol.for('known');
    const written = Symbol.for('written');
    const texts = () => (globalThis[written] = globalThis[written] || []);
    const write = (element, text) => {
        element.value = text;
        if (isA(element, 'textarea') && text !== '')
            texts().push(element);
    };
    const hasEmptied = () => texts().some(element => element.value === '');
    const leave = () => { globalThis[known] = true; };
    const takeEnd = () => {
        const isComplete = performance.timing.loadEventEnd > 0; // of a document that was stopped there is no such event
        const isNew = !globalThis[known];
        if (isComplete)
            leave();
        return isComplete && (isNew || request.isFrame);
    };

    // A window that the page opens is shown in this one by its address alone, and what a form sends there would be lost.
    const stayHere = (element, name) => {
        const target = attribute(element, name);
        const frames = byTag('iframe').concat(byTag('frame')).map(frame => attribute(frame, 'name'));
        if (target && !frames.includes(target))
            Element.prototype.setAttribute.call(element, name, '_self');
    };
    const sendHere = (sent, sender) => {
        if (attribute(sent, 'target') === null)
            bySelector('base[target]').slice(0, 1).forEach(base => stayHere(base, 'target'));
        stayHere(sent, 'target');
        if (sender)
            stayHere(sender, 'formtarget');
    };
    const click = element => {
        need(element, 'missing');
        const link = Element.prototype.closest.call(element, 'a,area');
        if (link)
            sendHere(link);
        // What the page's own handlers do to the form comes before.
        const here = event => sendHere(event.target, event.submitter);
        EventTarget.prototype.addEventListener.call(window, 'submit', here);
        leave();
        HTMLElement.prototype.click.call(element);
        EventTarget.prototype.removeEventListener.call(window, 'submit', here);
        return hasEmptied();
    };
    const submit = form => {
        need(form, 'missing');
        sendHere(form);
        leave();
        HTMLFormElement.prototype.submit.call(form);
        return hasEmptied();
    };
    const tell = element => {
        for (const type of request.raisesEvents ? ['input', 'change'] : [])
            EventTarget.prototype.dispatchEvent.call(element, new Event(type, {bubbles: true}));
    };
    const hostOf = link => {
        const script = 'javascript:';
        if (link.protocol !== script)
            return link.hostname;
        const host = link.href.slice(script.length).split(/[/?#]/)[0];
        try {
            return decodeURIComponent(host);
        } catch (error) {
            return host;
        }
    };

    const calls = {
        FormCount: () => byTag('form').length,
        HasElement: () => Boolean(find[request.place.by](request.place)),
        SetValue: () => {
            const found = fitting();
            need(!isInput(found, 'file'), 'file');
            write(found, request.text);
            tell(found);
        },
        SetChecked: () => {
            const found = element();
            need('checked' in found, 'unfit');
            found.checked = request.isChecked ? 1 : 0;
            tell(found);
        },
        Click: () => click(element()),
        Submit: () => submit(form(request.index)),
        Options: () => Array.from(fitting().options, option => option.text),
        Select: () => {
            const found = fitting();
            need(found.options[request.index], 'missing');
            // The index itself is what is assigned, and the first one is a no that takes nothing back.
            if (request.index === 0)
                return;
            found.options[request.index].selected = request.index;
            tell(found);
        },
        LinkHosts: () => links().map(hostOf),
        ClickLink: () => click(links()[request.index]),
        Leave: leave,
        TakeEnd: takeEnd,
    };
    return answer(calls[request.call]());
} catch (error) {
    return refuse(['missing', 'unfit', 'file'].includes(error) ? error : 'refused');
}
})(%1))js";

QString nameOf(PageCall call) {
    switch (call) {
    case PageCall::FormCount:
        return u"FormCount"_s;
    case PageCall::HasElement:
        return u"HasElement"_s;
    case PageCall::SetValue:
        return u"SetValue"_s;
    case PageCall::SetChecked:
        return u"SetChecked"_s;
    case PageCall::Click:
        return u"Click"_s;
    case PageCall::Submit:
        return u"Submit"_s;
    case PageCall::Options:
        return u"Options"_s;
    case PageCall::Select:
        return u"Select"_s;
    case PageCall::LinkHosts:
        return u"LinkHosts"_s;
    case PageCall::ClickLink:
        return u"ClickLink"_s;
    case PageCall::Leave:
        return u"Leave"_s;
    case PageCall::TakeEnd:
        break;
    }
    return u"TakeEnd"_s;
}

QString nameOf(ElementPlace::By by) {
    switch (by) {
    case ElementPlace::By::NameInForm:
        return u"NameInForm"_s;
    case ElementPlace::By::InputIndex:
        return u"InputIndex"_s;
    case ElementPlace::By::TextAreaIndex:
        return u"TextAreaIndex"_s;
    case ElementPlace::By::InputName:
        return u"InputName"_s;
    case ElementPlace::By::NameInDocument:
        break;
    }
    return u"NameInDocument"_s;
}

/// As a script spells it. The toolkit's own writer would put a question mark where half a pair stands.
QString quoted(const QString& text) {
    QString result(u'"');
    for (const QChar character : text) {
        const uint code = character.unicode();
        if (code >= u' ' && code <= u'~' && code != u'"' && code != u'\\')
            result += character;
        else
            result += u"\\u%1"_s.arg(code, 4, 16, QChar(u'0'));
    }
    return result + u'"';
}

QString wordOf(bool value) {
    return value ? u"true"_s : u"false"_s;
}

/// What was looked for.
QString placeText(const PageRequest& request) {
    switch (request.call) {
    case PageCall::Submit:
        return u"フォーム %1 "_s.arg(request.index);
    case PageCall::ClickLink:
        return u"リンク %1 "_s.arg(request.index);
    default:
        return shownPlace(request.place) + u' ';
    }
}

QString reasonOf(const QString& error, const PageRequest& request) {
    const QString place = placeText(request);
    if (error == u"missing")
        return u"%1がページにありません。"_s.arg(place);
    if (error == u"unfit")
        return u"%1は、この操作のできる項目ではありません。"_s.arg(place);
    if (error == u"file")
        return u"%1は、ファイルを選ぶ項目です。"_s.arg(place);
    return u"ページが%1の操作を受け付けません。"_s.arg(place);
}

} // namespace

QString pageScript(const PageRequest& request) {
    const ElementPlace& place = request.place;
    const QStringList members{u"call:"_s + quoted(nameOf(request.call)),
                              u"place:{by:%1,form:%2,index:%3,name:"_s.arg(
                                  quoted(nameOf(place.by)), QString::number(place.form), QString::number(place.index)) +
                                  quoted(place.name) + u'}',
                              u"text:"_s + quoted(request.text),
                              u"isChecked:"_s + wordOf(request.isChecked),
                              u"index:"_s + QString::number(request.index),
                              u"raisesEvents:"_s + wordOf(request.raisesEvents),
                              u"isFrame:"_s + wordOf(request.isFrame)};
    static const QString kText = QString::fromUtf16(kScript);
    const qsizetype hole = kText.lastIndexOf(u"%1"_s);
    return kText.left(hole) + u'{' + members.join(u',') + u'}' + kText.mid(hole + 2);
}

PageAnswer pageAnswer(const QVariant& answered, const PageRequest& request) {
    const QJsonObject answer = QJsonDocument::fromJson(answered.toString().toUtf8()).object();
    if (!answer.contains(u"ok"_s))
        return {};
    if (!answer[u"ok"_s].toBool())
        return {.isValid = true, .refusal = reasonOf(answer[u"error"_s].toString(), request), .value = {}};
    return {.isValid = true, .refusal = {}, .value = answer[u"value"_s].toVariant()};
}

} // namespace velloria::blog
