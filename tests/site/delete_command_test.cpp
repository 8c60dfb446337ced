#include "site/delete_command.h"

#include "site/site_home.h"
#include "store/saving.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class DeleteCommand : public SiteHome {
protected:
    DeleteCommand() {
        write(u"2004/05/06"_s, u"a"_s);
        write(u"2004/05/06"_s, u"b"_s);
        desk.events = {};
    }

    site::Deletion remove(const QString& answer, int number = 1) {
        desk.answers.append(answer);
        return site::deleteCommand(run, u"2004/05/06"_s, number,
                                   [&] { store::deleteEntry(run, u"2004/05/06"_s, number); });
    }
    QString preview() const { return session.DataPath + u"tmp.htm"_s; }

    const QString kQuestion = u"message: 2004/05/06の1番目の日記を削除します。"_s;
    const QString kShown = u"status: Webページ表示中..."_s;
    const QString kDeleted = u"status: 2004/05/06の日記を削除しました。"_s;
};

TEST_F(DeleteCommand, AsksDeletesShowsAndTells) {
    EXPECT_EQ(remove(u"yes"_s), site::Deletion::Done);
    EXPECT_EQ(diary().LoadDay(u"2004/05/06"_s).size(), 1U);
    EXPECT_EQ(told(), (QStringList{kQuestion, kShown, u"navigate: "_s + preview() + u"#2004/05/06"_s, kDeleted}));
    EXPECT_TRUE(lacks(pageOf(preview()), u">a<"_s));
    EXPECT_TRUE(pageOf(preview()).contains(u">b<"_s));
}

TEST_F(DeleteCommand, HasTheHourglassFromTheAnswerToTheEnd) {
    remove(u"yes"_s);
    EXPECT_EQ(turns(), (QStringList{kQuestion.section(u": "_s, 1), u"hourglass"_s, u"default"_s}));
    EXPECT_EQ(desk.events.last()[u"event"_s], u"pointer"_s);
}

TEST_F(DeleteCommand, OnNoDoesNothing) {
    EXPECT_EQ(remove(u"no"_s), site::Deletion::Refused);
    EXPECT_EQ(diary().LoadDay(u"2004/05/06"_s).size(), 2U);
    EXPECT_EQ(told(), (QStringList{kQuestion, u"status: 日記の削除を中止しました。"_s}));
    EXPECT_FALSE(exists(preview()));
}

TEST_F(DeleteCommand, StandsWithoutItsPreview) {
    ASSERT_TRUE(QDir().mkdir(preview()));
    EXPECT_EQ(remove(u"yes"_s), site::Deletion::WithoutPreview);
    EXPECT_EQ(diary().LoadDay(u"2004/05/06"_s).size(), 1U);
    ASSERT_EQ(told().size(), 6);
    EXPECT_TRUE(told()[1].startsWith(u"failure: "_s)) << told()[1].toStdString();
    EXPECT_EQ(told()[2], u"status: エラー：ファイルを保存できません。"_s);
    EXPECT_EQ(told().sliced(3), (QStringList{kShown, u"navigate: "_s + preview() + u"#2004/05/06"_s, kDeleted}));
}

TEST_F(DeleteCommand, EndsWhereTheEntryCannotBeDeleted) {
    refuseRows(u"Number = 1 AND Title = 'b'"_s);
    EXPECT_NE(failureOf([&] { remove(u"yes"_s); }), QString());
    EXPECT_EQ(told(), QStringList{kQuestion});
    EXPECT_FALSE(exists(preview()));
}

} // namespace
} // namespace velloria::tests
