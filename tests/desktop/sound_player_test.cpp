#include "desktop/sound_player.h"

#include "support/print.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <fstream>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kProgram = QStringLiteral(VELLORIA_PROGRAM_FOLDER "/velloria-sound");

/// Silence of this length, 8 kHz, 8 bit.
std::string silence(unsigned seconds) {
    const auto number = [](unsigned value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text += char(value >> (8 * i) & 0xFFU);
        return text;
    };
    const unsigned size = 8000 * seconds;
    return "RIFF" + number(36 + size, 4) + "WAVEfmt " + number(16, 4) + number(1, 2) + number(1, 2) + number(8000, 4) +
           number(8000, 4) + number(1, 2) + number(8, 2) + "data" + number(size, 4) + std::string(size, '\x80');
}

class SoundPlayer : public ::testing::Test {
protected:
    QString write(const QString& name, const std::string& bytes) const {
        std::ofstream(folder.filePath(name).toStdString(), std::ios::binary) << bytes;
        return folder.filePath(name);
    }
    /// A program in the place of the one that plays.
    QString script(const std::string& lines) const {
        const QString file = write(u"player"_s, "#!/bin/sh\n" + lines + "\n");
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file;
    }
    static void play(desktop::SoundPlayer& player, const QString& file) { player.execute(u"Play \"%1\""_s.arg(file)); }
    static QProcess* processOf(const desktop::SoundPlayer& player) { return player.findChild<QProcess*>(); }
    static bool ends(const QProcess& process) {
        return waitFor([&] { return process.state() == QProcess::NotRunning; });
    }

    QTemporaryDir folder;
};

TEST_F(SoundPlayer, TakesTheFileOutOfTheCommand) {
    EXPECT_EQ(desktop::soundFileOf(u"Play \"/a b/表.wav\""_s), u"/a b/表.wav"_s);
    EXPECT_EQ(desktop::soundFileOf(u"Play \"\""_s), u""_s);
    EXPECT_EQ(desktop::soundFileOf(u"Play"_s), u""_s);
    EXPECT_EQ(desktop::soundFileOf(u"Stop \"a.wav\""_s), u""_s);
}

TEST_F(SoundPlayer, DoesNothingWithoutAFile) {
    desktop::SoundPlayer player(kProgram);
    play(player, {});
    play(player, folder.filePath(u"missing.wav"_s));
    play(player, folder.path());
    EXPECT_EQ(processOf(player), nullptr);
}

TEST_F(SoundPlayer, PlaysInTheBackgroundToTheEnd) {
    desktop::SoundPlayer player(kProgram);
    play(player, write(u"音 1.wav"_s, silence(1)));
    ASSERT_NE(processOf(player), nullptr);
    ASSERT_TRUE(ends(*processOf(player)));
    EXPECT_EQ(processOf(player)->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(processOf(player)->exitCode(), 0);
}

TEST_F(SoundPlayer, IsSilentAboutWhatItCannotPlay) {
    desktop::SoundPlayer player(kProgram);
    play(player, write(u"broken.wav"_s, "no sound"));
    ASSERT_TRUE(ends(*processOf(player)));
    EXPECT_EQ(processOf(player)->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(processOf(player)->exitCode(), 1);
}

TEST_F(SoundPlayer, OutlivesAMultimediaLibraryWithoutItsParts) {
    const QString none = folder.filePath(u"none"_s);
    const char* const variables[] = {"GST_PLUGIN_SYSTEM_PATH_1_0", "GST_PLUGIN_SYSTEM_PATH",
                                     "GST_PLUGIN_PATH_1_0",        "GST_PLUGIN_PATH",
                                     "GST_REGISTRY_1_0",           "GST_REGISTRY"};
    const auto restore = qScopeGuard([&] { std::for_each(std::begin(variables), std::end(variables), qunsetenv); });
    for (const char* variable : variables)
        qputenv(variable, none.toUtf8());
    desktop::SoundPlayer player(kProgram);
    play(player, write(u"a.wav"_s, silence(1)));
    ASSERT_TRUE(ends(*processOf(player))) << "it neither played nor gave up";
    EXPECT_FALSE(processOf(player)->exitStatus() == QProcess::NormalExit && processOf(player)->exitCode() == 0)
        << "nothing was hidden";
}

TEST_F(SoundPlayer, OutlivesAPlayerThatBreaksDownOrIsNotThere) {
    const QString file = write(u"a.wav"_s, silence(1));
    desktop::SoundPlayer broken(script("kill -SEGV $$"));
    play(broken, file);
    ASSERT_TRUE(ends(*processOf(broken)));
    EXPECT_EQ(processOf(broken)->exitStatus(), QProcess::CrashExit);
    desktop::SoundPlayer missing(folder.filePath(u"none"_s));
    play(missing, file);
    ASSERT_TRUE(ends(*processOf(missing)));
    EXPECT_EQ(processOf(missing)->error(), QProcess::FailedToStart);
}

TEST_F(SoundPlayer, GivesWayToTheNextSoundAndEndsWithTheDiary) {
    const QString file = write(u"a.wav"_s, silence(600));
    qint64 last = 0;
    {
        desktop::SoundPlayer player(kProgram);
        play(player, file);
        QProcess* first = processOf(player);
        ASSERT_TRUE(first->waitForStarted());
        bool hasEnded = false;
        QObject::connect(first, &QProcess::finished, [&] { hasEnded = true; });
        play(player, file);
        EXPECT_TRUE(waitFor([&] { return hasEnded && player.findChildren<QProcess*>().size() == 1; }));
        ASSERT_TRUE(processOf(player)->waitForStarted());
        last = processOf(player)->processId();
        EXPECT_TRUE(QFile::exists(u"/proc/%1"_s.arg(last)));
    }
    EXPECT_FALSE(QFile::exists(u"/proc/%1"_s.arg(last)));
}

TEST_F(SoundPlayer, IsHeardNoLongerThanADiaryThatIsKilled) {
    QProcess playing;
    playing.start(kProgram, {write(u"a.wav"_s, silence(600))});
    ASSERT_TRUE(playing.waitForStarted());
    EXPECT_FALSE(playing.waitForFinished(2000));
    playing.closeWriteChannel(); // as the kernel does it for the dead
    EXPECT_TRUE(playing.waitForFinished(kPatienceMs));
    EXPECT_EQ(playing.exitCode(), 1);
}

} // namespace
} // namespace velloria::tests
