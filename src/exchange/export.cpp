#include "exchange/export.h"

#include "convert/html_to_text.h"
#include "core/day_key.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/path_names.h"
#include "exchange/export_target.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/failure.h"

#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

constexpr int kEntriesPerProgress = 512;

QString formatFolder(const core::Session& session) {
    return platform::existingPath(core::files::kExportFormats.in(session)) + u'/';
}

/// A name as a failure shows it: behind a NUL a reader sees nothing.
QString shown(QString name) {
    return name.replace(QChar(0), QChar(0x2400));
}

/// A missing value is no text; weather and genre have words for that.
QString textOr(const QString& value, const QString& whenMissing) {
    return value.isNull() ? whenMissing : value;
}

int countMissing(QStringView text) {
    if (platform::inCodePage(text))
        return 0;
    int count = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (platform::inCodePage(text.sliced(i, 1)))
            continue;
        ++count;
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
    }
    return count;
}

} // namespace

store::Period exportMonth(const QString& year, const QString& month) {
    return {store::Period::Kind::Month, year + u'/' + core::twoDigits(month) + u'/', {}};
}

QStringList userFormats(const core::Session& session) {
    QStringList names = platform::listFolder(formatFolder(session), u"*"_s);
    names.removeAll(core::files::kFirstTextFormat.name);
    names.removeAll(core::files::kFirstHtmlFormat.name);
    return names;
}

QString ExportCounts::text() const {
    QString line = u"%1件の日記をエクスポートしました。"_s.arg(entries);
    if (lost > 0)
        line += u"同じ名前のため%1個のファイルを上書きし、%2件の日記が残っていません。"_s.arg(overwritten).arg(lost);
    if (replaced > 0)
        line += u"以前からあった%1個のファイルを上書きしました。"_s.arg(replaced);
    if (isPeriodBackwards)
        line += u"期間の開始が終了より後になっています。"_s;
    if (references > 0)
        line += u"Shift_JISにない%1文字を文字参照で書きました。"_s.arg(references);
    return line;
}

clsExport::clsExport(const core::Run& run, ExportSettings settings)
    : m_session(run.session)
    , m_store(run)
    , m_desk(run.desk)
    , m_settings(std::move(settings)) {}

ExportOutcome clsExport::run(const std::optional<QString>& chosen) {
    if (m_settings.format == ExportFormat::User && m_settings.userFormat.isEmpty()) {
        m_desk.message(platform::MessageKind::Critical, u"定義ファイルが指定されていません。"_s);
        return ExportOutcome::Refused;
    }
    bool isChosen = false;
    if (chosen) {
        takePath(*chosen);
        isChosen = !m_path.isEmpty();
    } else {
        GetFilePath(isChosen);
    }
    if (!isChosen) {
        m_desk.message(platform::MessageKind::Information, u"キャンセルしました"_s);
        return ExportOutcome::Cancelled;
    }
    bool isDone = false;
    Execute(isDone);
    if (!isDone)
        return ExportOutcome::Refused;
    m_desk.message(platform::MessageKind::Information, u"完了！"_s);
    if (m_counts.isUnusual())
        m_desk.notice(m_counts.text());
    else
        m_desk.status(m_counts.text());
    return ExportOutcome::Done;
}

bool clsExport::asksForFolder() const {
    return m_settings.period.kind != store::Period::Kind::Day && m_settings.unit != ExportUnit::OneFile;
}

void clsExport::GetFilePath(bool& isChosen) {
    const QString all = u"ALL Files(*.*)|*.*|"_s;
    const QString start = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    platform::PathRequest request{platform::PathMode::Save, u"Export"_s, all, start};
    if (m_settings.format != ExportFormat::User)
        request.defaultSuffix = ending().sliced(1);
    request.name = proposedName();
    if (asksForFolder())
        request = {platform::PathMode::Folder, u"フォルダの選択"_s, {}, start};
    else if (m_settings.format == ExportFormat::Text)
        request.filter = u"TEXT Files(*.txt)|*.txt|"_s + all;
    else if (m_settings.format == ExportFormat::Html)
        request.filter = u"HTML Files(*.html)|*.html|"_s + all;
    takePath(m_desk.choosePath(request).value_or(QString()));
    isChosen = !m_path.isEmpty();
}

/// By period and format: "2004_05_01-2004_05_31.txt", "2004_05.htm", "2004_05_06.txt".
QString clsExport::proposedName() const {
    const store::Period& period = m_settings.period;
    QString name = period.first;
    if (period.kind == store::Period::Kind::Month && name.endsWith(u'/'))
        name.chop(1);
    if (period.kind == store::Period::Kind::Between)
        name += u'-' + period.last;
    // A month is what somebody typed.
    for (QChar& character : name) {
        if (!character.isLetterOrNumber() && character != u'-')
            character = u'_';
    }
    const QString end = ending();
    return end.size() > 1 ? name + end : name; // a format without an ending gives none
}

void clsExport::takePath(QString chosen) {
    if (!chosen.isEmpty() && !asksForFolder() && m_settings.format != ExportFormat::User) {
        const QString end = chosen.right(4).toUpper();
        if (end != u".TXT"_s && end != u".HTM"_s)
            chosen += ending();
    }
    m_path = chosen;
}

