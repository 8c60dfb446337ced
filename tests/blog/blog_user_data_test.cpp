#include "blog/blog_user_data.h"

#include "core/blog_keys.h"
#include "core/files.h"
#include "platform/failure.h"
#include "platform/file_read.h"
#include "support/test_home.h"

#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys::blog_user;

class UserData : public TestHome {
protected:
    blog::BlogUserData data{session, u"ブログ"_s};
    QString file() const { return core::files::kBlogUserData.in(session); }
};

TEST_F(UserData, GivesBackWhatWasStored) {
    EXPECT_EQ(data.value(keys::kLoginID), QString());
    data.store(keys::kLoginID, u"花子"_s);
    data.store(keys::kPassword, u"秘密 secret"_s);
    EXPECT_EQ(data.value(keys::kLoginID), u"花子"_s);
    EXPECT_EQ(data.value(keys::kPassword), u"秘密 secret"_s);
    EXPECT_EQ(blog::BlogUserData(session, u"other"_s).value(keys::kLoginID), QString());
}

TEST_F(UserData, KeepsThePasswordFromBeingReadAtAGlance) {
    data.store(keys::kPassword, u"secret"_s);
    const QByteArray bytes = platform::readFile(file());
    EXPECT_FALSE(bytes.contains("secret"));
    EXPECT_TRUE(bytes.contains("Password="));
    EXPECT_EQ(QFile::permissions(file()) &
                  (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());
}

TEST_F(UserData, GivesBackEveryCharacterThatTheCodePageWritesAsAnother) {
    const QString name = u"〜—‖−¢£¬"_s;
    ASSERT_TRUE(blog::BlogUserData::fits(keys::kLoginID, name));
    data.store(keys::kLoginID, name);
    EXPECT_EQ(data.value(keys::kLoginID), name);
}

TEST_F(UserData, StoresSeveralInOrderOrNoneOfThem) {
    data.store({{keys::kPostURL, u"http://127.0.0.1/p"_s}, {keys::kLoginID, u"me"_s}, {keys::kNextURL, u""_s}});
    EXPECT_EQ(platform::readFile(file()).mid(platform::readFile(file()).indexOf("\r\n") + 2),
              "PostURL=http://127.0.0.1/p\r\nLoginID=me\r\nNextURL=\r\n");
    const QByteArray before = platform::readFile(file());
    EXPECT_THROW(data.store({{keys::kLoginID, u"you"_s}, {keys::kPassword, u"\U0001F431"_s}}), platform::Failure);
    EXPECT_EQ(platform::readFile(file()), before);
}

TEST_F(UserData, BlanksAroundAValueAreNoPartOfIt) {
    for (const core::Setting& row : {keys::kLoginID, keys::kPostURL, keys::kManagementURL}) {
        data.store(row, u" \thttp://127.0.0.1/ a \r\n"_s);
        EXPECT_EQ(data.value(row), u"http://127.0.0.1/ a"_s);
        data.store(row, u"  "_s);
        EXPECT_EQ(data.value(row), u""_s);
    }
    data.store(keys::kPassword, u" a "_s);
    EXPECT_EQ(data.value(keys::kPassword), u" a "_s);
}

TEST_F(UserData, AFileThatWasOpenToEverybodyIsSoNoMore) {
    writeFile(file(), "[other]\r\nLoginID=me\r\n");
    ASSERT_EQ(::chmod(QFile::encodeName(file()).constData(), 0644), 0);
    data.store(keys::kPassword, u"secret"_s);
    EXPECT_EQ(modeOf(file()), 0600U);
}

TEST_F(UserData, RefusesWhatTheFileWouldNotGiveBack) {
    data.store(keys::kPostURL, u"http://127.0.0.1/"_s);
    EXPECT_THROW(data.store(keys::kPostURL, QString(256, u'x')), platform::Failure);
    EXPECT_THROW(data.store(keys::kPassword, u"\U0001F431"_s), platform::Failure);
    EXPECT_EQ(data.value(keys::kPostURL), u"http://127.0.0.1/"_s);
    EXPECT_EQ(data.value(keys::kPassword), QString());
}

TEST_F(UserData, OfANameThatNoSectionBearsIsRefused) {
    for (const QString& name : {u"a]b"_s, u"a]"_s, u"]"_s, u" a"_s, u"a "_s, u""_s, u"\ta"_s, u"a\nb"_s}) {
        EXPECT_FALSE(blog::BlogUserData::canBear(name)) << name.toStdString();
        EXPECT_THROW(blog::BlogUserData(session, name).store(keys::kPassword, u"secret"_s), platform::Failure);
    }
    EXPECT_FALSE(QFile::exists(file())) << "nothing of another blog's section was touched";
    for (const QString& name :
         {u"mixi"_s, u"[a"_s, u"a=b"_s, u";a"_s, u"ゾ"_s, u"é😀"_s, u"a b"_s, u"a.b"_s, u"\u301C"_s}) {
        const blog::BlogUserData mine(session, name);
        EXPECT_NO_THROW(mine.store(keys::kLoginID, u"hanako"_s)) << name.toStdString();
        EXPECT_EQ(mine.value(keys::kLoginID), u"hanako"_s) << name.toStdString();
    }
}

} // namespace
} // namespace velloria::tests
