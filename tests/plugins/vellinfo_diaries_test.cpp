// The figures of random diaries beside those that a small count of its own comes to. The entries are put together from
// pieces of which it is known what a person sees.
#include "plugins/information_home.h"

#include <QDate>
#include <QRandomGenerator>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

struct Piece {
    QString html;
    int characters;
    QStringList words; ///< each begins with K for kanji, T for katakana, L for Latin
    int pictures = 0;
};

const QList<Piece> kPieces = {
    {u"雨が降った。"_s, 6, {}},
    {u"<p class=\"a>b\">東京都内</p>\r\n"_s, 4, {u"K東京都内"_s}},
    {u"<b>大</b>阪&amp;"_s, 3, {u"K大阪"_s}},
    {u"コーヒー、"_s, 5, {u"Tコーヒー"_s}},
    {u"Velloria's VELLORIA'S. "_s, 21, {u"Lvelloria's"_s, u"Lvelloria's"_s}},
    {u"<!-- 隠れた文字 --><script>var a = '<b>漢字漢字';</script>"_s, 0, {}},
    {u"<img src=x.gif alt=\"画像\"><br>"_s, 0, {}, 1},
    {u"&#26085;&#x672c;&nbsp;&lt;"_s, 3, {u"K日本"_s}},
    {u"1 < 2 &unknown; "_s, 12, {u"Lunknown"_s}},
    {u"　\r\n 食べ物 "_s, 3, {}},
    {u"図書館</td>テレビ<td>"_s, 6, {u"K図書館"_s, u"Tテレビ"_s}},
};

struct Written {
    QString day; ///< "" for one that is none
    int hour = -1;
    QString genre;
    QString weather;
    bool isPrivate = false;
    quint64 characters = 0;
    quint64 pictures = 0;
};

struct Count {
    quint64 entries = 0;
    quint64 characters = 0;
    quint64 pictures = 0;
    QSet<QString> days;

    void add(const Written& entry) {
        ++entries;
        characters += entry.characters;
        pictures += entry.pictures;
        if (!entry.day.isEmpty())
            days.insert(entry.day);
    }
};

class RandomDiaries : public InformationHome, public testing::WithParamInterface<int> {
protected:
    RandomDiaries()
        : random(quint32(GetParam())) {}

    int below(int limit) { return random.bounded(limit); }

    /// Both texts of an entry, counted.
    QString texts(Written& entry) {
        QString html;
        for (int count = below(12); count > 0; --count) {
            const Piece& piece = kPieces[below(int(kPieces.size()))];
            html += piece.html;
            entry.characters += quint64(piece.characters);
            entry.pictures += quint64(piece.pictures);
            for (const QString& word : piece.words)
                ++words[word];
        }
        return html;
    }

