#include "editor/draft.h"

#include "store/entry_line.h"
#include "support/folder_turn.h"
#include "support/test_home.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Draft : public TestHome {
protected:
    QString file() const { return session.UserPath + u"draft.json"_s; }
    editor::DraftFile& drafts() { return m_drafts; }
    static store::Entry draftOf(const QString& title) {
        store::Entry entry = entryOf(u"2004/05/06"_s, title);
        entry.number = 3;
        entry.contents = u"一\r\n二\u00A0\u2028\"\\\U0001F600"_s;
        entry.extend = u"追記"_s;
        entry.excerpt = u"概要"_s;
        entry.weather = u"晴"_s;
        entry.genre = u"旅行"_s;
        entry.isPrivate = true;
        entry.publishTime = u"2004/05/06 08:00:00"_s;
        entry.importMark = QString();
        return entry;
    }

    editor::DraftFile m_drafts{run};
};

TEST_F(Draft, EveryFieldComesBack) {
    const store::Entry written = draftOf(u"題"_s);
    drafts().write({written});
    const std::vector<store::Entry> read = drafts().read();
    ASSERT_EQ(read.size(), 1U);
    EXPECT_EQ(store::toJson(read.front()), store::toJson(written));
}

TEST_F(Draft, AMarkInFrontOfATextComesBackAndASignatureOfTheFileIsNone) {
    store::Entry written = draftOf(u"\uFEFF題"_s);
    written.contents = u"\uFEFF"_s;
    drafts().write({written, written});
    writeFile(file(), "\xEF\xBB\xBF" + bytesOf(file())); // by an editor of texts
    const std::vector<store::Entry> read = drafts().read();
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(store::toJson(read.front()), store::toJson(written));
}

TEST_F(Draft, ADraftNeedsNoTitleAndMayHaveNoRow) {
    store::Entry written = draftOf(u""_s);
    written.publishTime = QString();
    drafts().write({written});
    ASSERT_EQ(drafts().read().size(), 1U);
    EXPECT_TRUE(drafts().read().front().publishTime.isNull());
    EXPECT_EQ(drafts().read().front().title, u""_s);
}

TEST_F(Draft, OnlyItsOwnerMayReadIt) {
    drafts().write({draftOf(u"題"_s)});
    EXPECT_EQ(modeOf(file()), 0600U);
    drafts().write({draftOf(u"二"_s)});
    EXPECT_EQ(modeOf(file()), 0600U);
}

TEST_F(Draft, AnotherProgramsLinesStay) {
    editor::DraftFile other(run);
    drafts().write({draftOf(u"mine"_s)});
    other.write({draftOf(u"the other's"_s)});
    drafts().write({draftOf(u"mine, later"_s)});
    editor::DraftFile next(run);
    ASSERT_EQ(next.read().size(), 2U);
    drafts().write({});
    ASSERT_EQ(editor::DraftFile(run).read().size(), 1U);
    EXPECT_EQ(editor::DraftFile(run).read().front().title, u"the other's"_s);
    next.write({}); // whoever found them may take them
    EXPECT_FALSE(exists(file()));
}

TEST_F(Draft, WaitsForTheChangeOfAnotherProgram) {
    EXPECT_TRUE(waitsForTurn(session.UserPath, [&] { drafts().write({draftOf(u"mine"_s)}); }));
    EXPECT_EQ(drafts().read().size(), 1U);
}

TEST_F(Draft, WithoutDraftsThereIsNoFile) {
    drafts().write({});
    EXPECT_FALSE(exists(file()));
    drafts().write({draftOf(u"題"_s)});
    drafts().write({});
    EXPECT_FALSE(exists(file()));
    EXPECT_TRUE(drafts().read().empty());
}

TEST_F(Draft, SeveralKeepTheirOrder) {
    drafts().write({draftOf(u"一"_s), draftOf(u"二"_s)});
    const std::vector<store::Entry> read = drafts().read();
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].title, u"一"_s);
    EXPECT_EQ(read[1].title, u"二"_s);
}

TEST_F(Draft, ADamagedLineIsPassedOver) {
    drafts().write({draftOf(u"良い"_s)});
    writeFile(file(), "{\"Day\":\n\xff\xfe nonsense\n[]\n\n" + bytesOf(file()) + "{\"Day\":\"2004/13/45\"}\n");
    const std::vector<store::Entry> read = drafts().read();
    ASSERT_EQ(read.size(), 1U);
    EXPECT_EQ(read.front().title, u"良い"_s);
}

TEST_F(Draft, ALineIsOneOfTheRescueFile) {
    drafts().write({draftOf(u""_s)});
    EXPECT_TRUE(store::parseEntryLine(bytesOf(file()).trimmed()).isRescued);
}

TEST_F(Draft, AFolderThatTakesNoFilesIsAFailure) {
    EXPECT_TRUE(holdsForNobody([&] { return !failureOf([&] { drafts().write({draftOf(u"題"_s)}); }).isEmpty(); }));
}

TEST_F(Draft, AFileThatCantBeReadIsNotReplaced) {
    for (const QString& end : {u"/proc/self/mem"_s, path(u"gone"_s)}) {
        QFile::remove(file());
        ASSERT_TRUE(QFile::link(end, file()));
        EXPECT_TRUE(drafts().read().empty());
        EXPECT_NE(failureOf([&] { drafts().write({draftOf(u"題"_s)}); }), QString());
        EXPECT_NE(failureOf([&] { drafts().write({}); }), QString());
        EXPECT_EQ(QFileInfo(file()).symLinkTarget(), end);
    }
}

} // namespace
} // namespace velloria::tests
