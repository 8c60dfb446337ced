#include "publish/ftp_folders.h"

#include "publish/upload_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class FtpFolders : public ::testing::Test {
protected:
    QString transcript() const { return lines.join(u'\n'); }

    QStringList lines;
    MemoryServer server{lines};
    TranscriptDesk shown{lines};
    publish::FtpFolders folders{server, shown};
};

TEST_F(FtpFolders, AFolderThatIsThereIsNotAskedAbout) {
    server.makeFolder(u"/pub"_s);
    EXPECT_TRUE(folders.CheckFTPFolder(u"pub"_s));
    EXPECT_EQ(transcript(), textOf(R"(
status: Checking Folder "pub" !
> find directory pub)"));
}

TEST_F(FtpFolders, AMissingFolderIsMadeWhenTheUserWantsIt) {
    shown.answers = {u"yes"_s};
    EXPECT_TRUE(folders.CheckFTPFolder(u"写真"_s));
    EXPECT_EQ(transcript(), textOf(R"(
status: Checking Folder "写真" !
> find directory 写真
box question Velloria yes: フォルダ「写真」が作成されていません。 / 作成しますか？
> mkdir 写真
status: Making Folder Successful!)"));
    EXPECT_TRUE(server.folders().contains(u"/写真"_s));
}

TEST_F(FtpFolders, AMissingFolderStaysMissingWhenTheUserSaysNo) {
    shown.answers = {u"no"_s};
    EXPECT_FALSE(folders.CheckFTPFolder(u"pub"_s));
    EXPECT_EQ(transcript(), textOf(R"(
status: Checking Folder "pub" !
> find directory pub
box question Velloria no: フォルダ「pub」が作成されていません。 / 作成しますか？
box information Velloria ok: フォルダは作成しませんでした。 / 日記保存先に「pub」フォルダをご自分で作成して下さい。)"));
    EXPECT_FALSE(server.folders().contains(u"/pub"_s));
}

TEST_F(FtpFolders, AFolderThatTheServerDoesNotMakeIsTold) {
    shown.answers = {u"yes"_s};
    server.refusals[u"mkdir pub"_s] = publish::kExtendedError;
    EXPECT_FALSE(folders.CheckFTPFolder(u"pub"_s));
    EXPECT_EQ(transcript(), textOf(R"(
status: Checking Folder "pub" !
> find directory pub
box question Velloria yes: フォルダ「pub」が作成されていません。 / 作成しますか？
> mkdir pub
status: 550 Permission denied.
box critical Velloria ok: フォルダの作成に失敗しました。 / サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。)"));
}

TEST_F(FtpFolders, AnyOtherErrorOfTheSearchIsTheBox) {
    server.refusals[u"find directory pub"_s] = 12002;
    EXPECT_FALSE(folders.CheckFTPFolder(u"pub"_s));
    EXPECT_EQ(transcript(), textOf(R"(
status: Checking Folder "pub" !
> find directory pub
status: タイムアウトです。
box critical Velloria ok: タイムアウトです。)"));
}

TEST_F(FtpFolders, EntersAFolderAndShowsItsPath) {
    server.makeFolder(u"/DiaryParts"_s);
    EXPECT_TRUE(folders.ChangeFTPDirectory(u"pub"_s, u"DiaryParts"_s));
    EXPECT_EQ(transcript(), textOf(R"(
status: Moving to pubDiaryParts
> cd DiaryParts
status: Change Directory pubDiaryParts is Completed!)"));
}

TEST_F(FtpFolders, LeavesAFolderAndShowsItsPathUpToTheLastSlash) {
    EXPECT_TRUE(folders.ChangeFTPDirectory(u"a/b/rest"_s, u".."_s));
    EXPECT_TRUE(folders.ChangeFTPDirectory(u"rest"_s, u".."_s));
    EXPECT_EQ(transcript(), textOf("status: Moving to a/b/\n"
                                   "> cd ..\n"
                                   "status: Change Directory a/b/ is Completed!\n"
                                   "status: Moving to \n"
                                   "> cd ..\n"
                                   "status: Change Directory  is Completed!"));
}

TEST_F(FtpFolders, AFolderThatTheServerDoesNotEnterIsTold) {
    EXPECT_FALSE(folders.ChangeFTPDirectory(u""_s, u"pub"_s));
    EXPECT_EQ(transcript(), textOf(R"(
status: Moving to pub
> cd pub
status: 550 Permission denied.
box critical Velloria ok: ディレクトリ変更ができませんでした。 / サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。)"));
}

} // namespace
} // namespace velloria::tests
