// How the diary compares texts: genres, import marks, the find, and values that an operation refuses.
#include "store/diary_store.h"

#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::Entry;
using store::Period;
using store::PublishTime;
using store::SortDirection;

class DiaryText : public TestHome {
protected:
    void add(const QString& day, const QString& title, const QString& contents, const QString& genre = u"一般"_s) {
        Entry entry = entryOf(day, title);
        entry.contents = contents;
        entry.genre = genre;
        write(entry);
    }
    void addGenres(const QStringList& genres) {
        for (const QString& genre : genres)
            add(u"2004/05/06"_s, u"x"_s, u""_s, genre);
    }
    QStringList find(const QString& word, const std::optional<QString>& genre = std::nullopt) const {
        QStringList titles;
        diary().FindEntries({word, genre}, [&](Entry& entry) { titles += entry.title; });
        return titles;
    }
};

TEST_F(DiaryText, KeepsAMarkInFrontOfEveryText) {
    Entry entry = entryOf(u"2004/05/06"_s, u"\uFEFF題"_s);
    entry.contents = u"\uFEFF\uFEFF<P>"_s;
    entry.extend = u"\uFEFF"_s;
    entry.excerpt = u"\uFEFFx"_s;
    entry.weather = u"\uFEFF-"_s;
    entry.genre = u"\uFEFF旅"_s;
    entry.publishTime = u"\uFEFF2004"_s;
    entry.importMark = u"\uFEFFm"_s;
    write(entry);
    for (int i = 0; i < 3; ++i) { // loaded and saved, it is still the same
        const Entry read = *diary().LoadEntry(u"2004/05/06"_s, 1);
        EXPECT_EQ(read.title, entry.title);
        EXPECT_EQ(read.contents, entry.contents);
        EXPECT_EQ(read.extend, entry.extend);
        EXPECT_EQ(read.excerpt, entry.excerpt);
        EXPECT_EQ(read.weather, entry.weather);
        EXPECT_EQ(read.genre, entry.genre);
        EXPECT_EQ(read.publishTime, entry.publishTime);
        EXPECT_EQ(read.importMark, entry.importMark);
        write(read);
    }
}

TEST_F(DiaryText, TellsAMarkInFrontFromNone) {
    addGenres({u"旅"_s, u"\uFEFF旅"_s, u"\uFEFF"_s});
    add(u"2004/05/07"_s, u"marked"_s, u"\uFEFFa"_s);
    add(u"2004/05/07"_s, u"plain"_s, u"a"_s);
    EXPECT_EQ(diary().ListGenres().size(), 3);
    EXPECT_EQ(find(u"\uFEFF"_s), QStringList{u"marked"_s});
    EXPECT_EQ(find(u"a"_s, u"\uFEFF一般"_s), QStringList());
    EXPECT_EQ(find(u"a"_s).size(), 2);
    EXPECT_EQ(sqlValue(u"SELECT 'a' = (SELECT Contents COLLATE JET FROM Contents WHERE Title = 'marked')"_s), u"0"_s);
}

TEST_F(DiaryText, ListsGenresInJapaneseOrderWithoutTheDefaultOne) {
    addGenres({u"山"_s, u"は"_s, u"ば"_s, u"一般"_s, u"Zoo"_s, u"ぱ"_s, u"あ"_s, u"b"_s, QString(), u"10"_s, u"2"_s});
    EXPECT_EQ(diary().ListGenres(),
              (QStringList{u"10"_s, u"2"_s, u"b"_s, u"Zoo"_s, u"あ"_s, u"は"_s, u"ば"_s, u"ぱ"_s, u"山"_s}));
}

TEST_F(DiaryText, GroupsGenresThatCompareEqualUnderTheirFirstSpelling) {
    addGenres({u"Ａ"_s, u"a"_s, u"A"_s, u"ｱﾆﾒ"_s, u"アニメ"_s, u"あにめ"_s, u"ガ"_s, u"ｶﾞ"_s, u"か"_s, u"a b"_s,
               u"a\u3000b"_s});
    EXPECT_EQ(diary().ListGenres(), (QStringList{u"Ａ"_s, u"a b"_s, u"ｱﾆﾒ"_s, u"か"_s, u"ガ"_s}));
}

