#include "exchange/diary_export.h"

#include "core/day_key.h"
#include "core/files.h"
#include "core/path_names.h"
#include "exchange/export_target.h"
#include "exchange/formats/html_pictures.h"
#include "exchange/formats/markdown_entry.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/unfinished_folder.h"
#include "store/diary_store.h"
#include "store/entry_line.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

using store::Entry;

const QString kParts = core::files::kParts.name;

/// One entry after the other, days and numbers in their order, a month of them in memory.
void forEachEntry(const core::Run& run, const std::function<void(const Entry&)>& take) {
    const store::DiaryStore store(run);
    for (const QString& month : store.months()) {
        const std::vector<Entry> entries = store.EntriesOfMonth(month);
        for (auto entry = entries.crbegin(); entry != entries.crend(); ++entry) {
            // A day that is no date may be the beginning of others.
            const QString own = entry->day.left(7);
            if (own == month && own.isNull() == month.isNull())
                take(*entry);
        }
    }
}

/// Names in "DiaryParts" that the texts of an entry lead to.
QStringList partsOf(const Entry& entry) {
    QStringList names;
    for (const QString& text : {entry.contents, entry.extend, entry.excerpt}) {
        for (const PartAddress& address : partAddresses(text))
            names += address.name;
    }
    names.removeDuplicates();
    return names;
}

/// Throws platform::Failure for what is no folder, and for one with anything in it.
void requireEmptyFolder(const QString& folder) {
    const auto refuse = [&](const QString& reason) {
        throw platform::Failure(u"Markdownを書き出せません。"_s, folder, reason,
                                u"何も書き出していません。新しいフォルダか、空のフォルダを指定してください。"_s);
    };
    if (!QFileInfo::exists(folder))
        return;
    if (!QFileInfo(folder).isDir())
        refuse(u"フォルダではありません"_s);
    platform::UnfinishedFolder::removeLeftovers(folder);
    if (!QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        refuse(u"空ではありません"_s);
}

class MarkdownFolder {
public:
    MarkdownFolder(const core::Run& run, const QString& folder)
        : m_run(run)
        , m_target(folder)
        , m_folder(folder)
        , m_parts(core::withSeparator(platform::existingPath(core::files::kParts.in(run.session)))) {}

    /// A failure tells that nothing of it stays.
    DiaryExport write() {
        try {
            forEachEntry(m_run, [&](const Entry& entry) { add(entry); });
            m_folder.finish();
        } catch (const platform::Failure& failure) {
            throw platform::Failure(failure.whatFailed(), QString(failure.file()).replace(m_folder.path(), m_target),
                                    failure.reason(),
                                    failure.advice() + u"書き出したものは取り消しました。日記はそのままです。"_s);
        }
        return m_told;
    }

private:
    void add(const Entry& entry) {
        if (!core::isDayKey(entry.day)) {
            m_told.oddDays += entry.day;
            return;
        }
        const QString name = u"%1-%2.md"_s.arg(QString(entry.day).replace(u'/', u'-')).arg(entry.number);
        platform::replaceFile(path(freeName(name)), markdownFile(entry), platform::Durability::Derived);
        ++m_told.entries;
        for (const QString& part : partsOf(entry))
            addPart(part);
    }

    /// Damaged diaries may have a number twice.
    QString freeName(QString name) {
        while (m_names.contains(name))
            name.insert(name.size() - 3, u"-2"_s);
        m_names.insert(name);
        return name;
    }

    void addPart(const QString& name) {
        if (m_seen.contains(name))
            return;
        m_seen.insert(name);
        if (!m_parts.hasFile(name)) {
            m_told.missing += name;
            return;
        }
        platform::makeFolder(path(kParts));
        platform::copyFile(m_parts.path(name), path(kParts + u'/' + name));
        ++m_told.pictures;
    }

    QString path(const QString& name) const { return m_folder.path() + u'/' + name; }

    const core::Run& m_run;
    QString m_target;
    platform::UnfinishedFolder m_folder;
    platform::FolderNames m_parts;
    QSet<QString> m_names;
    QSet<QString> m_seen;
    DiaryExport m_told;
};

QByteArray lineOf(const Entry& entry) {
    QJsonObject json = store::toJson(entry);
    if (entry.number < 1)
        json[u"Number"_s] = QJsonValue();
    // Without a title no line is taken but one that brings a lost text back.
    if (entry.title.isEmpty())
        json[u"Reason"_s] = u"書き出し"_s;
    return QJsonDocument(json).toJson(QJsonDocument::Compact) + '\n';
}

QString named(const QStringList& names) {
    constexpr qsizetype kMost = 5;
    return names.first(std::min(names.size(), kMost)).join(u"、"_s) + (names.size() > kMost ? u"、…"_s : QString());
}

} // namespace

QString DiaryExport::text() const {
    QString told = u"%1件の日記を書き出しました。"_s.arg(entries);
    if (pictures > 0)
        told += u"ファイル%1個をDiaryPartsにコピーしました。"_s.arg(pictures);
    if (!missing.isEmpty())
        told +=
            u"日記が指しているファイル%1個がDiaryPartsにありません (%2)。"_s.arg(missing.size()).arg(named(missing));
    if (!oddDays.isEmpty())
        told += u"日付でない日の日記が%1件あります (%2)。"_s.arg(oddDays.size()).arg(named(oddDays)) +
                (areOddDaysLeftOut ? u"書き出していません。"_s : u"entry putはその行を読み込めません。"_s);
    return told;
}

std::optional<DiaryExport> exportMarkdown(const core::Run& run, const QString& folder) {
    requireEmptyFolder(folder);
    DiaryExport told = MarkdownFolder(run, folder).write();
    told.areOddDaysLeftOut = true;
    return told;
}

std::optional<DiaryExport> exportJsonLines(const core::Run& run, const QString& file) {
    requireExportTarget(run.session, file);
    if (QFileInfo::exists(file) && !run.desk.ask(u"同名のファイルが存在します。\r\n上書きしますか？"_s))
        return std::nullopt;
    DiaryExport told;
    platform::replaceFile(
        file,
        [&](const platform::WriteBytes& out) {
            forEachEntry(run, [&](const Entry& entry) {
                out(lineOf(entry));
                ++told.entries;
                if (!core::isDayKey(entry.day))
                    told.oddDays += entry.day;
            });
        },
        platform::Durability::Durable);
    return told;
}

} // namespace velloria::exchange
