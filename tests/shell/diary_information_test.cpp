#include "shell/diary_information.h"

#include "support/plugin_home.h"
#include "support/test_home.h"

#include <QCoreApplication>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class DiaryInformation : public TestHome {
protected:
    DiaryInformation() {
        StubPlugin::install(session.MyPath + u"VellInfo.dll"_s);
        writeFile(page(), "old");
        desk.events = {};
    }
    QString page() const { return session.DataPath + u"VellInfo_result.htm"_s; }
    QString failure() {
        return failureOf([&] { shell::diaryInformationCommand(run); });
    }

    StubPlugin stub{path(u"calls.txt"_s)};
};

TEST_F(DiaryInformation, IsMadeAnewAndShown) {
    EXPECT_EQ(failure(), QString());
    EXPECT_EQ(bytesOf(page()), "<HTML>");
    EXPECT_EQ(told(), QStringList{u"navigate: "_s + page()});
}

TEST_F(DiaryInformation, LetsTheWindowsPaintMeanwhile) {
    int count = 0;
    const QCoreApplication application(count, nullptr);
    stub.set("TALKS", u"1"_s);
    bool hasPainted = false;
    QTimer::singleShot(0, [&] { hasPainted = true; });
    EXPECT_EQ(failure(), QString());
    EXPECT_TRUE(hasPainted);
    EXPECT_EQ(told(), (QStringList{u"status: ページを書いています..."_s, u"navigate: "_s + page()}));
    EXPECT_EQ(stub.calls(), QStringList{u"run_with_host"_s});
}

TEST_F(DiaryInformation, OfAPluginFromBeforeTheHostIsMadeAllTheSame) {
    for (const QString& lacking : {u"run_with_host"_s, u"the size of run_with_host"_s}) {
        stub.set("LACKS", lacking);
        EXPECT_EQ(failure(), QString()) << lacking.toStdString();
        EXPECT_EQ(bytesOf(page()), "<HTML>");
    }
    EXPECT_EQ(stub.calls(), (QStringList{u"run"_s, u"run"_s}));
}

TEST_F(DiaryInformation, SaysThatItsPathsAreRefused) {
    session.dbFileName = u"refused.mdb"_s;
    EXPECT_EQ(failure(), QString());
    EXPECT_EQ(boxes(), QStringList{u"critical: パスのエラーです"_s});
    EXPECT_EQ(told().last(), u"navigate: "_s + page());
    EXPECT_FALSE(exists(page()));
}

TEST_F(DiaryInformation, ThatFailsShowsNoPage) {
    session.dbFileName = u"broken.mdb"_s;
    EXPECT_TRUE(failure().contains(u"the diary is broken"_s));
    session.dbFileName = u"diary.mdb"_s;
    stub.set("FAILS", u"run_with_host"_s);
    EXPECT_TRUE(failure().contains(u"the stub fails"_s));
    EXPECT_EQ(told(), QStringList());
}

TEST_F(DiaryInformation, OfAPluginThatIsMissingIsAFailure) {
    QFile::remove(session.MyPath + u"VellInfo.dll"_s);
    EXPECT_TRUE(failure().contains(u"VellInfo.dll"_s));
    EXPECT_EQ(told(), QStringList());
}

} // namespace
} // namespace velloria::tests