TEST_F(DiaryText, ListsAnEmptyGenreLikeAnyOther) {
    addGenres({u""_s, u"旅"_s});
    EXPECT_EQ(diary().ListGenres(), (QStringList{u""_s, u"旅"_s}));
}

TEST_F(DiaryText, ListsImportsLastFirstWithoutHandwrittenRows) {
    for (const QString& mark :
         {u"2004/05/01 a"_s, u"2004/05/03"_s, u""_s, u"2004/05/01 Ａ"_s, u"2004/05/02"_s, QString()}) {
        Entry entry = entryOf(u"2004/05/06"_s, u"x"_s);
        entry.importMark = mark;
        write(entry);
    }
    sql(u"UPDATE Contents SET ImportMark = NULL WHERE Number = 6"_s);
    EXPECT_EQ(diary().ListImportBatches(), (QStringList{u"2004/05/03"_s, u"2004/05/02"_s, u"2004/05/01 a"_s}));
}

TEST_F(DiaryText, FindsAWordInTitleOrContents) {
    add(u"2004/05/06"_s, u"海"_s, u"泳いだ"_s);
    add(u"2004/05/06"_s, u"山"_s, u"海が見えた"_s);
    add(u"2004/05/07"_s, u"雨の海辺"_s, u""_s);
    add(u"2004/05/08"_s, u"家"_s, u""_s);
    EXPECT_EQ(find(u"海"_s), (QStringList{u"雨の海辺"_s, u"海"_s, u"山"_s}));
    EXPECT_EQ(find(u"空"_s), QStringList());
    EXPECT_EQ(find(u""_s).size(), 4);
}

TEST_F(DiaryText, FindsWithoutRegardToCaseWidthAndKana) {
    add(u"2004/05/06"_s, u"1"_s, u"ＴＯＫＹＯタワー"_s);
    for (const QString& word : {u"tokyo"_s, u"Ｔｏｋｙｏ"_s, u"たわー"_s, u"ﾀﾜｰ"_s, u"tokyoた"_s})
        EXPECT_EQ(find(word), QStringList{u"1"_s}) << word.toStdString();
    for (const QString& word : {u"だわー"_s, u"タワ-"_s, u"tokio"_s})
        EXPECT_EQ(find(word), QStringList()) << word.toStdString();
}

TEST_F(DiaryText, FindsByGenreInBothHalves) {
    add(u"2004/05/06"_s, u"海 1"_s, u""_s, u"旅"_s);
    add(u"2004/05/07"_s, u"海 2"_s, u""_s, u"本"_s);
    add(u"2004/05/08"_s, u"3"_s, u"海"_s, u"旅行"_s);
    EXPECT_EQ(find(u"海"_s, u"旅"_s), QStringList{u"海 1"_s});
    EXPECT_EQ(find(u"海"_s, u"旅%"_s), (QStringList{u"3"_s, u"海 1"_s}));
    EXPECT_EQ(find(u"海"_s, u"%"_s).size(), 3);
    EXPECT_EQ(find(u"海"_s, u""_s), QStringList());
}

TEST_F(DiaryText, FindsNoMissingGenreByTheDefaultOne) {
    add(u"2004/05/06"_s, u"海"_s, u""_s, QString());
    add(u"2004/05/07"_s, u"海辺"_s, u""_s);
    EXPECT_EQ(find(u"海"_s, u"一般"_s), QStringList{u"海辺"_s});
    EXPECT_EQ(find(u"海"_s, u"%"_s), QStringList{u"海辺"_s});
    EXPECT_EQ(find(u"海"_s).size(), 2);
}

TEST_F(DiaryText, FindsNothingInMissingTexts) {
    sql(u"INSERT INTO Contents (Day, Number, Title) VALUES ('2004/05/06', 1, 'a'), ('2004/05/06', 2, NULL)"_s);
    EXPECT_EQ(find(u"a"_s), QStringList{u"a"_s});
    EXPECT_EQ(find(u""_s), QStringList{u"a"_s});
}

