#include "blog/blog_post.h"

#include "blog/blog_posting.h"
#include "core/blog_keys.h"
#include "core/files.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace rows = core::keys::blog_user;

const QString kQuestion = u"Velloria? 接続先URLを入力してください。"_s;
const QString kStopped = u"critical: 中止します。"_s;

/// The two commands that only open a page; both ask in the same way.
class BlogPages : public BlogPosting {
protected:
    BlogPages() {
        keys[u"ManageURL"_s] = u"Required"_s;
        writeTemplate();
    }
    void view() { blog::BlogPost(run, page).ViewBlog(blogName); }
    void manage() { blog::BlogPost(run, page).BlogManagement(blogName); }
    static QStringList opened(const QString& address) { return {u"stop"_s, u"front"_s, u"navigate "_s + address}; }
    struct Command {
        std::function<void()> run;
        core::Setting row;
    };
    const std::array<Command, 2> commands{
        {{[this] { view(); }, rows::kAccessURL}, {[this] { manage(); }, rows::kManagementURL}}};
};

TEST_F(BlogPages, OpenTheAddressesOfTheUser) {
    for (const Command& command : commands) {
        page.done.clear();
        setUser(command.row, u"http://mine.test/?a=b"_s);
        command.run();
        EXPECT_EQ(page.done, opened(u"http://mine.test/?a=b"_s));
    }
    EXPECT_EQ(told(), QStringList());
}

TEST_F(BlogPages, AskForAnAddressAndStoreIt) {
    for (const Command& command : commands) {
        desk.answers = {u"http://mine.test/"_s};
        desk.events = {};
        page.done.clear();
        command.run();
        EXPECT_EQ(asked(), QStringList{kQuestion});
        EXPECT_EQ(desk.events[0][u"default"_s], u"http://"_s);
        EXPECT_EQ(page.done, opened(u"http://mine.test/"_s));
        EXPECT_EQ(user(command.row), u"http://mine.test/"_s);
        command.run();
        EXPECT_EQ(desk.events.size(), 1);
    }
}

TEST_F(BlogPages, AnEmptyAnswerEndsThem) {
    for (const Command& command : commands) {
        desk.answers = {QJsonValue(), u""_s};
        desk.events = {};
        page.done.clear();
        command.run();
        command.run();
        EXPECT_EQ(asked(), QStringList({kQuestion, kStopped, kQuestion, kStopped}));
        EXPECT_EQ(page.done, QStringList(2, u"stop"_s));
        EXPECT_EQ(user(command.row), QString());
    }
}

TEST_F(BlogPages, StopTheBrowserBeforeTheyAsk) {
    for (const Command& command : commands) {
        desk.events = {};
        desk.answers = {QJsonValue()};
        page.beforeCall = [this](const QString&) { EXPECT_EQ(desk.events.size(), 0); };
        command.run();
        EXPECT_EQ(desk.events.size(), 2);
    }
}

TEST_F(BlogPages, OpenPagesOfTheWebAlone) {
    for (const Command& command : commands) {
        page.done.clear();
        // What can't be opened is not stored either: one of the two addresses has no other window to be mended in.
        for (const QString& address : {u"javascript:alert(1)"_s, u"file:///etc/passwd"_s, u"http://"_s}) {
            desk.answers = {address};
            EXPECT_FALSE(failureOf([&] { command.run(); }).isEmpty());
            EXPECT_EQ(user(command.row), QString());
        }
        setUser(command.row, u"data:text/html,x"_s);
        EXPECT_FALSE(failureOf([&] { command.run(); }).isEmpty());
        EXPECT_EQ(page.done, QStringList(4, u"stop"_s));
    }
}

TEST_F(BlogPages, AnAddressMayBeTypedWithBlanksAround) {
    for (const Command& command : commands) {
        desk.answers = {u" http://mine.test/ "_s};
        page.done.clear();
        command.run();
        EXPECT_EQ(page.done, opened(u"http://mine.test/"_s));
        EXPECT_EQ(user(command.row), u"http://mine.test/"_s);
    }
}

TEST_F(BlogPages, AnAddressThatCanNotBeStoredIsNotOpened) {
    QFile::setPermissions(core::files::kBlogUserData.in(session), QFile::ReadOwner);
    for (const Command& command : commands) {
        desk.answers = {u"http://mine.test/"_s};
        page.done.clear();
        EXPECT_FALSE(failureOf([&] { command.run(); }).isEmpty());
        EXPECT_EQ(page.done, QStringList{u"stop"_s});
    }
}

TEST_F(BlogPages, TheAddressOfTheServiceIsThatOfTheTemplate) {
    setUser(rows::kManagementURL, u"http://mine.test/"_s);
    keys[u"ManageURL"_s] = u"http://service.test/manage"_s;
    writeTemplate();
    manage();
    EXPECT_EQ(page.done, opened(u"http://service.test/manage"_s));
    for (const QString& none : {u""_s, u"-"_s}) {
        page.done.clear();
        keys.remove(u"ManageURL"_s);
        if (none.isEmpty())
            keys[u"ManageURL"_s] = none;
        writeTemplate();
        manage();
        EXPECT_EQ(page.done, QStringList{u"stop"_s}); // no address, no page
    }
    EXPECT_EQ(told(), QStringList());
}

TEST_F(BlogPages, OtherKeysOfTheTemplateAreNobodysQuestion) {
    keys[u"FORM_POST"_s] = u"99999"_s;
    keys[u"ManageURL"_s] = u"https://service.test/"_s;
    writeTemplate();
    manage();
    EXPECT_EQ(page.done, opened(u"https://service.test/"_s));
}

TEST_F(BlogPages, ATemplateThatIsNotThereOpensNothing) {
    QFile::remove(templatePath());
    manage();
    EXPECT_EQ(page.done, QStringList{u"stop"_s});
    writeFile(templatePath(), QByteArray(10'000'000, 'x'));
    EXPECT_FALSE(failureOf([this] { manage(); }).isEmpty());
}

} // namespace
} // namespace velloria::tests
