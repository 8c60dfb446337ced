// Which registered files go to the site, and what is said about those that stay away.
#pragma once

#include "core/session.h"
#include "platform/desk.h"
#include "store/entry.h"

#include <QSet>
#include <QStringList>

#include <functional>
#include <vector>

namespace velloria::registers {

/// The choice of one command. A row whose name is none of a file could bring in anything, the diary for one, and never
/// goes. A row of a private entry goes only when the same name has a row that is none of a private entry, or when the
/// user's own setting wants it to. Names compare without regard to case, width and kana type.
class SiteFiles {
public:
    /// Outlives this.
    explicit SiteFiles(const core::Session& session);

    /// Those of the rows that go, in their order. Of the others it is kept for `tell` which are no names, and which
    /// belong to private entries though `isPublished` finds them on the site or the row is marked as gone up.
    std::vector<store::FileRow> take(const std::vector<store::FileRow>& rows,
                                     const std::function<bool(const store::FileRow&)>& isPublished = {});

    /// Whether a file that is about to go is one of the registered copies: one that lies in its folder, or behind a
    /// link in "DiaryParts" or "DiaryLog" of the data folder or the site. What a link leads to elsewhere could be
    /// anything; its name is kept for `tell`.
    bool isCopy(const QString& path);

    /// Says on the status panel what has been kept for it; each name once in the life of this.
    void tell(platform::Desk& desk);

private:
    QSet<QString> privateNames(const std::vector<store::FileRow>& rows) const;
    void keep(QStringList& list, const QString& name);

    const core::Session& m_session;
    QStringList m_noNames;
    QStringList m_published;
    QStringList m_strays;
    QSet<QString> m_kept;
};

} // namespace velloria::registers
