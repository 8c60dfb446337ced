#include "store/jet_diary.h"

#include "store/database_file.h"
#include "store/jet_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::GetDBVersion;
using store::JetDiary;
using store::OldValue;

std::string textOf(const OldValue& value) {
    if (const auto* number = std::get_if<qint64>(&value))
        return std::to_string(*number);
    const auto* text = std::get_if<QByteArray>(&value);
    return text ? '"' + text->toStdString() + '"' : "NULL";
}

class WholeJetDiary : public JetHome, public ::testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(Of, WholeJetDiary,
                         ::testing::Values("v0", "v0-jet3", "v100", "v100-jet3", "v101", "v110", "v150", "v200", "v210",
                                           "v220"),
                         [](const auto& file) {
                             std::string name = file.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST_P(WholeJetDiary, ReadsEveryValueOfEveryTable) {
    const QString name = QString::fromLatin1(GetParam());
    const QJsonObject contents = contentsOf(name);
    const QJsonObject tables = contents[u"tables"_s].toObject();
    ASSERT_FALSE(tables.isEmpty());
    qsizetype values = 0;
    for (auto table = tables.begin(); table != tables.end(); ++table) {
        QStringList columns;
        bool hasCounter = false;
        for (const QJsonValue column : (*table)[u"columns"_s].toArray()) {
            columns += column[u"name"_s].toString();
            hasCounter |= column[u"type"_s] == u"autonumber"_s;
        }
        std::vector<Row> expected;
        for (const QJsonValue row : (*table)[u"rows"_s].toArray()) {
            Row& wanted = expected.emplace_back();
            for (const QString& column : columns)
                wanted.push_back(valueOf(row[column]));
        }
        std::vector<Row> rows = rowsOf(sample(name), table.key(), columns);
        if (!hasCounter) {
            std::sort(rows.begin(), rows.end());
            std::sort(expected.begin(), expected.end());
        }
        ASSERT_EQ(rows.size(), expected.size()) << table.key().toStdString();
        for (size_t row = 0; row < rows.size(); ++row) {
            for (size_t i = 0; i < rows[row].size(); ++i, ++values)
                ASSERT_TRUE(rows[row][i] == expected[row][i])
                    << table.key().toStdString() << ' ' << row << ' ' << columns[qsizetype(i)].toStdString() << '\n'
                    << textOf(rows[row][i]) << '\n'
                    << textOf(expected[row][i]);
        }
    }
    EXPECT_GT(values, 100);
}

TEST_P(WholeJetDiary, TellsItsVersionAndStaysAsItIs) {
    const QString name = QString::fromLatin1(GetParam());
    const QString copy = path(u"copy/diary.mdb"_s);
    QDir().mkpath(path(u"copy"_s));
    writeFile(copy, bytesOf(sample(name)));
    const auto before = contentOf(path(u"copy"_s));
    EXPECT_EQ(GetDBVersion(copy), contentsOf(name)[u"version"_s].toInt());
    rowsOf(copy, u"Contents"_s, {u"Contents"_s});
    EXPECT_EQ(contentOf(path(u"copy"_s)), before);
}

} // namespace
} // namespace velloria::tests