QString clsExport::formatName() const {
    switch (m_settings.format) {
    case ExportFormat::Text:
        return u"TEXT"_s;
    case ExportFormat::Html:
        return u"HTML"_s;
    case ExportFormat::User:
        break;
    }
    return core::GetBaseName(m_settings.userFormat);
}

QString clsExport::ending() const {
    switch (m_settings.format) {
    case ExportFormat::Text:
        return u".txt"_s;
    case ExportFormat::Html:
        return u".htm"_s;
    case ExportFormat::User:
        break;
    }
    return u'.' + core::GetFileExt(m_settings.userFormat);
}

QString clsExport::readFormat() {
    // A first start lays the two built-in formats down as ".ini".
    for (const QString& end : {u".txt"_s, u".ini"_s}) {
        m_formatFile = platform::existingPath(formatFolder(m_session) + formatName() + end);
        if (platform::fileExists(m_formatFile))
            return platform::fromCodePage(platform::readFile(m_formatFile));
    }
    throw platform::Failure(u"エクスポートの定義ファイルがありません。"_s,
                            core::files::kExportFormats.name + u'/' + formatName() + u".txt"_s, {},
                            u"何も書き出していません。データフォルダのExportFormatに定義ファイルを置いてください。"_s);
}

void clsExport::Execute(bool& isDone) {
    const platform::Hourglass hourglass(m_desk);
    isDone = false;
    m_counts = {};
    const store::Period& period = m_settings.period;
    m_counts.isPeriodBackwards = period.kind == store::Period::Kind::Between && period.first > period.last;
    const QString format = readFormat();
    convert::clsHTML2TEXT converter;
    if (!converter.Initialize(core::files::kHtmlToText.in(m_session))) {
        m_desk.message(platform::MessageKind::Critical, u"HTML2TXT Initializeファイル読み込みエラー"_s);
        return;
    }
    if (m_settings.unit == ExportUnit::OneFile)
        writeOneFile(format, converter);
    else
        writeDividedFiles(format, converter);
    isDone = true;
}

void clsExport::writeOneFile(const QString& format, const convert::clsHTML2TEXT& converter) {
    requireExportTarget(m_session, m_path, m_formatFile);
    m_counts.replaced = QFileInfo::exists(m_path);
    platform::replaceFile(
        m_path,
        [&](const platform::WriteBytes& file) {
            forEachEntry([&](store::Entry& entry) { WriteEntry(format, file, converter, entry); });
        },
        platform::Durability::Derived);
}

void clsExport::writeDividedFiles(const QString& format, const convert::clsHTML2TEXT& converter) {
    // One day asks for a file: the folder of that is meant.
    const QString folder =
        asksForFolder() ? core::withSeparator(m_path) : m_path.first(m_path.size() - core::GetFileName(m_path).size());
    QHash<QString, int> written;
    forEachEntry([&](store::Entry& entry) {
        try {
            const QString file = folder + fileNameOf(entry);
            requireExportTarget(m_session, file, m_formatFile);
            const int before = written.value(file);
            m_counts.replaced += before == 0 && QFileInfo::exists(file);
            platform::replaceFile(
                file, [&](const platform::WriteBytes& out) { WriteEntry(format, out, converter, entry); },
                platform::Durability::Derived);
            m_counts.lost += before > 0;
            m_counts.overwritten += before == 1;
            written[file] = before + 1;
        } catch (const platform::Failure& failure) {
            throw platform::Failure(
                u"%1「%2」を書き出せません。"_s.arg(entry.day, shown(entry.title)), failure.file(), failure.reason(),
                failure.advice() + u"ここまでに書き出した%1個のファイルは残っています。"_s.arg(written.size()));
        }
    });
}

QString clsExport::fileNameOf(const store::Entry& entry) const {
    const QString name = m_settings.name == ExportName::Day ? core::dayFileName(entry.day) : entry.title;
    // Such a name would lead out of the folder, or end at the NUL.
    if (name.contains(u'/') || name.contains(core::nativeSeparator()) || name.contains(QChar(0)))
        throw platform::Failure({}, shown(name) + ending(), u"ファイル名に使えない文字があります"_s,
                                u"題名を変えるか、ファイル名を日付にして、もう一度実行してください。"_s);
    return name + ending();
}

void clsExport::WriteEntry(const QString& format, const platform::WriteBytes& file,
                           const convert::clsHTML2TEXT& converter, store::Entry& entry) {
    QString text = format;
    text.replace(u"<--TITLE-->"_s, entry.title);
    text.replace(u"<--DAY-->"_s, entry.day);
    text.replace(u"<--GENRE-->"_s, textOr(entry.genre, u"一般"_s));
    text.replace(u"<--WEATHER-->"_s, textOr(entry.weather, u"-"_s));
    // The text goes in last: a mark within it stays as it is.
    text.replace(u"<--CONTENTS-->"_s,
                 m_settings.contents == ExportContents::Converted ? converter.Execute(entry.contents) : entry.contents);
    text += u"\r\n"_s;
    m_counts.references += countMissing(text);
    file(platform::toCodePage(text));
}

/// Counts those that have been written.
void clsExport::forEachEntry(const std::function<void(store::Entry&)>& write) {
    m_store.ExportEntries(m_settings.period, m_settings.direction, [&](store::Entry& entry, int count) {
        write(entry);
        if (++m_counts.entries % kEntriesPerProgress == 0)
            m_desk.progress(u"日記を書き出しています"_s, m_counts.entries, count);
    });
}

} // namespace velloria::exchange
