#include "support/preparation.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

constexpr const char* kIsChild = "VELLORIA_TEST_IS_CHILD";

/// This test once more, in a program of its own that is told so.
QByteArray runChild(const QString& ci, int& exitCode) {
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(kIsChild), u"1"_s);
    environment.insert(u"CI"_s, ci);
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::MergedChannels);
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    program.start(
        QFile::symLinkTarget(u"/proc/self/exe"_s),
        {u"--gtest_filter=%1.%2"_s.arg(QLatin1StringView(test.test_suite_name()), QLatin1StringView(test.name()))});
    EXPECT_TRUE(program.waitForFinished(-1));
    exitCode = program.exitCode();
    return program.readAll();
}

TEST(Preparation, TellsWhatIsSkipped) {
    if (qEnvironmentVariableIsSet(kIsChild))
        GTEST_SKIP() << "told to";
    int exitCode = -1;
    EXPECT_TRUE(runChild({}, exitCode).contains("\nSKIPPED Preparation.TellsWhatIsSkipped: told to\n"));
    EXPECT_EQ(exitCode, 0);
    const QByteArray output = runChild(u"true"_s, exitCode);
    EXPECT_TRUE(output.contains("A skipped test is a failure here: told to")) << output.toStdString();
    EXPECT_FALSE(output.contains("[  SKIPPED ]")) << output.toStdString();
    EXPECT_EQ(exitCode, 1);
}

TEST(Preparation, FailsAProgramThatEndsInTheMiddleOfItsTests) {
    if (qEnvironmentVariableIsSet(kIsChild))
        std::exit(0);
    int exitCode = -1;
    EXPECT_TRUE(runChild({}, exitCode).contains("in the middle of its tests"));
    EXPECT_EQ(exitCode, 1);
}

TEST(Preparation, KeepsTheTestsOutOfTheRealHome) {
    const passwd* user = ::getpwuid(::getuid());
    ASSERT_NE(user, nullptr);
    EXPECT_NE(QDir::homePath(), QFile::decodeName(user->pw_dir));
    for (const auto place :
         {QStandardPaths::AppDataLocation, QStandardPaths::GenericDataLocation, QStandardPaths::ConfigLocation,
          QStandardPaths::CacheLocation, QStandardPaths::PicturesLocation, QStandardPaths::DownloadLocation}) {
        const QString folder = QStandardPaths::writableLocation(place);
        EXPECT_TRUE(folder.startsWith(QDir::homePath() + u'/')) << folder.toStdString();
    }
}

} // namespace
} // namespace velloria::tests
