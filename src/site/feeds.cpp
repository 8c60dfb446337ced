#include "site/feeds.h"

#include "convert/html_to_text.h"
#include "core/day_key.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/path_names.h"
#include "core/site_keys.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "site/page_plan.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

constexpr std::size_t kMaxItems = 10;
constexpr qsizetype kExcerptLength = 500;

/// Addresses of the entries as the feeds give them. Some of them point past the file where the entry stands: readers
/// know the entries under these addresses, so they stay.
class ItemAddresses {
public:
    ItemAddresses(const SiteSettings& settings, const QString& diaryUrl, const QStringList& publicDays)
        : m_diaryUrl(diaryUrl)
        , m_hasFrames(settings.isOn(keys::frame::kFrameOn)) {
        const Division division = Division::read(settings);
        m_isDivided = division.divided == Divided::Yes;
        // Not only 0 and 1 count here: with any other number the addresses are numbered ones.
        m_dayNames = division.hasOneDayPerPage() ? settings.number(keys::divide::kUseFileName2Day) : 0;
        if (m_dayNames != 0)
            m_plan = PagePlan(division, publicDays);
    }

    QString address(const QString& day) const {
        const int page = m_dayNames != 0 ? m_plan.pageOf(day) : 0;
        if (page != 0)
            return base() + (m_dayNames == 1 ? core::dayFileName(day) : core::twoDigits(page)) + u".htm#"_s + day;
        if (m_isDivided && m_hasFrames)
            return core::GetBaseName(m_diaryUrl) + u"_D.htm#"_s + day;
        return m_diaryUrl + u'#' + day;
    }

private:
    /// Of a day that is not on the month file. Without frames a day's own file is given as one that hangs on that file.
    QString base() const {
        if (m_hasFrames && m_dayNames == 1)
            return m_diaryUrl.left(m_diaryUrl.lastIndexOf(u'/') + 1);
        return core::GetBaseName(m_diaryUrl) + (m_hasFrames ? u"_D_"_s : u"_"_s);
    }

    QString m_diaryUrl;
    bool m_hasFrames;
    bool m_isDivided = false;
    int m_dayNames = 0; ///< `UseFileName2Day`
    PagePlan m_plan;    ///< when days have other pages
};

QStringList daysOf(const std::vector<store::Entry>& entries) {
    QStringList days;
    for (const store::Entry& entry : entries) {
        if (days.isEmpty() || days.last() != entry.day)
            days += entry.day;
    }
    return days;
}

FeedItem itemOf(const store::Entry& entry, const QString& address, const convert::clsHTML2TEXT& converter) {
    QString html = entry.contents;
    QString plain = converter.Execute(html);
    plain.remove(u"\r\n"_s);
    FeedItem item;
    item.title = feedText(entry.title);
    item.genre = feedText(entry.genre.isNull() ? u"一般"_s : entry.genre);
    item.address = feedText(address);
    item.plain = feedText(XmlEscape(plain));
    item.excerpt = feedText(XmlEscape(plain.left(kExcerptLength)));
    item.contents = feedText(XmlEscape(entry.contents));
    item.publishTime = entry.publishTime;
    return item;
}

} // namespace

clsRSSreader::clsRSSreader(const core::Run& run, const SiteSettings& settings)
    : m_session(run.session)
    , m_settings(settings)
    , m_store(run)
    , m_clock(run.clock) {}

bool clsRSSreader::Initialize(const QString& rssIniFile) {
    if (!platform::fileExists(rssIniFile))
        return false;
    m_diaryUrl = m_settings.text(keys::rss::kDiaryURL);
    m_channel.diaryUrl = feedText(m_diaryUrl);
    m_channel.title = feedText(m_settings.text(keys::rss::kTitle));
    m_channel.homeUrl = feedText(m_settings.text(keys::rss::kHPURL));
    m_channel.description = feedText(m_settings.text(keys::rss::kDescription));
    m_channel.managingAuthor = feedText(m_settings.text(keys::rss::kManagingAuthor));
    m_channel.webMaster = feedText(m_settings.text(keys::rss::kWebMaster));
    m_channel.author = feedText(m_settings.text(keys::rss::kAuthor));
    return !m_diaryUrl.isEmpty();
}

void clsRSSreader::SetFilePath(const QString& monthFile) {
    m_filePrefix = core::GetBaseName(monthFile);
}

void clsRSSreader::MakeRSS() {
    const std::optional<QString> lastDay = m_store.LatestPublicDay();
    if (!lastDay) {
        // The old ones would go on telling of entries that are private now. In every other case a feed takes its file's
        // place when it is made, so that a full disk leaves the old one.
        for (const QString& ending : endings())
            platform::removeFile(m_filePrefix + ending);
        throw platform::Failure(u"公開されている日記がないので、RSSを作成できません。"_s,
                                m_filePrefix + endings().first(), {},
                                u"公開する日記を書くか、RSSの設定を切ってください。ページは変更されていません。"_s);
    }
    if (!platform::fileExists(core::files::kFeedHtmlToText.in(m_session))) {
        // A writer stops after the opening of its file.
        for (const QString& ending : endings())
            write(ending, {});
        return;
    }
    const std::vector<FeedItem> items = readItems(*lastDay);
    const QDateTime now = m_clock.now();
    write(endings()[0], rss091(m_channel, items, now));
    write(endings()[1], rss100(m_channel, items, now));
    write(endings()[2], rss200(m_channel, items, now));
    write(endings()[3], atom(m_channel, items, now));
}

const QStringList& clsRSSreader::endings() {
    static const QStringList kEndings{u"_RSS091.xml"_s, u"_RSS100.xml"_s, u"_RSS200.xml"_s, u"_ATOM.xml"_s};
    return kEndings;
}

std::vector<FeedItem> clsRSSreader::readItems(const QString& lastDay) const {
    convert::clsHTML2TEXT converter;
    converter.Initialize(platform::existingPath(core::files::kFeedHtmlToText.in(m_session)));
    const std::vector<store::Entry> entries = m_store.EntriesForFeed(lastDay.left(7));
    const ItemAddresses addresses(m_settings, m_diaryUrl, daysOf(entries));
    std::vector<FeedItem> items;
    for (const store::Entry& entry : entries) {
        if (items.size() == kMaxItems)
            break;
        const QString address = addresses.address(entry.day) + u'_' + QString::number(entry.number);
        items.push_back(itemOf(entry, address, converter));
    }
    return items;
}

void clsRSSreader::write(const QString& ending, const QString& text) const {
    platform::replaceFile(m_filePrefix + ending, encodeFeed(text), platform::Durability::Derived);
}

} // namespace velloria::site