TEST_F(DiaryText, TakesWildcardsInAWord) {
    add(u"2004/05/06"_s, u"1"_s, u"50% off"_s);
    add(u"2004/05/07"_s, u"2"_s, u"500 yen off"_s);
    add(u"2004/05/08"_s, u"3"_s, u"a_b [x]"_s);
    EXPECT_EQ(find(u"50%off"_s), (QStringList{u"2"_s, u"1"_s}));
    EXPECT_EQ(find(u"50[%]"_s), QStringList{u"1"_s});
    EXPECT_EQ(find(u"50_ yen"_s), QStringList{u"2"_s});
    EXPECT_EQ(find(u"a[_]b"_s), QStringList{u"3"_s});
    EXPECT_EQ(find(u"[[]x]"_s), QStringList{u"3"_s});
    EXPECT_EQ(find(u"[0-9][!0-9]"_s), (QStringList{u"2"_s, u"1"_s}));
}

TEST_F(DiaryText, RefusesALoneBracketWhateverTheDiaryHolds) {
    EXPECT_THROW(find(u"a["_s), platform::Failure);
    add(u"2004/05/06"_s, u"a["_s, u"a["_s);
    EXPECT_THROW(find(u"a["_s), platform::Failure);
    EXPECT_THROW(find(u"zzz"_s, u"["_s), platform::Failure);
    EXPECT_THROW(diary().DaysOfMonth(u"2004/["_s), platform::Failure);
    const QString failure = failureOf([&] { find(u"["_s); });
    EXPECT_TRUE(failure.contains(session.databaseFile())) << failure.toStdString();
    EXPECT_TRUE(failure.contains(u"「[」に対応する「]」がありません"_s)) << failure.toStdString();
}

TEST_F(DiaryText, RefusesADoubleQuoteAndChangesNothing) {
    add(u"2004/05/06"_s, u"x"_s, u"y"_s);
    const QString bad = u"2004\"/05"_s;
    Entry entry = entryOf(bad, u"x"_s);
    const store::DiaryStore store = diary();
    const QByteArray before = bytesOf(session.databaseFile());
    const auto pass = [](store::Entry&, int) {};
    const std::function<void()> operations[] = {
        [&] { store.LoadDay(bad); },
        [&] { store.LoadEntry(bad, 1); },
        [&] {
            store.saveEntries({entryOf(u"2004/05/06"_s, u"good"_s), entry}, PublishTime::Now, {});
        },
        [&] { store.DeleteEntry(bad, 1); },
        [&] { store.DeleteImportBatch(bad); },
        [&] { store.repairDay(bad); },
        [&] { store.SameDayInOtherYears(bad); },
        [&] { store.SameDayEntries(bad); },
        [&] { store.DaysOfMonth(bad); },
        [&] { store.PublicDaysOfMonth(bad); },
        [&] { store.EntriesOfMonth(bad); },
        [&] { store.PublicEntriesOfMonth(bad); },
        [&] { store.EntryListOfMonth(bad); },
        [&] { store.EntriesForFeed(bad); },
        [&] {
            store.FindEntries({bad, {}}, [](Entry&) {});
        },
        [&] {
            store.FindEntries({u"x"_s, bad}, [](Entry&) {});
        },
        [&] {
            store.ExportEntries({Period::Kind::Day, bad, {}}, SortDirection::Ascending, pass);
        },
        [&] {
            store.ExportEntries({Period::Kind::Month, bad, {}}, SortDirection::Ascending, pass);
        },
        [&] {
            store.ExportEntries({Period::Kind::Between, u"2004"_s, bad}, SortDirection::Ascending, pass);
        },
    };
    int number = 0;
    for (const auto& operation : operations) {
        const QString failure = failureOf(operation);
        EXPECT_TRUE(failure.contains(session.databaseFile())) << number << failure.toStdString();
        EXPECT_TRUE(bytesOf(session.databaseFile()) == before) << number;
        ++number;
    }
}

TEST_F(DiaryText, TakesADoubleQuoteWhereAValueIsOnlyStored) {
    Entry entry = entryOf(u"2004/05/06"_s, u"\"a\""_s);
    entry.genre = entry.importMark = entry.contents = u"\""_s;
    write(entry);
    EXPECT_EQ(diary().LoadDay(u"2004/05/06"_s).front().title, u"\"a\""_s);
    EXPECT_EQ(diary().ListGenres(), QStringList{u"\""_s});
}

} // namespace
} // namespace velloria::tests
