// A home for tests of the generator: no settings but the test's own, and words to make pages and look at them.
#pragma once

#include "core/site_keys.h"
#include "registers/file_register.h"
#include "site/log_archive.h"
#include "site/month_page.h"
#include "site/save_html.h"
#include "support/print.h"
#include "support/test_home.h"

namespace velloria::tests {

namespace keys = site::keys;

/// Fixture: today is 2004/05/06, the site is "site/x.htm", and every setting of the generator is missing.
class SiteHome : public TestHome {
protected:
    SiteHome();

    /// Makes the month as Save HTML, a log or the preview does, as site/x.htm, and returns the page's text.
    QString makeMonth(const QString& yearMonth = QStringLiteral("2004/05"));
    QString makeLog(const QString& yearMonth = QStringLiteral("2004/05"));
    QString makePreview(const QString& yearMonth = QStringLiteral("2004/05"));

    site::MonthPage monthPage() { return site::MonthPage(run); }
    site::SaveHtml saver() { return site::SaveHtml(run); }
    site::LogArchive archive() { return site::LogArchive(run); }

    void writePrivate(const QString& day, const QString& title);

    /// A page of the site as text.
    QString sitePage(const QString& name) const { return pageOf(path(QStringLiteral("site/") + name)); }
    bool siteHas(const QString& name) const { return exists(path(QStringLiteral("site/") + name)); }
    /// The names of a list of files for the upload, in order, with the folders below the home: "site,x.htm".
    QStringList uploadRows(const QString& list = QStringLiteral("upload.tmp")) const;

    /// Divides months: days a page, whether the newest ones stay on the month file.
    void divide(int term, bool isOnTop);
    /// One day a page, pages named after their day.
    void divideByDay(bool isOnTop);
    void turnFeedsOn(const QString& diaryUrl = QStringLiteral("http://h.example/diary/x.htm"));

    /// Puts a file into the user's "DiaryParts".
    void putPart(const QString& name, const QByteArray& bytes = "picture");
    void registerFile(const QString& name, const QString& day);
    /// FileDB as "name day uploaded logged" lines in the order of the rows.
    QStringList fileRows();

    store::DiaryStore m_store{run};
};

/// Whether these lines stand one behind the other in a page, each whole.
testing::AssertionResult hasLines(const QString& page, const QStringList& lines);
/// Whether no line of the page holds `part`.
testing::AssertionResult lacks(const QString& page, const QString& part);
/// The lines of a page that begin with `start`.
QStringList linesFrom(const QString& page, const QString& start);
/// How often `part` stands in the page.
qsizetype countOf(const QString& page, const QString& part);

} // namespace velloria::tests
