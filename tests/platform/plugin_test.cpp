#include "platform/plugin.h"

#include "support/test_home.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Plugin : public FactoryHome {
protected:
    QString stub() {
        const QString file = path(u"VellInfo.dll"_s);
        QFile::copy(QStringLiteral(VELLORIA_PLUGIN_STUB), file);
        return file;
    }
};

TEST_F(Plugin, TellsItsVersion) {
    EXPECT_EQ(platform::Plugin(stub()).version(), u"1.2.3"_s);
}

TEST_F(Plugin, WritesAPageAboutTheDiaryUnlessItRefuses) {
    const platform::Plugin plugin(stub());
    const velloria_diary_information* information = plugin.diaryInformation();
    ASSERT_TRUE(information);
    const QByteArray page = path(u"result.htm"_s).toUtf8();
    EXPECT_EQ(information->set_paths("/refused/diary.mdb", page.constData()), 0);
    EXPECT_NE(information->set_paths("/diary.mdb", page.constData()), 0);
    information->run();
    EXPECT_EQ(bytesOf(path(u"result.htm"_s)), "<HTML>");
}

TEST_F(Plugin, ThatIsNoneIsRefusedByItsName) {
    writeFile(path(u"Chimer.dll"_s), "not a library");
    EXPECT_TRUE(failureOf([&] { platform::Plugin plugin(path(u"Chimer.dll"_s)); }).contains(u"Chimer.dll"_s));
    EXPECT_TRUE(failureOf([&] { platform::Plugin plugin(path(u"gone.dll"_s)); }).contains(u"gone.dll"_s));
}

} // namespace
} // namespace velloria::tests
