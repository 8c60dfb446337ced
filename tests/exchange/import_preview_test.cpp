#include "exchange/import_preview.h"

#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class ImportPreview : public TestHome {
protected:
    ImportPreview() { startAt(u"2026/11/23 10:00:00"_s); }

    std::optional<QString> begin(const QStringList& days, const QString& notes = {},
                                 const QString& program = u"Larkport"_s) {
        return exchange::beginImport(run, {program, days, notes});
    }
    /// The question that a plan leads to; it is answered No.
    QString questionOf(const QStringList& days, const QString& notes = {}) {
        desk.answers = {u"no"_s};
        EXPECT_EQ(begin(days, notes), std::nullopt);
        return boxes().last();
    }
    static QStringList daysOfMay(int count) {
        QStringList days;
        for (int day = 1; day <= count; ++day)
            days += u"2004/05/%1"_s.arg(day, 2, 10, QChar(u'0'));
        return days;
    }
};

TEST_F(ImportPreview, TellsHowManyEntriesOfWhichDaysComeAndWhatStaysBehind) {
    EXPECT_EQ(questionOf({u"2004/05/07"_s, u"2004/05/06"_s, u"2004/05/07"_s}),
              u"question: Larkportから3件の日記をインポートします。\r\n"
              "日付: 2004/05/06, 2004/05/07 (2日)\r\n\r\n"
              "インポートしますか？"_s);
    EXPECT_EQ(questionOf({u"2004/05/07"_s}, u"コメント 2件\r\nトラックバック 1件"_s),
              u"question: Larkportから1件の日記をインポートします。\r\n"
              "日付: 2004/05/07 (1日)\r\n"
              "コメント 2件\r\nトラックバック 1件\r\n\r\n"
              "インポートしますか？"_s);
}

TEST_F(ImportPreview, NamesTenDaysEachAndOfMoreTheFirstAndTheLast) {
    EXPECT_TRUE(questionOf(daysOfMay(10)).contains(u"日付: "_s + daysOfMay(10).join(u", "_s) + u" (10日)"_s));
    QStringList backwards = daysOfMay(11);
    std::ranges::reverse(backwards);
    EXPECT_TRUE(questionOf(backwards).contains(u"日付: 2004/05/01～2004/05/11 (11日)"_s));
}

TEST_F(ImportPreview, TellsHowManyOfTheDaysHaveEntries) {
    write(u"2004/05/06"_s, u"first"_s);
    write(u"2004/05/06"_s, u"second"_s);
    write(u"2004/05/09"_s, u"another"_s);
    EXPECT_FALSE(questionOf({u"2004/05/07"_s}).contains(u"すでに日記がある日"_s));
    EXPECT_TRUE(questionOf({u"2004/05/06"_s, u"2004/05/06"_s, u"2004/05/07"_s})
                    .contains(u"すでに日記がある日: 1日 (今の日記の後ろに追加します)"_s));
    EXPECT_TRUE(questionOf(daysOfMay(20)).contains(u"すでに日記がある日: 2日"_s));
}

TEST_F(ImportPreview, GivesEachImportOfADateAGroupOfItsOwn) {
    const auto mark = [&](const QString& program) {
        desk.answers = {u"yes"_s};
        return begin({u"2004/05/06"_s}, {}, program);
    };
    const auto bring = [&](const QString& group) {
        store::Entry entry = entryOf(u"2004/05/06"_s, u"t"_s);
        entry.importMark = group;
        write(entry);
    };
    EXPECT_EQ(mark(u"Larkport"_s), u"2026/11/23 Larkport"_s);
    EXPECT_EQ(mark(u"Larkport"_s), u"2026/11/23 Larkport"_s) << "nothing has come of the first one";
    bring(u"2026/11/23 Larkport"_s);
    EXPECT_EQ(mark(u"Larkport"_s), u"2026/11/23 Larkport(2)"_s);
    EXPECT_EQ(mark(u"Wrenport"_s), u"2026/11/23 Wrenport"_s);
    bring(u"2026/11/23 larkport（２）"_s); // compares equal for the engine, which would delete both
    EXPECT_EQ(mark(u"Larkport"_s), u"2026/11/23 Larkport(3)"_s);
    setNow(u"2026/11/24 00:00:00"_s);
    EXPECT_EQ(mark(u"Larkport"_s), u"2026/11/24 Larkport"_s);
}

TEST_F(ImportPreview, AsksNothingWhenTheDiaryCantBeRead) {
    writeFile(session.databaseFile(), "no diary");
    EXPECT_NE(failureOf([&] { begin({u"2004/05/06"_s}); }), QString());
    EXPECT_EQ(boxes(), QStringList());
}

} // namespace
} // namespace velloria::tests