    void makeDiary(int count) {
        const QDate first(1990 + below(40), 1 + below(12), 1 + below(28));
        const int span = 1 + below(GetParam() % 3 == 0 ? 40'000 : 800);
        const int genres = 1 + below(30);
        QStringList rows;
        for (int at = 0; at < count; ++at) {
            Written entry;
            const QDate date = first.addDays(below(span));
            const bool isDated = below(20) > 0;
            const QString day = isDated ? date.toString(u"yyyy/MM/dd"_s) : u"2004/02/30"_s;
            entry.day = isDated ? day : QString();
            entry.hour = below(10) ? below(24) : -1;
            entry.genre = u"ジャンル<%1>"_s.arg(below(genres));
            entry.weather = QStringList{u"晴"_s, u"曇"_s, u"雨"_s, u"-"_s}[below(4)];
            entry.isPrivate = below(5) == 0;
            const QString contents = texts(entry);
            const QString extend = below(3) ? u"NULL"_s : quoted(texts(entry));
            const QString time =
                entry.hour < 0 ? u"NULL"_s : quoted(u"2026/01/01 %1:59:59"_s.arg(entry.hour, 2, 10, QChar(u'0')));
            rows += u"(%1,%2,%3,%4,%5,%6,%7,%8)"_s.arg(quoted(day), QString::number(at + 1), quoted(contents), extend,
                                                       quoted(entry.weather), quoted(entry.genre), time,
                                                       QString::number(int(entry.isPrivate)));
            written += entry;
        }
        sql(u"INSERT INTO Contents (Day, Number, Contents, Extend, Weather, Genre, PublishTime, Private) VALUES "_s +
            rows.join(u','));
    }

    template <typename Key>
    QMap<QString, Count> countsBy(Key key) const {
        QMap<QString, Count> counts;
        for (const Written& entry : written)
            counts[key(entry)].add(entry);
        counts.remove(QString());
        return counts;
    }

    Count all() const {
        Count count;
        for (const Written& entry : written)
            count.add(entry);
        return count;
    }

    /// Rows of which nothing is counted may stand there as well.
    static void expectRows(const InformationTable& table, const QMap<QString, Count>& counts) {
        Count sum;
        for (auto at = counts.begin(); at != counts.end(); ++at) {
            EXPECT_EQ(table.at(at.key(), u"日記"_s), at->entries) << at.key().toStdString();
            EXPECT_EQ(table.at(at.key(), u"文字"_s), at->characters) << at.key().toStdString();
            if (table.heads.contains(u"画像"_s)) {
                EXPECT_EQ(table.at(at.key(), u"日"_s), quint64(at->days.size())) << at.key().toStdString();
                EXPECT_EQ(table.at(at.key(), u"画像"_s), at->pictures) << at.key().toStdString();
            }
            sum.entries += at->entries;
            sum.characters += at->characters;
        }
        EXPECT_EQ(table.sumOf(table.heads.indexOf(u"日記"_s)), sum.entries);
        EXPECT_EQ(table.sumOf(table.heads.indexOf(u"文字"_s)), sum.characters);
    }

    /// The numbers of each column come to what its last row says, where that is a number of the same kind.
    static void expectSums(const InformationPage& page) {
        for (auto table = page.tables.begin(); table != page.tables.end(); ++table) {
            for (qsizetype column = 1; column < table->sums.size(); ++column) {
                const QString head = table->heads[column];
                if (table->sums[column].isEmpty() || head == u"割合"_s || head == u"1件の文字"_s)
                    continue;
                EXPECT_EQ(table->sumOf(column), InformationTable::number(table->sums[column]))
                    << table.key().toStdString() << ' ' << head.toStdString();
            }
        }
    }

    QRandomGenerator random;
    QList<Written> written;
    QMap<QString, quint64> words;
};

TEST_P(RandomDiaries, HaveTheFiguresOfAnotherCount) {
    makeDiary(1 + below(300));
    const InformationPage page = this->page();
    const Count total = all();
    const auto figure = [&](const QString& id) {
        return InformationTable::number(QString(page.texts[id]).remove(QRegularExpression(u"[^0-9]"_s)));
    };
    EXPECT_EQ(figure(u"entries"_s), total.entries);
    EXPECT_EQ(figure(u"days"_s), quint64(total.days.size()));
    EXPECT_EQ(figure(u"characters"_s), total.characters);
    EXPECT_EQ(figure(u"pictures-count"_s), total.pictures);
    EXPECT_EQ(page.dumbDrawings, 0);
    expectSums(page);

    const quint64 undated = quint64(
        std::count_if(written.begin(), written.end(), [](const Written& entry) { return entry.day.isEmpty(); }));
    EXPECT_EQ(figure(u"undated"_s), undated);
    const auto nameIfDated = [](const Written& entry, const QString& name) {
        return entry.day.isEmpty() ? QString() : name;
    };
    if (!total.days.isEmpty()) {
        expectRows(page.tables[u"t-years"_s],
                   countsBy([&](const Written& entry) { return nameIfDated(entry, entry.day.left(4) + u'年'); }));
        expectRows(page.tables[u"t-weekdays"_s], countsBy([&](const Written& entry) {
                       const QDate date = QDate::fromString(entry.day, u"yyyy/MM/dd"_s);
                       return nameIfDated(entry, u"月火水木金土日"_s.mid(date.dayOfWeek() - 1, 1));
                   }));
    }
    expectRows(page.tables[u"t-hours"_s], countsBy([](const Written& entry) {
                   return entry.hour < 0 ? u"時刻なし"_s : QString::number(entry.hour) + u'時';
               }));
    expectRows(page.tables[u"t-weathers"_s], countsBy([](const Written& entry) { return entry.weather; }));
    expectRows(page.tables[u"t-private"_s],
               countsBy([](const Written& entry) { return entry.isPrivate ? u"非公開"_s : u"公開"_s; }));

    const auto months = countsBy([](const Written& entry) { return entry.day.left(7); });
    for (auto at = months.begin(); at != months.end(); ++at) {
        const QString year = at.key().left(4) + u'年';
        const QString month = QString::number(at.key().mid(5).toInt()) + u'月';
        EXPECT_EQ(page.tables[u"t-months"_s].at(year, month), at->entries);
        EXPECT_EQ(page.tables[u"t-months-characters"_s].at(year, month), at->characters);
    }
    const auto days = countsBy([](const Written& entry) { return entry.day; });
    quint64 ofCalendars = 0;
    for (auto at = page.tables.begin(); at != page.tables.end(); ++at)
        ofCalendars += at.key().startsWith(u"t-heat"_s) ? InformationTable::number(at->sums.last()) : 0;
    quint64 ofDays = 0;
    for (auto at = days.begin(); at != days.end(); ++at) {
        const QStringList parts = at.key().split(u'/');
        EXPECT_EQ(page.tables[u"t-heat-"_s + parts[0]].at(QString::number(parts[1].toInt()) + u'月',
                                                          QString::number(parts[2].toInt())),
                  at->characters)
            << at.key().toStdString();
        ofDays += at->characters;
    }
    EXPECT_EQ(ofCalendars, ofDays);
}

TEST_P(RandomDiaries, HaveTheNamesRunsAndWordsOfAnotherCount) {
    makeDiary(1 + below(300));
    const InformationPage page = this->page();

    // Genres: the first fifteen, the others as one.
    const InformationTable& genres = page.tables[u"t-genres"_s];
    const auto counts = countsBy([](const Written& entry) { return entry.genre; });
    quint64 ofNamed = 0;
    for (const QStringList& row : genres.rows) {
        if (row[0] == u"そのほか"_s)
            continue;
        EXPECT_EQ(InformationTable::number(row[1]), counts[row[0]].entries) << row[0].toStdString();
        ofNamed += InformationTable::number(row[1]);
    }
    EXPECT_EQ(genres.rows.size(), qMin<qsizetype>(counts.size(), 16));
    EXPECT_EQ(genres.sumOf(1), quint64(written.size()));
    EXPECT_EQ(genres.rows.last()[0] == u"そのほか"_s, ofNamed < quint64(written.size()));

    // The course of the weathers.
    const InformationTable& course = page.tables[u"t-weathers-course"_s];
    const QSet<QString> days = all().days;
    for (const Written& weather : days.isEmpty() ? QList<Written>() : written) {
        quint64 dated = 0;
        for (const Written& entry : written)
            dated += !entry.day.isEmpty() && entry.weather == weather.weather;
        EXPECT_EQ(course.sumOf(course.heads.indexOf(weather.weather)), dated);
    }

    // Runs of days.
    QList<int> runs;
    for (const QString& day : days) {
        const auto neighbour = [&](int step) {
            return days.contains(QDate::fromString(day, u"yyyy/MM/dd"_s).addDays(step).toString(u"yyyy/MM/dd"_s));
        };
        if (neighbour(-1))
            continue;
        int length = 1;
        while (neighbour(length))
            ++length;
        runs += length;
    }
    std::sort(runs.rbegin(), runs.rend());
    const InformationTable& shown = page.tables[u"t-runs"_s];
    ASSERT_EQ(shown.rows.size(), qMin<qsizetype>(runs.size(), 3));
    for (qsizetype at = 0; at < shown.rows.size(); ++at)
        EXPECT_EQ(shown.rows[at][0], QString::number(runs[at]) + u'日');

    // The longest and shortest entries.
    QList<quint64> lengths;
    for (const Written& entry : written)
        if (entry.characters > 0)
            lengths += entry.characters;
    std::sort(lengths.begin(), lengths.end());
    const qsizetype named = qMin<qsizetype>(lengths.size(), 5);
    ASSERT_EQ(page.tables[u"t-longest"_s].rows.size(), named);
    for (qsizetype at = 0; at < named; ++at) {
        EXPECT_EQ(page.tables[u"t-shortest"_s].rows[at][0], QString::number(lengths[at]) + u'字');
        EXPECT_EQ(page.tables[u"t-longest"_s].rows[at][0], QString::number(lengths[lengths.size() - 1 - at]) + u'字');
    }

    // Words.
    QMap<QString, quint64> found;
    for (const auto& [id, mark] : {std::pair{u"t-kanji"_s, u'K'}, {u"t-katakana"_s, u'T'}, {u"t-latin"_s, u'L'}})
        for (const QStringList& row : page.tables[id].rows)
            found[mark + row[0]] = InformationTable::number(row[1]);
    EXPECT_EQ(found, words);
}

INSTANTIATE_TEST_SUITE_P(Of, RandomDiaries, testing::Range(0, 30));

} // namespace
} // namespace velloria::tests
