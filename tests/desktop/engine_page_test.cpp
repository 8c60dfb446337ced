// What a run does in the page of a blog.
#include "desktop/engine_home.h"

using namespace Qt::StringLiterals;
using namespace velloria::blog;

namespace velloria::tests {
namespace {

using BlogElements = EngineHome;

const QByteArray kGo = "<input type=submit name=go>";

QByteArray formOf(const QByteArray& controls, const QByteArray& attributes = {}) {
    return "<form action=/do method=post " + attributes + ">" + controls + kGo + "</form>";
}

// ---- forms and names

TEST_F(BlogElements, FormsAreCountedWhateverTheirNamesHide) {
    show("<body name=getElementsByTagName><img name=querySelectorAll><form name=forms></form><form name=length></form>"
         "<form name=getElementsByTagName></form><form name=querySelectorAll></form><form name=body></form>"
         "<form name=performance></form><iframe name=Document></iframe><iframe name=JSON></iframe>");
    EXPECT_EQ(page.formCount(), 6);
    show("none");
    EXPECT_EQ(page.formCount(), 0);
}

TEST_F(BlogElements, OfAThousandFormsTheLastCanBeFilled) {
    QByteArray forms;
    for (int i = 0; i < 1000; ++i)
        forms += formOf("<input name=title value=" + QByteArray::number(i) + ">");
    show(forms);
    EXPECT_EQ(page.formCount(), 1000);
    page.setValue(named(u"title"_s, 999), u"x"_s);
    EXPECT_EQ(own(u"document.forms[999].title.value + document.forms[998].title.value"_s), u"x998"_s);
}

TEST_F(BlogElements, NamesOfAFormsOwnPartsHideNothing) {
    QByteArray controls = "<input name=title>";
    for (const char* name :
         {"elements", "length",        "item",          "namedItem",        "form",         "forms",     "id",
          "name",     "target",        "action",        "getAttribute",     "setAttribute", "localName", "tagName",
          "children", "ownerDocument", "dispatchEvent", "querySelectorAll", "constructor",  "__proto__", "click"})
        controls += QByteArray("<input type=hidden name=") + name + " value=1>";
    show(formOf(controls + "<input type=submit name=submit>"));
    page.setValue(named(u"title"_s), u"a"_s);
    page.setValue(named(u"elements"_s), u"b"_s);
    web.pages["/do"] = "done";
    page.submit(0);
    ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    ASSERT_EQ(web.requestsFor("/do").size(), 1);
    EXPECT_EQ(web.requestsFor("/do")[0].field(u"title"_s), u"a"_s);
    EXPECT_EQ(web.requestsFor("/do")[0].field(u"elements"_s), u"b"_s);
}

TEST_F(BlogElements, WhatThePagesScriptsHaveChangedIsNotSeen) {
    show(formOf("<input name=title>") +
         "<script>const bad = () => { throw 'bad'; };"
         "for (const kind of [Document, Element, HTMLElement, HTMLFormElement, HTMLInputElement, Array, String])"
         "    for (const name of Object.getOwnPropertyNames(kind.prototype))"
         "        try { kind.prototype[name] = bad; } catch (e) {}"
         "JSON.stringify = bad; Object.getOwnPropertyDescriptor = bad; Symbol.for = bad; Array.from = bad;</script>");
    page.setValue(named(u"title"_s), u"a"_s);
    EXPECT_EQ(sent().field(u"title"_s), u"a"_s);
}

TEST_F(BlogElements, AreFoundByNameOrIdWhateverTheirCase) {
    show("<input name=title value=outside>"
         "<form><input name=other><input id=ByID><input name=Title><input name=TITLE><input name='' id=''>"
         "<input type=image name=picture></form><form><input name=second></form><input name=late form=far>"
         "<form id=far></form>");
    for (const auto& [name, form, isThere] : std::initializer_list<std::tuple<QString, int, bool>>{
             {u"title"_s, 0, true},
             {u"TiTlE"_s, 0, true},
             {u"byid"_s, 0, true},
             {u"second"_s, 0, false},
             {u"second"_s, 1, true},
             {u"LATE"_s, 2, true},
             {u"picture"_s, 0, false}, // an image button is no control of its form
             {u""_s, 0, false},
             {u"titl"_s, 0, false},
             {u"title"_s, 3, false},
             {u"title"_s, -1, false}})
        EXPECT_EQ(page.hasElement(named(name, form)), isThere) << name.toStdString() << ' ' << form;
    page.setValue(named(u"TITLE"_s), u"x"_s);
    EXPECT_EQ(own(u"[...document.querySelectorAll('input')].map(e => e.value).join()"_s).left(19),
              u"outside,,,x,,,,,"_s.left(19));
}

TEST_F(BlogElements, AreFoundByTheirPlaceAmongAllTagsOfTheirKind) {
    show("<input name=first><form>" + QByteArray("<input type=hidden name=h><textarea name=t1></textarea>") +
         "<input type=image name=picture alt=x><select name=s></select><button name=b></button><input name=last></form>"
         "<textarea name=t2></textarea>");
    for (const auto& [by, index, name] :
         {std::tuple{By::InputIndex, 0, u"first"_s}, std::tuple{By::InputIndex, 1, u"h"_s},
          std::tuple{By::InputIndex, 3, u"last"_s}, std::tuple{By::TextAreaIndex, 0, u"t1"_s},
          std::tuple{By::TextAreaIndex, 1, u"t2"_s}}) {
        page.setValue({.by = by, .index = index}, u"set"_s);
        EXPECT_EQ(own(u"document.querySelector('[name=%1]').value"_s.arg(name)), u"set"_s) << name.toStdString();
    }
    EXPECT_TRUE(page.hasElement({.by = By::InputIndex, .index = 2}));
    for (const int index : {4, -1, 32767, -32768}) {
        EXPECT_FALSE(page.hasElement({.by = By::InputIndex, .index = index}));
        EXPECT_NE(refusal([&] { page.setValue({.by = By::InputIndex, .index = index}, u""_s); }), QString());
    }
    EXPECT_NE(refusal([&] { page.setValue({.by = By::TextAreaIndex, .index = 2}, u""_s); }), QString());
}

TEST_F(BlogElements, OfSeveralTheFirstThatFitsTheUse) {
    show(formOf("<fieldset name=a></fieldset><object name=a></object><input type=hidden name=a value=0>"
                "<input type=checkbox name=a value=1><input type=checkbox name=a value=2>"
                "<input type=hidden name=b><a id=b></a><input type=text name=b><button type=submit name=b value=1>x"
                "</button><input type=submit name=b value=2>"));
    page.setValue(named(u"a"_s), u"5"_s);
    page.setChecked(named(u"a"_s), true);
    const WebRequest request = sent(u"b"_s);
    EXPECT_EQ(request.body.left(16), "a=5&a=1&b=&b=&b=");
}

TEST_F(BlogElements, WithANameAreFoundOutsideOfEveryForm) {
    show("<meta name=genre><div id=Genre></div><select id=GENRE><option>x</select><select name=genre></select>"
         "<input name=genre2><form><input id=GENRE2><input name=genre2></form><input name=genre2>");
    EXPECT_EQ(page.options({.by = By::NameInDocument, .name = u"genre"_s}), QStringList{u"x"_s});
    page.setValue({.by = By::InputName, .name = u"Genre2"_s}, u"set"_s);
    EXPECT_EQ(own(u"document.querySelector('input').value"_s), u"set"_s);
    EXPECT_TRUE(page.hasElement({.by = By::NameInDocument, .name = u"gEnRe"_s}));
    EXPECT_FALSE(page.hasElement({.by = By::NameInDocument, .name = u""_s}));
    EXPECT_FALSE(page.hasElement({.by = By::InputName, .name = u"genre"_s}));
}

TEST_F(BlogElements, InAPageOfXmlAreFoundToo) {
    web.headers = "Content-Type: application/xhtml+xml; charset=utf-8\r\n";
    show("<html xmlns='http://www.w3.org/1999/xhtml'><body><form action='/do'><input name='Title'/>"
         "<textarea name='body'/><input type='submit' name='go'/></form></body></html>");
    page.setValue(named(u"title"_s), u"a"_s);
    page.setValue({.by = By::InputIndex, .index = 0}, u"b"_s);
    page.setValue({.by = By::TextAreaIndex, .index = 0}, u"c"_s);
    EXPECT_EQ(sent().address, "/do?Title=b&body=c&go=%E9%80%81%E4%BF%A1");
}

TEST_F(BlogElements, ThatAreMissingAreToldAtTheirUseInWordsOfOurOwn) {
    show("SECRET<form name=SECRET>SECRET<input name=SECRET value=SECRET></form>");
    const ElementPlace place = named(u"title"_s);
    const QString told = u"ブログのページを操作できません。 (フォーム 0 の「title」 がページにありません。) "
                         u"テンプレートがこのページに合っているか確かめてください。"_s;
    EXPECT_EQ(refusal([&] { page.setValue(place, u"typed"_s); }), told);
    EXPECT_EQ(refusal([&] { page.setChecked(place, true); }), told);
    EXPECT_EQ(refusal([&] { page.click(place); }), told);
    EXPECT_EQ(refusal([&] { page.options(place); }), told);
    EXPECT_EQ(refusal([&] { page.selectOption(place, 1); }), told);
    EXPECT_TRUE(refusal([&] { page.submit(1); }).contains(u"フォーム 1 "_s));
    EXPECT_TRUE(refusal([&] { page.submit(-1); }).contains(u"フォーム -1 "_s));
    EXPECT_TRUE(refusal([&] { page.clickLink(0); }).contains(u"リンク 0 "_s));
    EXPECT_NE(refusal([&] { page.setValue(named(u"title"_s, 9), u""_s); }), QString());
}

TEST_F(BlogElements, ThatAreOfAnotherKindAreRefused) {
    show("<form><fieldset name=f></fieldset><input name=t><input type=file name=file></form><div id=d></div>");
    EXPECT_NE(refusal([&] { page.setValue(named(u"f"_s), u"x"_s); }), QString());
    EXPECT_NE(refusal([&] { page.options(named(u"t"_s)); }), QString());
    EXPECT_NE(refusal([&] { page.selectOption(named(u"t"_s), 1); }), QString());
    EXPECT_NE(refusal([&] { page.setChecked({.by = By::NameInDocument, .name = u"d"_s}, true); }), QString());
    EXPECT_TRUE(refusal([&] { page.setValue(named(u"file"_s), u"/etc/passwd"_s); }).contains(u"ファイル"_s));
    EXPECT_NE(refusal([&] { page.setValue(named(u"file"_s), u""_s); }), QString());
    page.setChecked(named(u"t"_s), true); // an input that can't be checked takes it and stays as it is
}

// ---- values

TEST_F(BlogElements, TakeATextAsItIs) {
    show(formOf("<textarea name=body></textarea>"));
    const QString text = u"「\"'\\`$&<b>%1%2&amp;</script></textarea>\u2028\u2029\u0085\u00a0\ufeff日記\U0001F600"
                         "\U000E0101\u0001\t x"_s +
                         QChar(0);
    page.setValue(named(u"body"_s), text);
    EXPECT_EQ(own(u"document.forms[0].body.value"_s), text);
    const QByteArray body = sent().body;
    EXPECT_EQ(QString::fromUtf8(QByteArray::fromPercentEncoding(body.mid(5).split('&')[0].replace('+', ' '))), text);
}

TEST_F(BlogElements, TakeHalfAPairOfCharactersForOneThatNobodyKnows) {
    show(formOf("<input name=title>"));
    page.setValue(named(u"title"_s), u"a"_s + QChar(0xd83d) + u'b' + QChar(0xde00));
    EXPECT_EQ(sent().field(u"title"_s), u"a\ufffdb\ufffd"_s);
}

TEST_F(BlogElements, TakeLongTexts) {
    show(formOf("<textarea name=body></textarea>"));
    const QString text = u"日記と\"\u2028\r\n"_s.repeated(100'000 / 7);
    page.setValue(named(u"body"_s), text);
    const QByteArray body = sent().body;
    EXPECT_EQ(QString::fromUtf8(QByteArray::fromPercentEncoding(body.mid(5).split('&')[0].replace('+', ' '))), text);
}

TEST_F(BlogElements, KeepTheLinesOfATextAreaAloneOrOfWhatIsHidden) {
    show(formOf("<textarea name=body></textarea><input name=title><input type=hidden name=hidden>"));
    for (const QString& name : {u"body"_s, u"title"_s, u"hidden"_s})
        page.setValue(named(name), u"a\r\nb\nc\r\n"_s);
    EXPECT_EQ(own(u"document.forms[0].body.value"_s), u"a\nb\nc\n"_s);
    const WebRequest request = sent();
    EXPECT_EQ(request.field(u"body"_s), u"a\r\nb\r\nc\r\n"_s);
    EXPECT_EQ(request.field(u"title"_s), u"abc"_s);
    EXPECT_EQ(request.field(u"hidden"_s), u"a\r\nb\r\nc\r\n"_s);
}

TEST_F(BlogElements, GoInTheEncodingOfThePage) {
    web.headers = "Content-Type: text/html; charset=Shift_JIS\r\n";
    show(formOf("<input name=title>"));
    page.setValue(named(u"title"_s), u"日\U0001F600"_s);
    EXPECT_EQ(sent().body.split('&')[0], "title=%93%FA%26%23128512%3B");
}

TEST_F(BlogElements, ThatNobodyCouldTypeInAreSetAllTheSame) {
    show(formOf("<input name=a readonly><input name=b disabled><input name=c type=hidden><input name=d maxlength=1>"
                "<input name=e type=password><button name=f type=button></button>"));
    for (const QString& name : {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s})
        page.setValue(named(name), u"set"_s);
    const WebRequest request = sent();
    EXPECT_EQ(request.body.left(29), "a=set&c=set&d=set&e=set&go=%E");
    EXPECT_EQ(own(u"document.title"_s), QString());
}

TEST_F(BlogElements, AreCheckedAndUnchecked) {
    show(formOf("<input type=checkbox name=a value=1><input type=checkbox name=b value=1 checked>"
                "<input type=radio name=r value=1 checked><input type=radio name=r value=2>"));
    page.setChecked(named(u"a"_s), true);
    page.setChecked(named(u"b"_s), false);
    page.setChecked({.by = By::InputIndex, .index = 3}, true);
    EXPECT_EQ(sent().body.left(8), "a=1&r=2&");
}

TEST_F(BlogElements, OfASelectHaveTheirTextsAndAreSelectedByTheirIndex) {
    show(formOf("<select name=s><option disabled selected>一般<optgroup label=x><option value=2> 旅  行 "
                "<option value=3>a&amp;b</optgroup><option value=4>\n</select>"));
    const ElementPlace place = named(u"s"_s);
    EXPECT_EQ(page.options(place), (QStringList{u"一般"_s, u"旅 行"_s, u"a&b"_s, u""_s}));
    const auto chosen = [this] { return own(u"String(document.forms[0].s.selectedIndex)"_s); };
    page.selectOption(place, 0);
    EXPECT_EQ(chosen(), u"0"_s);
    page.selectOption(place, 2);
    EXPECT_EQ(chosen(), u"2"_s);
    page.selectOption(place, 0); // the index itself is assigned, and 0 says no
    EXPECT_EQ(chosen(), u"2"_s);
    for (const int index : {4, -1})
        EXPECT_NE(refusal([&] { page.selectOption(place, index); }), QString()) << index;
    EXPECT_EQ(chosen(), u"2"_s);
    page.setValue(place, u"2"_s);
    EXPECT_EQ(chosen(), u"1"_s);
}

TEST_F(BlogElements, OfASelectOfManyStayAsTheyAreWithTheFirst) {
    show("<form><select name=s multiple><option selected>a<option>b</select></form>");
    page.selectOption(named(u"s"_s), 0);
    page.selectOption(named(u"s"_s), 1);
    EXPECT_EQ(own(u"[...document.forms[0].s.options].map(o => o.selected).join()"_s), u"true,true"_s);
}

TEST_F(BlogElements, RaiseEventsOnlyIfTheTemplateWantsThem) {
    const QByteArray counting = "<form><input name=t><input type=checkbox name=c><select name=s><option>a<option>b"
                                "</select></form><script>let told = '';"
                                "for (const type of ['input', 'change', 'click', 'keydown'])"
                                "    addEventListener(type, e => { told += e.target.name + ':' + type + ' '; });"
                                "</script>";
    const auto use = [&] {
        show(counting);
        page.setValue(named(u"t"_s), u"x"_s);
        page.setChecked(named(u"c"_s), true);
        page.selectOption(named(u"s"_s), 0);
        page.selectOption(named(u"s"_s), 1);
        return own(u"told"_s);
    };
    page.beginRun({});
    EXPECT_EQ(use(), QString());
    page.endRun();
    page.beginRun({.raisesEvents = true});
    EXPECT_EQ(use(), u"t:input t:change c:input c:change s:input s:change "_s);
    page.endRun();
    EXPECT_EQ(use(), QString());
}

// ---- sending

TEST_F(BlogElements, AClickRunsWhatThePageHasForItAndASubmitDoesNot) {
    show(formOf("<input name=t value=1>", "onsubmit=\"this.t.value = 2\""));
    EXPECT_EQ(sent().field(u"t"_s), u"2"_s);
    show(formOf("<input name=t value=1>", "onsubmit=\"this.t.value = 2\""));
    web.requests.clear();
    page.submit(0);
    ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    EXPECT_EQ(web.requestsFor("/do").value(0).body, "t=1");
}

TEST_F(BlogElements, ATextAreaThatThePageEmptiesAsItIsSentIsToldOf) {
    const auto isEmptied = [this](const QByteArray& handler, const QString& body) {
        show(formOf("<textarea name=body></textarea><input name=t>", handler));
        page.setValue(named(u"body"_s), body);
        page.setValue(named(u"t"_s), u"line"_s);
        sent();
        return page.hasEmptied();
    };
    EXPECT_TRUE(isEmptied("onsubmit=\"this.body.value = ''\"", u"text"_s));
    EXPECT_FALSE(isEmptied("onsubmit=\"this.body.value = 'other'; this.t.value = ''\"", u"text"_s));
    EXPECT_FALSE(isEmptied("onsubmit=\"this.body.value = ''\"", QString()));
    show(formOf("<textarea name=body></textarea>", "onsubmit=\"this.body.value = ''\""));
    page.setValue(named(u"body"_s), u"text"_s);
    page.submit(0);
    EXPECT_FALSE(page.hasEmptied());
    ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
}

TEST_F(BlogElements, AnImageButtonIsClickedAmongTheInputTags) {
    show("<form action=/do><input type=image name=picture alt=x></form>");
    web.pages["/do"] = "done";
    page.click({.by = By::InputIndex, .index = 0});
    ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    EXPECT_TRUE(web.requestsFor("/do").value(0).address.startsWith("/do?picture.x="));
}

TEST_F(BlogElements, LinksAreToldByTheirHosts) {
    show("<a href='http://h.example:80/x'>1</a><a>none</a><map><area href='//b.example/'></map>"
         "<a href='javascript:submitAll()'>2</a><a href='JavaScript:%73ub%E3%81%82(1)/x?y#z'>3</a>"
         "<a href='javascript:a?b'>4</a><a href='javascript:%ff'>5</a><a href='mailto:x@y'>6</a><a href='/here'>7</a>"
         "<svg><a href='/svg'></a></svg><a name=x href=''>8</a>");
    EXPECT_EQ(page.linkHosts(), (QStringList{u"h.example"_s, u"b.example"_s, u"submitAll()"_s, u"subあ(1)"_s, u"a"_s,
                                             u"%ff"_s, u""_s, u"127.0.0.1"_s, u"127.0.0.1"_s}));
}

TEST_F(BlogElements, ALinkIsClickedByItsPlaceAndRunsTheScriptOfThePage) {
    QByteArray links;
    for (int i = 0; i < 30; ++i)
        links += "<a href='/link?" + QByteArray::number(i) + "'>x</a>";
    show(links + "<a href='javascript:submitAll()'>y</a>" + formOf("<input name=t value=1>") +
         "<script>function submitAll() { document.forms[0].submit(); }</script>");
    web.pages["/do"] = "done";
    EXPECT_NE(refusal([&] { page.clickLink(31); }), QString());
    page.clickLink(30);
    ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    EXPECT_EQ(web.requestsFor("/do").value(0).body, "t=1");
    show(links);
    page.clickLink(25);
    ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    EXPECT_TRUE(web.asked.contains("/link?25"));
}

TEST_F(BlogElements, WhatIsMeantForANewWindowGoesWholeToThisOne) {
    for (const QByteArray& form :
         {formOf("<input name=t value=1>", "target=_blank"), formOf("<input name=t value=1>", "target=elsewhere"),
          "<base target=_BLANK>" + formOf("<input name=t value=1>"),
          QByteArray(
              "<form action=/do method=post><input name=t value=1><button name=go formtarget=_blank>x</form>")}) {
        show(form);
        const WebRequest request = sent();
        EXPECT_EQ(request.method, "POST") << form.toStdString();
        EXPECT_EQ(request.field(u"t"_s), u"1"_s);
        EXPECT_EQ(page.locationUrl(), web.address(u"/do"_s));
    }
    show("<a href=/do target=_blank>x</a>");
    page.clickLink(0);
    ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    EXPECT_EQ(page.locationUrl(), web.address(u"/do"_s));
}

TEST_F(BlogElements, WhatIsMeantForAFrameStaysThere) {
    show("<iframe name=inner></iframe>" + formOf("<input name=t value=1>", "target=inner"));
    EXPECT_EQ(sent().field(u"t"_s), u"1"_s);
    EXPECT_EQ(page.locationUrl(), web.address(u"/page"_s));
    EXPECT_EQ(page.formCount(), 1);
}

TEST_F(BlogElements, APageThatForbidsScriptsIsFilledAllTheSame) {
    web.headers += "Content-Security-Policy: default-src 'none'; script-src 'none'\r\n";
    show(formOf("<input name=t>"));
    page.setValue(named(u"t"_s), u"1"_s);
    EXPECT_EQ(sent().field(u"t"_s), u"1"_s);
}

} // namespace
} // namespace velloria::tests
