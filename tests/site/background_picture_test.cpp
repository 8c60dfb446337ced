#include "site/background_picture.h"

#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class BackgroundPicture : public SiteHome {};

TEST_F(BackgroundPicture, IsChosenFromTheUsersFiles) {
    const QString file = path(u"sky.gif"_s);
    writeFile(file, "GIF");
    desk.answers = {file};
    EXPECT_EQ(site::choosePicture(run), file);
    const QJsonObject dialog = lastFileEvent();
    EXPECT_EQ(dialog[u"folder"_s].toString(), session.DataPath + u"DiaryParts"_s);
    EXPECT_EQ(dialog[u"filter"_s].toString(),
              u"GIF Files(*.gif)|*.gif|JPEG Files(*.jpg)|*.jpg|PNG Files(*.png)|*.png|ALL Files(*.*)|*.*|"_s);
    EXPECT_EQ(site::pictureAddress(file), u"./DiaryParts/sky.gif"_s);
}

TEST_F(BackgroundPicture, IsNoneWhenCancelledOrNotThere) {
    desk.answers = {QJsonValue::Null};
    EXPECT_EQ(site::choosePicture(run), std::nullopt);
    EXPECT_TRUE(boxes().isEmpty());
    desk.answers = {path(u"none.gif"_s)};
    EXPECT_EQ(site::choosePicture(run), std::nullopt);
    EXPECT_EQ(boxes(), QStringList{u"plain: 不正なパスです。"_s});
}

TEST_F(BackgroundPicture, IsRegisteredForTheWholeSiteOnYes) {
    const QString file = path(u"sky.gif"_s);
    writeFile(file, "GIF");
    desk.answers = {u"no"_s};
    site::offerRegistration(run, file);
    EXPECT_EQ(fileRows(), QStringList());
    desk.answers = {u"yes"_s};
    site::offerRegistration(run, file);
    EXPECT_EQ(desk.texts(u"message"_s).last(), u"ファイルを登録しますか？"_s);
    EXPECT_EQ(boxTitles(), QSet<QString>{u"Velloria"_s});
    ASSERT_EQ(fileRows().size(), 1);
    EXPECT_TRUE(fileRows().first().startsWith(u"sky.gif ALL"_s));
    EXPECT_EQ(sqlValue(u"SELECT Number FROM FileDB"_s), u"0"_s);
    EXPECT_EQ(bytesOf(session.DataPath + u"DiaryParts/sky.gif"_s), "GIF");
}

} // namespace
} // namespace velloria::tests
