// What docs/plugins.md tells somebody who writes a plug-in is done here to the letter.
#include "platform/plugin.h"
#include "shell/diary_information.h"
#include "support/test_home.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kSources = QStringLiteral(VELLORIA_SOURCES "/");

QString textOf(const QString& file) {
    QFile opened(kSources + file);
    EXPECT_TRUE(opened.open(QIODevice::ReadOnly)) << file.toStdString();
    return QString::fromUtf8(opened.readAll());
}

/// The commands that build the template, a line each.
QString commandsOfPage() {
    const QRegularExpression block(u"\\n\\n((?:    cp [^\\n]*\\n)(?:    [^\\n]*\\n)+)"_s);
    return block.match(textOf(u"docs/plugins.md"_s)).captured(1);
}

class PluginTemplate : public TestHome {
protected:
    /// A person's folder, with the program of this test as theirs.
    PluginTemplate() { QFile::link(home.path(), person.filePath(u"Velloria"_s)); }

    /// What the commands have said; "" when one has failed.
    QString built(const QString& commands) {
        QProcess shell;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, person.path());
        environment.insert(u"CXXFLAGS"_s, u"-Wall -Wextra -Wpedantic -Wconversion -Wno-sign-conversion -Werror"_s);
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(kSources);
        shell.setProcessChannelMode(QProcess::MergedChannels);
        shell.start(u"bash"_s, {u"-ec"_s, commands});
        EXPECT_TRUE(shell.waitForFinished(120'000));
        const QString said = QString::fromUtf8(shell.readAll());
        EXPECT_EQ(shell.exitCode(), 0) << said.toStdString();
        return shell.exitCode() == 0 ? said : QString();
    }

    QTemporaryDir person;
};

TEST_F(PluginTemplate, IsBuiltByTheCommandsOfThePageAndRuns) {
    ASSERT_TRUE(commandsOfPage().contains(u"cmake --build build"_s)) << commandsOfPage().toStdString();
    ASSERT_TRUE(built(commandsOfPage()).contains(u"VellInfo.dll"_s));

    const QString file = session.MyPath + u"VellInfo.dll"_s;
    EXPECT_EQ(platform::Plugin(file).version(), u"1.0.0"_s);
    shell::diaryInformationCommand(run);
    const QString page = session.DataPath + u"VellInfo_result.htm"_s;
    EXPECT_TRUE(bytesOf(page).contains(QByteArray::number(QFileInfo(session.databaseFile()).size())));
    EXPECT_EQ(told().last(), u"navigate: "_s + page);

    // What it refuses and where it fails is told as for any other one.
    const QString diary = session.dbFileName;
    session.dbFileName = u"missing.mdb"_s;
    shell::diaryInformationCommand(run);
    EXPECT_EQ(boxes().last(), u"critical: パスのエラーです"_s);
    session.dbFileName = diary;
    const platform::Plugin plugin(file);
    plugin.use(&velloria_plugin::diary_information, [&](const velloria_diary_information& information) {
        plugin.check(information.set_paths(session.databaseFile().toUtf8().constData(), "/no such folder/page.htm"));
        const QString failure = failureOf([&] { plugin.check(information.run()); });
        EXPECT_TRUE(failure.contains(u"/no such folder/page.htm"_s)) << failure.toStdString();
    });
    const QString lacking = failureOf([&] { plugin.use(&velloria_plugin::ping, [](const auto&...) {}); });
    EXPECT_TRUE(lacking.contains(file)) << lacking.toStdString();
}

TEST_F(PluginTemplate, TheHeaderIsForEveryLanguageThatKnowsC) {
    for (const QString& standard : {u"c99"_s, u"c17"_s})
        built(
            u"cc -std=%1 -Wall -Wextra -pedantic -Werror -fsyntax-only -x c include/velloria_plugin.h"_s.arg(standard));
}

TEST_F(PluginTemplate, NeedsTheHeaderAlone) {
    const QRegularExpression ours(u"#include \"([^\"]+)\""_s);
    QStringList included;
    for (auto found = ours.globalMatch(textOf(u"plugins/template/plugin.cpp"_s)); found.hasNext();)
        included += found.next().captured(1);
    EXPECT_EQ(included, QStringList{u"velloria_plugin.h"_s});
    EXPECT_LE(textOf(u"plugins/template/plugin.cpp"_s).count(u'\n'), 70) << "it is to be read at a glance";
}

TEST_F(PluginTemplate, ThePageTellsEveryMemberOfTheInterface) {
    const QString page = textOf(u"docs/plugins.md"_s);
    const QRegularExpression call(u"\\(\\*(\\w+)\\)"_s);
    QSet<QString> names;
    for (auto found = call.globalMatch(textOf(u"include/velloria_plugin.h"_s)); found.hasNext();)
        names += found.next().captured(1);
    names -= u"velloria_plugin_get_function"_s;
    EXPECT_GT(names.size(), 20);
    for (const QString& name : names)
        EXPECT_TRUE(page.contains(QRegularExpression(u"`%1\\b"_s.arg(name)))) << name.toStdString();
}

} // namespace
} // namespace velloria::tests
