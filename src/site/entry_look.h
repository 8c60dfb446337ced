// How one entry looks: the normal form and the table form.
#pragma once

#include "site/page.h"
#include "site/site_settings.h"
#include "store/entry.h"

namespace velloria::site {

/// The opening line of a table form entry, which pages of other days share.
QString entryTableLine(const SiteSettings& settings);

/// Where entries stand: those of a search have no links to comments, and a weather word without a picture has the
/// sunny one.
enum class EntriesOf { Month, Search };

/// The settings of an entry's look, read once a page; a missing value of an entry is no failure. The constructor throws
/// platform::Failure for a setting that is a number beyond 16 bits, print throws nothing.
///
///     const EntryLook look(settings, topLink);
///     for (const store::Entry& entry : entries)
///         look.print(page, entry);
class EntryLook {
public:
    /// `topLink` stands below each entry.
    EntryLook(const SiteSettings& settings, QString topLink, EntriesOf entriesOf = EntriesOf::Month);

    void print(Page& page, const store::Entry& entry) const;

private:
    void printNormal(Page& page, const store::Entry& entry) const;
    void printTable(Page& page, const store::Entry& entry) const;
    bool showsGenre(const store::Entry& entry) const { return m_hasGenre && !entry.genre.isNull(); }
    bool showsWeather(const store::Entry& entry) const;
    QString weatherImage(const store::Entry& entry) const;

    QString m_topLink;
    bool m_isTable;
    bool m_isSearch;
    bool m_hasComments;
    bool m_hasWeather;
    bool m_hasGenre;
    QString m_titleAlign;
    QString m_titleColor;
    QString m_titleBackground;
    QString m_titleStyle;
    QString m_dayColor;
    QString m_dayBackground;
    QString m_contentsColor;
    QString m_contentsBackground;
    QString m_contentsAlign;
    QString m_tableLine;
};

} // namespace velloria::site
