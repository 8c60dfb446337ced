#include "desktop/sound_player.h"

#include "support/print.h"

#include <gtest/gtest.h>

#include <QMediaPlayer>
#include <QTemporaryDir>
#include <QTest>

#include <fstream>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

TEST(SoundPlayer, TakesTheFileOutOfTheCommand) {
    EXPECT_EQ(desktop::soundFileOf(u"Play \"/a b/表.wav\""_s), u"/a b/表.wav"_s);
    EXPECT_EQ(desktop::soundFileOf(u"Play \"\""_s), u""_s);
    EXPECT_EQ(desktop::soundFileOf(u"Play"_s), u""_s);
    EXPECT_EQ(desktop::soundFileOf(u"Stop \"a.wav\""_s), u""_s);
}

TEST(SoundPlayer, IsSilentAboutWhatItCannotPlay) {
    QTemporaryDir folder;
    std::ofstream(folder.filePath(u"broken.wav"_s).toStdString()) << "no sound";
    desktop::SoundPlayer player;
    player.execute(u"Play \"\""_s);
    player.execute(u"Play \"%1\""_s.arg(folder.filePath(u"missing.wav"_s)));
    player.execute(u"Play \"%1\""_s.arg(folder.path()));
    EXPECT_EQ(player.findChild<QMediaPlayer*>(), nullptr);
    player.execute(u"Play \"%1\""_s.arg(folder.filePath(u"broken.wav"_s)));
    auto* media = player.findChild<QMediaPlayer*>();
    ASSERT_NE(media, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return media->error() != QMediaPlayer::NoError; }));
}

/// One second of silence, 8 kHz, 8 bit.
std::string silence() {
    const auto number = [](unsigned value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text += char(value >> (8 * i) & 0xFFU);
        return text;
    };
    return "RIFF" + number(36 + 8000, 4) + "WAVEfmt " + number(16, 4) + number(1, 2) + number(1, 2) + number(8000, 4) +
           number(8000, 4) + number(1, 2) + number(8, 2) + "data" + number(8000, 4) + std::string(8000, '\x80');
}

TEST(SoundPlayer, PlaysInTheBackground) {
    QTemporaryDir folder;
    const QString file = folder.filePath(u"音 1.wav"_s);
    std::ofstream(file.toStdString(), std::ios::binary) << silence();
    desktop::SoundPlayer player;
    player.execute(u"Play \"%1\""_s.arg(file));
    auto* media = player.findChild<QMediaPlayer*>();
    ASSERT_NE(media, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return media->duration() > 0; })) << media->errorString().toStdString();
    EXPECT_EQ(media->error(), QMediaPlayer::NoError) << media->errorString().toStdString();
}

} // namespace
} // namespace velloria::tests
