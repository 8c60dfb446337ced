#include "shell/menu_table.h"

#include "support/print.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QSet>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using core::MenuLanguage;
using shell::captionOf;
using shell::menuRows;

QString caption(const QString& name, MenuLanguage language) {
    for (const shell::MenuRow& row : menuRows()) {
        if (row.name == name)
            return captionOf(row, language);
    }
    return u"no row "_s + name;
}

TEST(MenuTable, IsWhatTheMenusHaveAlwaysBeen) {
    QFile file(QStringLiteral(VELLORIA_TEST_DATA "/shell/menus.tsv"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList expected = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    QStringList rows;
    for (const shell::MenuRow& row : menuRows())
        rows += QStringList{QString::number(row.depth), row.name, captionOf(row, MenuLanguage::English),
                            captionOf(row, MenuLanguage::Japanese)}
                    .join(u'\t');
    EXPECT_EQ(rows.size(), expected.size());
    for (qsizetype i = 0; i < std::max(rows.size(), expected.size()); ++i)
        ASSERT_EQ(rows.value(i), expected.value(i)) << "the first row that differs from menus.tsv, line " << i + 1;
}

TEST(MenuTable, HasEachNameOnce) {
    QSet<QString> names;
    for (const shell::MenuRow& row : menuRows())
        names.insert(row.name);
    EXPECT_EQ(names.size(), qsizetype(menuRows().size()));
}

TEST(MenuTable, HasItsSeparatorsInOrder) {
    QStringList separators;
    for (const shell::MenuRow& row : menuRows()) {
        if (row.english.isEmpty())
            separators += row.name;
    }
    EXPECT_EQ(separators.join(u' '),
              u"mnuMinus7 MnuMinus9 MnuMinus1 MnuMinus mnuMinus8 MnuMinus12 MnuMinus10 MnuMinus15 MnuMinus18 "
              "MnuMinus11 mnuMinus5 mnuMinus6 MnuMinus13 mnuMinus3 mnuMinus4 MnuMinus14 MnuMinus16 MnuMinus17 "
              "MnuMinus19"_s);
}

TEST(MenuTable, KeepsItsOddCaptions) {
    EXPECT_EQ(caption(u"MnuSaveDiary"_s, MenuLanguage::English), u"Save Diary(&U)"_s);
    EXPECT_EQ(caption(u"MnuVellUpdater"_s, MenuLanguage::Japanese), u"&Velloria Updaterの起動"_s);
    EXPECT_EQ(caption(u"MnuRefreshURLHist"_s, MenuLanguage::Japanese), u"&URL履歴の削除"_s);
    EXPECT_EQ(caption(u"MnuMTExport"_s, MenuLanguage::Japanese), u"MovableTypeエクスポート"_s);
    EXPECT_EQ(caption(u"MnuVellInfoBlog"_s, MenuLanguage::Japanese), u"Velloria情報"_s);
    EXPECT_EQ(caption(u"MnuHP"_s, MenuLanguage::Japanese), u"Qorvin's HomePage"_s);
    EXPECT_EQ(caption(u"mnuCopy"_s, MenuLanguage::English), u"コピー"_s);
}

TEST(MenuTable, TellsTheSameTwiceWhereTheToolMenusMeet) {
    EXPECT_EQ(caption(u"MnuDiaryTools"_s, MenuLanguage::Japanese), caption(u"MnuTool"_s, MenuLanguage::Japanese));
    EXPECT_EQ(caption(u"MnuSaveHTML_D"_s, MenuLanguage::English), caption(u"MnuSaveHTML"_s, MenuLanguage::English));
}

} // namespace
} // namespace velloria::tests
