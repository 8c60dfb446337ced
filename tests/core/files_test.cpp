#include "core/files.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

TEST(Files, LieInTheirFoldersOfTheRun) {
    core::Session session;
    session.MyPath = u"/program/"_s;
    session.UserPath = u"/user/"_s;
    session.DataPath = u"/data/"_s;
    EXPECT_EQ(core::files::kEndpoints.in(session), u"/program/endpoints.ini"_s);
    EXPECT_EQ(core::files::kPageList.in(session), u"/user/upload.tmp"_s);
    EXPECT_EQ(core::files::kPreview.in(session), u"/data/tmp.htm"_s);
    EXPECT_EQ(core::files::kLogParts.in(session), u"/data/DiaryLog/DiaryParts"_s);
}

TEST(Files, AreFoundUnderTheirNamesInOtherFoldersToo) {
    EXPECT_EQ(core::files::kParts.below(u"/site/"_s), u"/site/DiaryParts"_s);
}

TEST(Files, OfTheDiaryAreWhatTheRunSaysOnceItHasSeenThem) {
    core::Session session;
    session.UserPath = u"/user/"_s;
    session.dbFileName = u"DIARY.MDB"_s;
    EXPECT_EQ(session.databaseFile(), u"/user/DIARY.MDB"_s);
    EXPECT_EQ(core::files::kDiary.in(session), u"/user/diary.mdb"_s);
}

} // namespace
} // namespace velloria::tests
