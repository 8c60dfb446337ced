#include "browser/search_sites.h"

#include "core/ini.h"
#include "core/settings.h"
#include "support/test_home.h"

#include <QUrl>

using namespace Qt::StringLiterals;
using namespace velloria::browser;

namespace velloria::tests {
namespace {

class SearchSites : public FactoryHome {
protected:
    SearchSites() { session.MyPath = home.path() + u'/'; }

    QString search(int index, const QString& words) const {
        return searchAddress(core::Settings(session), index, words);
    }
};

TEST_F(SearchSites, AreNineInTheirOrder) {
    EXPECT_EQ(searchSiteNames(),
              (QStringList{u"Google(日本語)"_s, u"Google (Web全体)"_s, u"Yahoo! Japan"_s, u"Infoseek"_s, u"Goo"_s,
                           u"goo[英和辞典]"_s, u"goo[和英辞典]"_s, u"goo[国語辞典]"_s, u"Amazon"_s}));
}

TEST_F(SearchSites, GetTheWordsAsEachExpectsThem) {
    const QString words = u"亜 b"_s;
    EXPECT_EQ(search(0, words), u"https://search.example.com/search?num=50&hl=ja&ie=Shift_JIS&oe=Shift_JIS&q="
                                "%88%9F%2Bb"_s);
    EXPECT_EQ(search(1, words), u"https://search.example.com/search?num=50&hl=ja&q=亜+b"_s);
    EXPECT_EQ(search(2, words), u"https://portal.example.com/bin/search?p=%B0%A1%2Bb"_s);
    EXPECT_EQ(search(3, words), u"https://seek.example.com/Titles?sv=JP&lk=noframes&rt=JG&svx=500&qt=亜+b"_s);
    EXPECT_EQ(search(4, words), u"https://web.example.org/web.jsp?MT=%B0%A1%2Bb&IE=euc"_s);
    EXPECT_EQ(search(5, words), u"https://dictionary.example.org/search.php?MT=亜 b&kind=ej"_s);
    EXPECT_EQ(search(6, words), u"https://dictionary.example.org/search.php?MT=%88%9F+b&kind=je"_s);
    EXPECT_EQ(search(7, words), u"https://dictionary.example.org/search.php?MT=%88%9F+b&kind=jn"_s);
    EXPECT_EQ(search(8, words), u"https://shop.example.com/exec/obidos/external-search/000-0000000-0000000"
                                "?mode=blended&tag=example-22&field-keywords=%E4%BA%9C+b"_s);
}

TEST_F(SearchSites, TakeWordsThatLookLikeTheTablesOwnSigns) {
    EXPECT_EQ(search(8, u"{tag}{q}"_s), u"https://shop.example.com/exec/obidos/external-search/000-0000000-0000000"
                                        "?mode=blended&tag=example-22&field-keywords=%7Btag%7D%7Bq%7D"_s);
}

TEST_F(SearchSites, OutsideTheListGiveNoAddress) {
    EXPECT_EQ(search(9, u"a"_s), QString());
    EXPECT_EQ(search(-1, u"a"_s), QString());
    EXPECT_EQ(search(99, u"a"_s), QString());
}

TEST_F(SearchSites, WithoutAHostGiveNoAddress) {
    core::DeleteIniKey(path(u"endpoints.ini"_s), u"Search"_s, u"3"_s);
    EXPECT_EQ(search(3, u"a"_s), QString());
}

TEST_F(SearchSites, AreReachedByAddressesThatKeepTheirBytes) {
    const QUrl url = QUrl::fromEncoded(search(0, u"ア b"_s).toUtf8());
    EXPECT_TRUE(url.isValid());
    EXPECT_EQ(QByteArray::fromPercentEncoding(url.query(QUrl::FullyEncoded).toLatin1()),
              "num=50&hl=ja&ie=Shift_JIS&oe=Shift_JIS&q=\x83\x41+b");
    EXPECT_TRUE(url.query(QUrl::FullyEncoded).contains(u"%2B"_s));
}

} // namespace
} // namespace velloria::tests
