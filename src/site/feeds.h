// The four feeds beside the month page: RSS 0.91, RSS 1.0, RSS 2.0 and Atom 0.3.
#pragma once

#include "core/run.h"
#include "site/feed_formats.h"
#include "site/site_settings.h"
#include "store/diary_store.h"

namespace velloria::site {

///     clsRSSreader feeds(run, settings);
///     if (feeds.Initialize(session.RSSIniFile)) {
///         feeds.SetFilePath(monthFile);
///         feeds.MakeRSS();
///     }
///
/// Writes the feeds; its name notwithstanding it reads none. A feed holds the ten newest public entries of the month of
/// the newest public entry. Files are UTF-8 without byte order mark, lines end in CR LF.
class clsRSSreader {
public:
    /// `settings` outlive this.
    clsRSSreader(const core::Run& run, const SiteSettings& settings);

    /// Whether feeds can be made: the settings file exists and names the address of the diary.
    bool Initialize(const QString& rssIniFile);

    /// The feeds lie beside this month file.
    void SetFilePath(const QString& monthFile);

    const QString& GetDiaryURL() const { return m_diaryUrl; }

    /// Replaces the four files. Without "HTML2TXT_RSS.ini" they are empty. Throws platform::Failure when no entry is
    /// public; the old files are gone then.
    void MakeRSS();

    /// What follows the month file's base name, in the order of the upload list.
    static const QStringList& endings();

private:
    std::vector<FeedItem> readItems(const QString& lastDay) const;
    void write(const QString& ending, const QString& text) const;

    const core::Session& m_session;
    const SiteSettings& m_settings;
    store::DiaryStore m_store;
    const platform::Clock& m_clock;
    QString m_diaryUrl; ///< as it is set; the channel holds the form that a feed can print
    FeedChannel m_channel;
    QString m_filePrefix;
};

} // namespace velloria::site
