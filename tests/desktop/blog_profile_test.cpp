// Posting on another day and as another user: a login lasts in the browser of its user, and nowhere else.
#include "convert/password_text.h"
#include "desktop/blog_home.h"
#include "platform/directory.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class BlogProfile : public BlogHome {
protected:
    /// Leaves the program and starts it again.
    void startAgain(const std::optional<shell::Login>& login = std::nullopt) {
        context.windows.closeAll();
        QTest::qWait(50);
        ASSERT_EQ(start(login), shell::StartResult::Ready);
        SetUp();
        useTemplate(u"t01"_s);
    }
    void addUser(const QString& id) const {
        core::WriteIni(path(u"velluser.ini"_s), id, u"ID"_s, id);
        core::WriteIni(path(u"velluser.ini"_s), id, u"Pass"_s, convert::EncryptPassword(u"p"_s));
        platform::makeFolder(path(id));
        core::WriteIni(path(id + u"/diary.ini"_s), u"ALL"_s, u"DataPath"_s, path(id));
        platform::copyFile(path(u"default.mdb"_s), path(id + u"/diary.mdb"_s));
    }
};

TEST_F(BlogProfile, ALoginLastsOverARestart) {
    useTemplate(u"t01"_s);
    post();
    EXPECT_EQ(site.lines(), kLinesWithLogin);
    startAgain();
    post();
    EXPECT_EQ(site.lines(), kLinesOfAPost);
    EXPECT_EQ(requests("POST /do").value(0).user, "writer");
}

TEST_F(BlogProfile, ALoginThatTheServiceEndsWithTheBrowserLastsAsWell) {
    site.set(u"cookie"_s, u"session"_s);
    useTemplate(u"t01"_s);
    post();
    startAgain();
    post();
    EXPECT_EQ(site.lines(), kLinesOfAPost);
}

TEST_F(BlogProfile, AUserNeverPostsAsAnother) {
    addUser(u"taro"_s);
    addUser(u"hanako"_s);
    startAgain(shell::Login{u"taro"_s, u"p"_s});
    const QString folder = core::files::kBrowserFolder.in(session);
    post();
    EXPECT_EQ(site.lines(), kLinesWithLogin);
    startAgain(shell::Login{u"hanako"_s, u"p"_s});
    EXPECT_NE(core::files::kBrowserFolder.in(session), folder);
    post();
    EXPECT_EQ(site.lines(), kLinesWithLogin);
    startAgain(shell::Login{u"taro"_s, u"p"_s});
    EXPECT_EQ(core::files::kBrowserFolder.in(session), folder);
    post();
    EXPECT_EQ(site.lines(), kLinesOfAPost);
}

} // namespace
} // namespace velloria::tests
