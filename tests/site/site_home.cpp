#include "site/site_home.h"

#include "core/upload_list.h"
#include "platform/file_write.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {

using site::MakeList;
using site::PageKind;
using site::WithPrivate;

SiteHome::SiteHome() {
    clearSettings();
    useSite(u"x.htm"_s);
    desk.events = {}; // those of the start
}

QString SiteHome::makeMonth(const QString& yearMonth) {
    monthPage().MakeHTML(path(u"site/x.htm"_s), yearMonth, PageKind::Current, MakeList::Yes, WithPrivate::No);
    return sitePage(u"x.htm"_s);
}

QString SiteHome::makeLog(const QString& yearMonth) {
    monthPage().MakeHTML(path(u"site/x.htm"_s), yearMonth, PageKind::Log, MakeList::Yes, WithPrivate::No);
    return sitePage(u"x.htm"_s);
}

QString SiteHome::makePreview(const QString& yearMonth) {
    monthPage().MakeHTML(path(u"site/x.htm"_s), yearMonth, PageKind::Current, MakeList::No, WithPrivate::Yes);
    return sitePage(u"x.htm"_s);
}

void SiteHome::writePrivate(const QString& day, const QString& title) {
    store::Entry entry = entryOf(day, title);
    entry.isPrivate = true;
    write(entry);
}

QStringList SiteHome::uploadRows(const QString& list) const {
    QStringList rows;
    for (const core::UploadRow& row : core::readUploadList(session.UserPath + list))
        rows += row.folder.mid(home.path().size() + 1) + u',' + row.name;
    return rows;
}

void SiteHome::divide(int term, bool isOnTop) {
    setSetting(keys::divide::kDiaryDivide, u"1"_s);
    setSetting(keys::divide::kDiaryTerm, QString::number(term));
    setSetting(keys::divide::kDiaryOnTop, isOnTop ? u"1"_s : u"0"_s);
}

void SiteHome::divideByDay(bool isOnTop) {
    divide(1, isOnTop);
    setSetting(keys::divide::kUseFileName2Day, u"1"_s);
}

void SiteHome::turnFeedsOn(const QString& diaryUrl) {
    setSetting(keys::rss::kRSSOn, u"1"_s);
    setSetting(keys::rss::kDiaryURL, diaryUrl);
}

void SiteHome::putPart(const QString& name, const QByteArray& bytes) {
    writeFile(session.DataPath + u"DiaryParts/"_s + name, bytes);
}

void SiteHome::registerFile(const QString& name, const QString& day) {
    registers::FileRegister(session.databaseFile())
        .addFile({0, name, day, day == registers::kAllDays ? 0 : 1, false, false});
}

QStringList SiteHome::fileRows() {
    return sqlValue(u"SELECT coalesce(group_concat(FileName || ' ' || Day || ' ' || Uploaded || ' ' || Logged, "
                    u"char(10)), '') FROM "
                    "(SELECT * FROM FileDB ORDER BY FileID)"_s)
        .split(u'\n', Qt::SkipEmptyParts);
}

testing::AssertionResult hasLines(const QString& page, const QStringList& lines) {
    const QString wanted = u"\r\n"_s + lines.join(u"\r\n"_s) + u"\r\n"_s;
    if ((u"\r\n"_s + page + u"\r\n"_s).contains(wanted))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "lines\n"
                                       << lines.join(u'\n').toStdString() << "\nare not in\n"
                                       << page.toStdString();
}

testing::AssertionResult lacks(const QString& page, const QString& part) {
    if (!page.contains(part))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << part.toStdString() << "\nstands in\n" << page.toStdString();
}

QStringList linesFrom(const QString& page, const QString& start) {
    QStringList lines;
    for (const QString& line : page.split(u"\r\n"_s)) {
        if (line.startsWith(start))
            lines += line;
    }
    return lines;
}

qsizetype countOf(const QString& page, const QString& part) {
    return page.count(part);
}

} // namespace velloria::tests
