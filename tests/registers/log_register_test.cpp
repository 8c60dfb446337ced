#include "registers/log_register.h"

#include "support/test_home.h"

#include <thread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::LogRow;

class LogRegister : public TestHome {
protected:
    registers::LogRegister logs() const { return registers::LogRegister(session.databaseFile()); }

    QStringList rows() const {
        QStringList rows;
        for (const LogRow& row : logs().listLogs())
            rows += row.month + u' ' + row.fileName;
        return rows;
    }
};

TEST_F(LogRegister, ComesInTheOrderOfItsRows) {
    EXPECT_EQ(rows(), QStringList());
    logs().addLog({u"2004/05"_s, u"200405.htm"_s});
    logs().addLog({u"2004/03"_s, u"200403.htm"_s});
    logs().addLog({u"2004/04"_s, u"200404.htm"_s});
    EXPECT_EQ(rows(), (QStringList{u"2004/05 200405.htm"_s, u"2004/03 200403.htm"_s, u"2004/04 200404.htm"_s}));
}

TEST_F(LogRegister, AMonthGetsOneRowHoweverOftenAndByHowManyProgramsItIsLogged) {
    sql(u"INSERT INTO LogDB VALUES (NULL, 'a.htm')"_s);
    const auto addMany = [&] {
        for (int month = 1; month <= 12; ++month)
            logs().addLogOfMonth({u"2004/%1"_s.arg(month, 2, 10, QChar(u'0')), u"log.htm"_s});
        return true;
    };
    std::thread other(addMany);
    addMany();
    other.join();
    EXPECT_EQ(rows().size(), 13);
    logs().addLogOfMonth({u"２００４/05"_s, u"other.htm"_s}); // the same month
    logs().addLogOfMonth({u"2004/0_"_s, u"other.htm"_s});
    EXPECT_EQ(rows().size(), 14);
}

TEST_F(LogRegister, KnowsFiles) {
    logs().addLog({u"2004/05"_s, u"200405.htm"_s});
    EXPECT_TRUE(logs().FindLog(u"200405.htm"_s));
    EXPECT_TRUE(logs().FindLog(u"２００４05.HTM"_s));
    EXPECT_FALSE(logs().FindLog(u"200405"_s));
}

TEST_F(LogRegister, DeletesTheFirstRowOfANameAndMonth) {
    logs().addLog({u"2004/05"_s, u"a.htm"_s});
    logs().addLog({u"2004/06"_s, u"b.htm"_s});
    logs().addLog({u"2004/07"_s, u"A.htm"_s});
    logs().addLog({u"2004/07"_s, u"a.htm"_s});
    logs().DeleteLog({u"2004/07"_s, u"A.HTM"_s});
    EXPECT_EQ(rows(), (QStringList{u"2004/05 a.htm"_s, u"2004/06 b.htm"_s, u"2004/07 a.htm"_s}));
    logs().DeleteLog({u"2004/06"_s, u"a.htm"_s});
    EXPECT_EQ(rows().size(), 3);
}

TEST_F(LogRegister, DeletesARowWithoutAMonth) {
    sql(u"INSERT INTO LogDB VALUES (NULL, 'a.htm')"_s);
    logs().addLog({u"2004/05"_s, u"a.htm"_s});
    logs().DeleteLog(logs().listLogs().front());
    EXPECT_EQ(rows(), QStringList{u"2004/05 a.htm"_s});
}

TEST_F(LogRegister, DeletesARowWithoutAName) {
    sql(u"INSERT INTO LogDB (LogMonth, LogFileName) VALUES ('2004/05', NULL), ('2004/06', NULL), ('2004/05', 'a')"_s);
    logs().DeleteLog(logs().listLogs().front());
    EXPECT_EQ(rows(), (QStringList{u"2004/06 "_s, u"2004/05 a"_s}));
    logs().DeleteLog({u"2004/06"_s, u""_s});
    EXPECT_EQ(rows(), QStringList{u"2004/05 a"_s});
}

TEST_F(LogRegister, ReadsMissingValuesAsMissing) {
    sql(u"INSERT INTO LogDB VALUES (NULL, NULL)"_s);
    const std::vector<LogRow> logs = this->logs().listLogs();
    ASSERT_EQ(logs.size(), 1U);
    EXPECT_TRUE(logs[0].month.isNull() && logs[0].fileName.isNull());
}

TEST_F(LogRegister, RefusesADoubleQuoteAndChangesNothing) {
    logs().addLog({u"2004/05"_s, u"a\".htm"_s});
    const QByteArray before = bytesOf(session.databaseFile());
    for (const QString& failure : {failureOf([&] {
                                       logs().addLogOfMonth({u"\""_s, u"a.htm"_s});
                                   }),
                                   failureOf([&] { logs().FindLog(u"a\".htm"_s); }), failureOf([&] {
                                       logs().DeleteLog({u"2004/05"_s, u"a\".htm"_s});
                                   })})
        EXPECT_TRUE(failure.contains(session.databaseFile())) << failure.toStdString();
    EXPECT_TRUE(bytesOf(session.databaseFile()) == before);
}

} // namespace
} // namespace velloria::tests
