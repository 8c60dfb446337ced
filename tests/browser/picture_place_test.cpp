#include "browser/picture_place.h"

#include "platform/file_write.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class PicturePlace : public ::testing::Test {
protected:
    PicturePlace() {
        put(u"DiaryParts/new.jpg"_s);
        put(u"DiaryParts/both.jpg"_s);
        put(u"DiaryParts/日記 #1%.jpg"_s);
        put(u"DiaryLog/DiaryParts/both.jpg"_s);
        put(u"DiaryLog/other.jpg"_s);
        put(u"secret.jpg"_s);
    }
    void put(const QString& name) const {
        QDir().mkpath(QFileInfo(data() + name).path());
        platform::replaceFile(data() + name, "picture", platform::Durability::Derived);
    }
    QString data() const { return folder.path() + u"/my data/"_s; }
    /// The place relative to the data folder, "" when the picture stays where it is.
    QString placeOf(const QString& name) const {
        const QUrl place = browser::picturePlace(QUrl::fromLocalFile(data() + name), data());
        return place.isValid() ? place.toLocalFile().mid(data().size()) : QString();
    }

    QTemporaryDir folder;
};

TEST_F(PicturePlace, IsAmongTheOthersWhereTheLogsLackThePicture) {
    EXPECT_EQ(placeOf(u"DiaryLog/DiaryParts/new.jpg"_s), u"DiaryParts/new.jpg"_s);
    EXPECT_EQ(placeOf(u"DiaryLog/DiaryParts/日記 #1%.jpg"_s), u"DiaryParts/日記 #1%.jpg"_s);
    EXPECT_EQ(placeOf(u"x/../DiaryLog/DiaryParts/new.jpg"_s), u"DiaryParts/new.jpg"_s);
}

TEST_F(PicturePlace, StaysForEveryOtherAddress) {
    for (const QString& name :
         {u"DiaryLog/DiaryParts/both.jpg"_s, u"DiaryLog/DiaryParts/none.jpg"_s, u"DiaryParts/new.jpg"_s,
          u"DiaryLog/new.jpg"_s, u"DiaryLog/DiaryParts/../../secret.jpg"_s, u"DiaryLog/DiaryParts/"_s,
          u"DiaryLog/DiaryParts2/new.jpg"_s})
        EXPECT_EQ(placeOf(name), QString()) << name.toStdString();
    EXPECT_FALSE(browser::picturePlace(QUrl(u"http://h.example/DiaryLog/DiaryParts/new.jpg"_s), data()).isValid());
    EXPECT_FALSE(browser::picturePlace(QUrl(), data()).isValid());
}

} // namespace
} // namespace velloria::tests
