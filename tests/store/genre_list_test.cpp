#include "store/genre_list.h"

#include "platform/file_write.h"
#include "support/folder_turn.h"
#include "support/patience.h"
#include "support/test_home.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <thread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class GenreList : public TestHome {
protected:
    QString file() const { return session.DataPath + u"Genre.csv"_s; }
    QStringList read() const { return store::readGenres(run); }
    void add(const QStringList& genres) const { store::addGenres(run, genres); }
    void writeGenre(const QString& genre) {
        store::Entry entry = entryOf(u"2004/05/06"_s, u"x"_s);
        entry.genre = genre;
        write(entry);
    }
};

TEST_F(GenreList, IsMadeFromTheDiaryWhenItIsMissing) {
    writeGenre(u"旅"_s);
    writeGenre(u"本"_s);
    EXPECT_EQ(read(), (QStringList{u"一般"_s, u"本"_s, u"旅"_s}));
    EXPECT_EQ(bytesOf(file()), "\x88\xEA\x94\xCA\r\n\x96\x7B\r\n\x97\xB7\r\n");
}

TEST_F(GenreList, OfAnEmptyDiaryHoldsTheDefaultGenre) {
    EXPECT_EQ(read(), QStringList{u"一般"_s});
    EXPECT_EQ(bytesOf(file()), "\x88\xEA\x94\xCA\r\n");
}

TEST_F(GenreList, IsReadInItsOwnOrder) {
    writeFile(file(), "b\r\na\r\n\x88\xEA\x94\xCA\n");
    EXPECT_EQ(read(), (QStringList{u"b"_s, u"a"_s, u"一般"_s}));
}

TEST_F(GenreList, IsMadeAnewInJapaneseOrder) {
    for (const QString& genre : {u"山"_s, u"あ"_s, u"Ａ"_s, u"a"_s, u"一般"_s, QString()})
        writeGenre(genre);
    writeFile(file(), "old\r\n");
    store::MakeGenretxt(run);
    EXPECT_EQ(read(), (QStringList{u"一般"_s, u"Ａ"_s, u"あ"_s, u"山"_s}));
}

TEST_F(GenreList, TwoProgramsAddToItAndNoGenreIsLost) {
    const auto addMany = [&](const QString& who) {
        for (int i = 0; i < 40; ++i)
            add({who + QString::number(i)});
    };
    std::thread other(addMany, u"other"_s);
    addMany(u"one"_s);
    other.join();
    EXPECT_EQ(read().size(), 81);
}

TEST_F(GenreList, IsMadeInTurnWithOtherPrograms) {
    EXPECT_TRUE(waitsForTurn(session.DataPath, [&] { store::MakeGenretxt(run); }));
}

TEST_F(GenreList, TakesAGenreOnce) {
    add({u"旅"_s, u"旅"_s});
    EXPECT_EQ(read(), (QStringList{u"一般"_s, u"旅"_s}));
    const QByteArray before = bytesOf(file());
    add({u"旅"_s, u"一般"_s, u""_s, QString()});
    EXPECT_TRUE(bytesOf(file()) == before);
}

TEST_F(GenreList, IsNotRewrittenWhenItHoldsTheGenre) {
    const QByteArray byHand = "\x88\xEA\x94\xCA\nx\n\x85\xA0"; // LF, and a pair without a character
    writeFile(file(), byHand);
    add({u"x"_s});
    EXPECT_TRUE(bytesOf(file()) == byHand);
}

TEST_F(GenreList, ComparesAsTheDiaryDoes) {
    add({u"Ａnime"_s, u"ｶﾞ"_s});
    add({u"anime"_s, u"ANIME"_s, u"ガ"_s, u"が"_s, u"か"_s});
    EXPECT_EQ(read(), (QStringList{u"一般"_s, u"Ａnime"_s, u"ｶﾞ"_s, u"か"_s}));
}

TEST_F(GenreList, KnowsAgainWhatTheCodePageChanges) {
    const QStringList genres{u"café"_s,          u"😀"_s,      u"2〜3"_s, u"a−b—c‖d"_s, u"¥"_s,
                             u"&#233;t&#233;"_s, u"a\r\nb"_s, u"c\nd"_s};
    add(genres);
    const QByteArray before = bytesOf(file());
    EXPECT_EQ(read().size(), genres.size() + 1);
    EXPECT_EQ(read().at(1), u"café"_s);
    for (const QString& genre : genres)
        add({genre});
    EXPECT_TRUE(bytesOf(file()) == before) << bytesOf(file()).constData();
}

TEST_F(GenreList, OfAWindowsDiskIsTheOneThatGrows) {
    writeFile(session.DataPath + u"GENRE.CSV"_s, "\x88\xEA\x94\xCA\r\n");
    add({u"x"_s});
    EXPECT_EQ(read(), (QStringList{u"一般"_s, u"x"_s}));
    EXPECT_FALSE(exists(file()));
}

TEST_F(GenreList, IsRefusedAloudWhereItCantBeWritten) {
    ASSERT_TRUE(QDir().mkdir(file()));
    EXPECT_THROW(store::MakeGenretxt(run), platform::Failure);
}

TEST_F(GenreList, ThatCantBeReadIsNotReplaced) {
    ASSERT_TRUE(QFile::link(u"/proc/self/mem"_s, file())); // there, and its first bytes are an error
    EXPECT_THROW(read(), platform::Failure);
    EXPECT_THROW(add({u"旅"_s}), platform::Failure);
    EXPECT_EQ(QFileInfo(file()).symLinkTarget(), u"/proc/self/mem"_s);
}

TEST_F(GenreList, BehindALinkThatLeadsNowhereIsNamedWithBothEnds) {
    ASSERT_TRUE(QFile::link(path(u"gone/Genre.csv"_s), file()));
    const QString failure = failureOf([&] { add({u"旅"_s}); });
    EXPECT_TRUE(failure.contains(file()) && failure.contains(path(u"gone/Genre.csv"_s))) << failure.toStdString();
    EXPECT_FALSE(exists(path(u"gone"_s)));
}

TEST_F(GenreList, TakesTwentyThousandGenresInATimeThatGrowsWithThem) {
    const auto secondsFor = [&](int count) {
        QStringList genres;
        for (int i = 0; i < count; ++i)
            genres += u"ジャンル%1"_s.arg(i);
        platform::removeFile(file());
        const double start = processorSeconds();
        add(genres);
        EXPECT_EQ(read().size(), count + 1);
        return processorSeconds() - start;
    };
    secondsFor(2'000);
    const double few = secondsFor(4'000);
    EXPECT_LT(secondsFor(20'000), 15 * few) << "five times as many";
}

TEST_F(GenreList, IsToldWhenItsCommandHasMadeIt) {
    writeGenre(u"旅"_s);
    writeFile(file(), "old\r\n");
    desk.events = {};
    store::genreCommand(desk, [this] { store::MakeGenretxt(run); });
    EXPECT_EQ(read(), (QStringList{u"一般"_s, u"旅"_s}));
    EXPECT_EQ(told(), (QStringList{u"status: ジャンルの再構成が完了しました。"_s, u"message: 完了！"_s}));
    EXPECT_EQ(boxes(), QStringList{u"information: 完了！"_s});
    desk.events = {};
    EXPECT_THROW(store::genreCommand(desk, [] { throw platform::Failure(u"x"_s, u""_s, u""_s); }), platform::Failure);
    EXPECT_EQ(told(), QStringList());
}

} // namespace
} // namespace velloria::tests
