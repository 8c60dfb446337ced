#include "exchange/formats/dated_texts.h"

#include "exchange/formats/html_text.h"
#include "exchange/formats/source_files.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

/// What the name of a file tells.
struct DatedFile {
    QString file;
    QString day;
    int number = 0;
    QString title;
};

bool isText(const QFileInfo& file) {
    const QString suffix = file.suffix().toLower();
    return suffix == u"txt"_s || suffix == u"text"_s || suffix == u"md"_s;
}

/// Nothing for a file that is no entry, which is counted.
std::optional<DatedFile> datedFile(const QString& file, Losses& losses) {
    const QFileInfo info(file);
    if (!isText(info)) {
        losses.countNamed(u"テキストではないファイル"_s, info.fileName());
        return std::nullopt;
    }
    static const QRegularExpression form(
        u"^(?:(\\d{4})([-_.])(\\d{1,2})\\2(\\d{1,2})|(\\d{4})(\\d{2})(\\d{2}))(?!\\d)(.*)$"_s,
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(info.completeBaseName());
    if (!match.hasMatch()) {
        losses.countNamed(u"名前に日付のないファイル"_s, info.fileName());
        return std::nullopt;
    }
    const int first = match.hasCaptured(2) && match.capturedLength(2) ? 1 : 5;
    const int monthAt = first == 1 ? 3 : 6;
    const std::optional<QString> day = calendarDay(match.captured(first).toInt(), match.captured(monthAt).toInt(),
                                                   match.captured(monthAt + 1).toInt());
    if (!day) {
        losses.countNamed(u"日付が正しくない日記"_s, info.fileName());
        return std::nullopt;
    }
    static const QRegularExpression separators(u"^[-_.\\s]+"_s);
    const QString behind = match.captured(8).remove(separators).trimmed();
    bool isNumber = false;
    const int number = behind.toInt(&isNumber);
    return isNumber ? DatedFile{file, *day, number, {}} : DatedFile{file, *day, 0, behind};
}

/// Takes the first line from the text when it stands alone.
QString takeTitle(QString& text) {
    const qsizetype end = text.indexOf(u'\n');
    if (end <= 0 || text.first(end).trimmed().isEmpty())
        return {};
    const qsizetype next = text.indexOf(u'\n', end + 1);
    if (next < 0 || !QStringView(text).sliced(end, next - end).trimmed().isEmpty() ||
        QStringView(text).sliced(next).trimmed().isEmpty())
        return {};
    const QString title = text.first(end).trimmed();
    text = text.sliced(next + 1);
    return title;
}

void readEntry(const DatedFile& dated, ForeignDiary& diary) {
    std::optional<QString> text = readOneText(dated.file, diary.losses);
    if (!text)
        return;
    if (text->trimmed().isEmpty()) {
        diary.losses.countNamed(u"空のファイル"_s, QFileInfo(dated.file).fileName());
        return;
    }
    ForeignEntry entry;
    entry.entry.day = dated.day;
    entry.entry.title = dated.title.isEmpty() ? takeTitle(*text) : dated.title;
    while (text->endsWith(u'\n'))
        text->chop(1);
    entry.entry.contents = htmlParagraphs(*text);
    diary.entries.push_back(std::move(entry));
}

} // namespace

ForeignDiary readDatedTexts(const QString& path) {
    ForeignDiary diary;
    const QStringList files = QFileInfo(path).isDir() ? filesBelow(path, diary.losses) : QStringList{path};
    std::vector<DatedFile> dated;
    QStringList taken;
    for (const QString& file : files) {
        if (std::optional<DatedFile> found = datedFile(file, diary.losses)) {
            taken += file;
            dated.push_back(std::move(*found));
        }
    }
    requireSize(path, taken);
    std::ranges::stable_sort(dated, {}, &DatedFile::number);
    for (const DatedFile& file : dated)
        readEntry(file, diary);
    return diary;
}

} // namespace velloria::exchange
