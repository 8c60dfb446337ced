// The customize sets that the program comes with, as a reader's browser shows them: on a phone and on a wide screen, in
// light and, where the browser is told so, in dark.
#include "core/site_keys.h"
#include "registers/log_register.h"
#include "site/month_page.h"
#include "support/factory_sets.h"
#include "support/test_home.h"
#include "support/waiting.h"

#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>

#include <iostream>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys;
using site::MakeList;
using site::PageKind;
using site::WithPrivate;

/// Whether the browser prefers dark pages: tests/CMakeLists.txt runs this a second time so.
bool isDark() {
    return qgetenv("QTWEBENGINE_CHROMIUM_FLAGS").contains("--force-dark-mode");
}

/// Gives what is wrong with the page, and the smallest contrast of its texts.
const QString kLook = uR"JS((() => {
  const problems = [];
  if (!/width=device-width/.test(document.querySelector('meta[name=viewport]')?.content))
    problems.push('no viewport');
  if (document.documentElement.scrollWidth > innerWidth || document.body.scrollWidth > innerWidth)
    problems.push(`the page is ${document.documentElement.scrollWidth}, ${document.body.scrollWidth} wide`);

  const channels = colour => (colour.match(/[\d.]+/g) || []).map(Number);
  const over = (top, under) => {
    const alpha = top.length > 3 ? top[3] : 1;
    return [0, 1, 2].map(i => top[i] * alpha + under[i] * (1 - alpha));
  };
  const light = colour => {
    const [r, g, b] = colour.map(c => c / 255).map(c => c <= 0.03928 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4);
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
  };
  const contrast = (one, other) => {
    const [dark, bright] = [light(one), light(other)].sort((a, b) => a - b);
    return (bright + 0.05) / (dark + 0.05);
  };
  const systemColour = name => {
    const probe = document.body.appendChild(document.createElement('i'));
    probe.style.color = name;
    const colour = channels(getComputedStyle(probe).color);
    probe.remove();
    return colour;
  };
  // Every colour that stands behind an element's text: its background's, and those of a drawn one.
  const backgrounds = element => {
    const above = element.parentElement ? backgrounds(element.parentElement) : [systemColour('Canvas')];
    const style = getComputedStyle(element);
    const plain = above.map(under => over(channels(style.backgroundColor), under));
    const drawn = (style.backgroundImage.match(/rgba?\([^)]*\)/g) || []).map(channels);
    return [...plain, ...drawn.flatMap(colour => plain.map(under => over(colour, under)))];
  };
  // A script is told the colours of fresh links alone, so those of the others come from where they are set.
  const linkColour = (state, attribute) => {
    let colour = document.body.getAttribute(attribute);
    for (const rule of [...document.styleSheets].flatMap(sheet => [...sheet.cssRules])) {
      for (const inner of rule.media && matchMedia(rule.media.mediaText).matches ? rule.cssRules : [rule])
        colour = inner.selectorText === 'a' + state ? inner.style.color : colour;
    }
    return colour ? [systemColour(colour)] : []; // the browser's own are its own
  };
  const others = [...linkColour(':visited', 'vlink'), ...linkColour(':active', 'alink')];

  let least = 21;
  const texts = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
  for (let text; (text = texts.nextNode());) {
    const style = getComputedStyle(text.parentElement);
    if (!text.data.trim() || style.visibility !== 'visible')
      continue;
    const range = document.createRange();
    range.selectNodeContents(text);
    const boxes = [...range.getClientRects()];
    if (boxes.length === 0)
      continue;
    const scroller = text.parentElement.closest('td[colspan], h3 + div, h3 + div table');
    const words = text.data.trim().slice(0, 20);
    const edge = scroller ? Math.max(scroller.getBoundingClientRect().left + scroller.scrollWidth, innerWidth) : innerWidth;
    if (boxes.some(box => box.right > edge + 1 || box.left < -1))
      problems.push(`"${words}" sticks out`);
    const colours = [channels(style.color), ...(text.parentElement.closest('a[href]') ? others : [])];
    for (const under of backgrounds(text.parentElement)) {
      for (const colour of colours) {
        const found = contrast(over(colour, under), under);
        least = Math.min(least, found);
        if (found < 4.5)
          problems.push(`"${words}" has ${found.toFixed(2)}: ${colour} on ${under}`);
      }
    }
  }
  for (const element of document.querySelectorAll('body *')) {
    if (getComputedStyle(element).overflowX === 'hidden' && element.scrollWidth > element.clientWidth + 1)
      problems.push(`${element.tagName} is cut off`);
  }
  for (const picture of document.images) {
    if (picture.naturalWidth === 0 || picture.getBoundingClientRect().right > innerWidth)
      problems.push(`${picture.src} does not fit`);
  }
  const days = [...document.querySelectorAll('[cellpadding][bgcolor] a[href]')].map(day => day.getBoundingClientRect());
  if (innerWidth < 400 && days.some(day => day.width < 40 || day.height < 40))
    problems.push('a day is too small for a finger');
  return {problems, least, days: days.length, pictures: document.images.length, width: innerWidth,
          isDark: matchMedia('(prefers-color-scheme: dark)').matches};
})())JS"_s;

