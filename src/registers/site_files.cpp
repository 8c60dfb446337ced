#include "registers/site_files.h"

#include "core/date_forms.h"
#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "platform/directory.h"
#include "platform/text_fold.h"
#include "registers/file_register.h"
#include "store/day_spellings.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::registers {
namespace {

bool takesPrivateFiles(const core::Session& session) {
    return core::Settings(session).isOn(core::keys::kPrivateFiles);
}

bool belongsToADay(const store::FileRow& row) {
    return !row.day.isEmpty() && row.day != kAllDays;
}

/// Tells which rows belong to a private entry. Days in other forms count by their dates, on both sides; when a date
/// has entries in more than one form, any of them keeps the file away.
class PrivateEntries {
public:
    explicit PrivateEntries(const core::Session& session)
        : m_connection(session.databaseFile(), store::sqlite::Access::ReadOnly)
        , m_isPrivate(m_connection, "SELECT min(Private <> 0) FROM Contents WHERE Day = ?1 AND Number = ?2")
        , m_days(m_connection, "Contents")
        , m_yearNow(session.Today.left(4).toInt()) {}

    bool own(const store::FileRow& row) {
        if (!belongsToADay(row))
            return false;
        if (row.number < 0)
            return true; // the entry is gone
        const QString date = core::formatTextAsDate(row.day, u"yyyy/mm/dd", m_yearNow);
        const QStringList days = m_days.of(date);
        return std::any_of(days.begin(), days.end(), [&](const QString& day) { return isPrivate(day, row.number); });
    }

private:
    bool isPrivate(const QString& day, int number) {
        m_isPrivate.bind(day, number);
        const bool isPrivate = m_isPrivate.next() && m_isPrivate.boolean(0);
        m_isPrivate.reset();
        return isPrivate;
    }

    store::sqlite::Connection m_connection;
    store::sqlite::Statement m_isPrivate;
    store::DaySpellings m_days;
    int m_yearNow;
};

/// The names as one line shows them; the name of a row may hold anything.
QString shown(const QStringList& names) {
    QString text = u'「' + names.join(u"」「"_s) + u'」';
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; }, u'?');
    return text;
}

} // namespace

SiteFiles::SiteFiles(const core::Session& session)
    : m_session(session) {}

std::vector<store::FileRow> SiteFiles::take(const std::vector<store::FileRow>& rows,
                                            const std::function<bool(const store::FileRow&)>& isPublished) {
    const QSet<QString> privateNames = this->privateNames(rows);
    std::vector<store::FileRow> taken;
    for (const store::FileRow& row : rows) {
        if (!core::isBareName(row.name))
            keep(m_noNames, row.name);
        else if (!privateNames.contains(platform::fold(row.name)))
            taken.push_back(row);
        else if (row.isUploaded || (isPublished && isPublished(row)))
            keep(m_published, row.name);
    }
    return taken;
}

bool SiteFiles::isCopy(const QString& path) {
    const QFileInfo file(path);
    if (!file.isSymLink())
        return true;
    QStringList folders{file.path()};
    for (const QString& root : {m_session.DataPath, m_session.FilePath}) {
        if (!root.isEmpty())
            folders += {platform::existingPath(core::files::kParts.below(root)),
                        platform::existingPath(core::files::kLogs.below(root))};
    }
    const QString target = file.canonicalFilePath();
    const bool isWithin = std::any_of(folders.begin(), folders.end(), [&](const QString& folder) {
        const QString real = QFileInfo(folder).canonicalFilePath();
        return !real.isEmpty() && target.startsWith(core::withSeparator(real));
    });
    if (!isWithin)
        keep(m_strays, file.fileName());
    return isWithin;
}

/// The names, in the form in which they compare, that private entries alone have.
QSet<QString> SiteFiles::privateNames(const std::vector<store::FileRow>& rows) const {
    const bool hasEntries = std::any_of(rows.begin(), rows.end(), belongsToADay);
    if (!hasEntries || takesPrivateFiles(m_session))
        return {};
    PrivateEntries entries(m_session);
    QSet<QString> names;
    for (const store::FileRow& row : rows) {
        if (entries.own(row))
            names.insert(platform::fold(row.name));
    }
    if (names.isEmpty())
        return names;
    for (const store::FileRow& row : FileRegister(m_session.databaseFile()).ListFiles()) {
        const QString name = platform::fold(row.name);
        if (names.contains(name) && !entries.own(row))
            names.remove(name);
    }
    return names;
}

void SiteFiles::keep(QStringList& list, const QString& name) {
    if (m_kept.contains(name))
        return;
    m_kept.insert(name);
    list += name;
}

void SiteFiles::tell(platform::Desk& desk) {
    QStringList lines;
    if (!m_noNames.isEmpty())
        lines += u"登録された%1はファイルの名前ではないので、サイトに入れていません。"_s.arg(shown(m_noNames));
    if (!m_strays.isEmpty())
        lines += u"%1はDiaryPartsの外にあるファイルへのリンクなので、サイトに入れていません。"_s.arg(shown(m_strays));
    if (!m_published.isEmpty())
        lines +=
            u"%1は非公開の日記だけのファイルですが、公開したものがサイトに残っています。"_s.arg(shown(m_published));
    if (!lines.isEmpty())
        desk.notice(lines.join(QString()));
    m_noNames.clear();
    m_strays.clear();
    m_published.clear();
}

} // namespace velloria::registers
