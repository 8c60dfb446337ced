#include "browser/search_sites.h"

#include "convert/url_encoding.h"
#include "core/program_keys.h"
#include "core/settings.h"

#include <iterator>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

enum class Blanks { AsTheyAre, ToPlus };

struct SearchSite {
    QStringView name;
    Blanks blanks;
    QString (*encode)(const QString&); ///< none: the words go as they are
    QStringView query;                 ///< "{q}" is where the words come
};

// Where blanks become "+" before the encoder they arrive as "%2B"; the sites were always asked like that.
constexpr SearchSite kSites[] = {
    {u"Google(日本語)", Blanks::ToPlus, convert::ModURLEncode, u"/search?num=50&hl=ja&ie=Shift_JIS&oe=Shift_JIS&q={q}"},
    {u"Google (Web全体)", Blanks::ToPlus, nullptr, u"/search?num=50&hl=ja&q={q}"},
    {u"Yahoo! Japan", Blanks::ToPlus, convert::ModURLEncodeEUC, u"/bin/search?p={q}"},
    {u"Infoseek", Blanks::ToPlus, nullptr, u"/Titles?sv=JP&lk=noframes&rt=JG&svx=500&qt={q}"},
    {u"Goo", Blanks::ToPlus, convert::ModURLEncodeEUC, u"/web.jsp?MT={q}&IE=euc"},
    {u"goo[英和辞典]", Blanks::AsTheyAre, nullptr, u"/search.php?MT={q}&kind=ej"},
    {u"goo[和英辞典]", Blanks::AsTheyAre, convert::ModURLEncode, u"/search.php?MT={q}&kind=je"},
    {u"goo[国語辞典]", Blanks::AsTheyAre, convert::ModURLEncode, u"/search.php?MT={q}&kind=jn"},
    {u"Amazon", Blanks::AsTheyAre, convert::ModURLEncodeUTF8,
     u"/exec/obidos/external-search/{session}?mode=blended&tag={tag}&field-keywords={q}"},
};

} // namespace

QStringList searchSiteNames() {
    QStringList names;
    for (const SearchSite& site : kSites)
        names += site.name.toString();
    return names;
}

QString searchAddress(const core::Settings& settings, int index, const QString& words) {
    if (index < 0 || index >= int(std::size(kSites)))
        return {};
    const QString host = settings.text(core::named(core::keys::kSearchHost, QString::number(index)));
    if (host.isEmpty())
        return {};
    const SearchSite& site = kSites[index];
    QString query = words;
    if (site.blanks == Blanks::ToPlus)
        query.replace(u' ', u'+');
    if (site.encode)
        query = site.encode(query);
    QString address = host;
    address += site.query;
    address.replace(u"{session}"_s, settings.text(core::keys::kAmazonSession));
    address.replace(u"{tag}"_s, settings.text(core::keys::kAmazonTag));
    return address.replace(u"{q}"_s, query);
}

} // namespace velloria::browser