class CustomizeLooks : public TestHome, public testing::WithParamInterface<QString> {
protected:
    CustomizeLooks() {
        bringCustomizeSets(home.path());
        EXPECT_TRUE(QDir(core::files::kCustomize.in(session)).removeRecursively());
        start();
        session.CustIniFile = core::files::kCustomize.in(session) + u'/' + GetParam() + u".ini"_s;
        EXPECT_TRUE(exists(session.CustIniFile));
        useSite();
        writeDiary();
        EXPECT_TRUE(QDir(home.path()).rename(u"UserData/DiaryParts"_s, u"site/DiaryParts"_s)); // what an upload does
        QImage(1600, 400, QImage::Format_RGB32).save(path(u"site/DiaryParts/wide.png"_s));
        const registers::LogRegister logs(session.databaseFile());
        for (int month = 1; month < 5; ++month)
            logs.addLog({u"2004/0%1"_s.arg(month), u"20040%1.htm"_s.arg(month)});
        setSetting(keys::rss::kRSSOn, u"1"_s);
        setSetting(keys::rss::kDiaryURL, u"http://www.example.com/index.htm"_s);

        m_view.setPage(new QWebEnginePage(&m_profile, &m_view));
        m_view.settings()->setAttribute(QWebEngineSettings::ShowScrollBars, false);
    }

    /// Days of two months with all that may be too wide.
    void writeDiary() {
        const struct {
            QString day;
            QString title;
            QString weather;
            QString genre;
            QString text;
        } entries[] = {
            {u"2004/04/05"_s, u"先月"_s, u"曇"_s, u"庭"_s, u"<P>先月の文。</P>"_s},
            {u"2004/04/06"_s, u"先月の次の日"_s, u"-"_s, u"猫"_s, u"ひとこと。"_s},
            {u"2004/05/01"_s, u"絵"_s, u"晴"_s, u"庭"_s,
             u"<P>絵がある。</P><P><IMG SRC=\"./DiaryParts/wide.png\"></P>"_s},
            {u"2004/05/02"_s, u"長い語"_s, u"雷"_s, u"たいへん長い名前のジャンル"_s,
             u"<P>"_s + QString(200, u'x') + u"</P><PRE>"_s + QString(90, u'y') + u"</PRE>"_s},
            {u"2004/05/03"_s, u"題も長い"_s + QString(60, u'a'), u"雪"_s, u"猫"_s, u"<UL><LI>ひとつ<LI>ふたつ</UL>"_s},
            {u"2004/05/04"_s, u"表"_s, u"雨"_s, u"本"_s,
             u"<TABLE BORDER=1 CELLPADDING=4 CELLSPACING=0><TR>"_s + u"<TD>とても長いあたい</TD>"_s.repeated(12) +
                 u"</TR></TABLE><P>表の後の<A HREF=\"http://www.example.com/\">リンク</A>。</P>"_s},
            {u"2004/05/06"_s, u"今日"_s, u"晴"_s, u"料理"_s, u"<P>今日の文。</P>"_s},
        };
        for (const auto& one : entries) {
            store::Entry entry = entryOf(one.day, one.title);
            entry.weather = one.weather;
            entry.genre = one.genre;
            entry.contents = one.text;
            write(entry);
        }
    }

    void make(const QString& name, const QString& month, PageKind kind) {
        site::MonthPage(run).MakeHTML(path(u"site/"_s + name), month, kind, MakeList::No, WithPrivate::No);
    }

    /// Every kind of page that a set gives its look.
    QStringList makePages() {
        make(u"whole.htm"_s, u"2004/05"_s, PageKind::Current);
        make(u"log.htm"_s, u"2004/04"_s, PageKind::Log);
        setSetting(keys::divide::kDiaryDivide, u"1"_s);
        setSetting(keys::divide::kLogDivide, u"1"_s);
        setSetting(keys::divide::kDiaryTerm, u"1"_s);
        make(u"divided.htm"_s, u"2004/05"_s, PageKind::Current);
        make(u"dividedlog.htm"_s, u"2004/04"_s, PageKind::Log);
        setSetting(keys::frame::kFrameOn, u"1"_s);
        make(u"frames.htm"_s, u"2004/05"_s, PageKind::Current);
        return {u"whole.htm"_s,         u"log.htm"_s,      u"divided.htm"_s, u"divided_02.htm"_s,
                u"dividedlog_01.htm"_s, u"frames_C.htm"_s, u"frames_D.htm"_s};
    }

    void load(const QString& page) {
        m_view.show();
        bool isLoaded = false;
        const auto loaded = QObject::connect(&m_view, &QWebEngineView::loadFinished, [&](bool ok) { isLoaded = ok; });
        m_view.load(QUrl::fromLocalFile(path(u"site/"_s + page)));
        EXPECT_TRUE(waitFor([&] { return isLoaded; }));
        QObject::disconnect(loaded);
    }

    QVariantMap look(int width) {
        m_view.resize(width, 800);
        EXPECT_TRUE(waitFor([&] { return runScript(u"innerWidth"_s).toInt() == width; }));
        return runScript(kLook).toMap();
    }

    QVariant runScript(const QString& script) {
        QVariant result;
        bool isDone = false;
        m_view.page()->runJavaScript(script, [&](const QVariant& value) {
            result = value;
            isDone = true;
        });
        EXPECT_TRUE(waitFor([&] { return isDone; }));
        return result;
    }

    QWebEngineProfile m_profile; ///< that keeps nothing
    QWebEngineView m_view;
};

TEST_P(CustomizeLooks, FitPhonesAndScreensAndCanBeRead) {
    double least = 21;
    for (const QString& page : makePages()) {
        load(page);
        for (const int width : {1280, 390}) {
            SCOPED_TRACE(page.toStdString() + ' ' + std::to_string(width));
            const QVariantMap found = look(width);
            for (const QVariant& problem : found[u"problems"_s].toList())
                ADD_FAILURE() << problem.toString().toStdString();
            EXPECT_EQ(found[u"isDark"_s].toBool(), isDark());
            if (page == u"whole.htm"_s) {
                EXPECT_EQ(found[u"days"_s].toInt(), 5);
                EXPECT_EQ(found[u"pictures"_s].toInt(), 6) << "the weather's and the wide one";
            }
            ASSERT_TRUE(found.contains(u"least"_s));
            least = std::min(least, found[u"least"_s].toDouble());
        }
    }
    std::cout << "SMALLEST CONTRAST " << GetParam().toStdString() << (isDark() ? ", dark: " : ": ") << least
              << std::endl;
}

INSTANTIATE_TEST_SUITE_P(Of, CustomizeLooks, testing::ValuesIn(kFactorySets),
                         [](const auto& set) { return set.param.toStdString(); });

} // namespace
} // namespace velloria::tests
