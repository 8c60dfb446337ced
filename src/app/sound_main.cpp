// velloria-sound FILE: plays a sound, beside the diary. Ends with the sound, or with the diary that started it.
#include <QAudioOutput>
#include <QCoreApplication>
#include <QFileInfo>
#include <QMediaPlayer>
#include <QSocketNotifier>
#include <QUrl>

#include <unistd.h>

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2)
        return 2;

    // The diary keeps the other end open while it wants to hear the sound, and writes nothing.
    const QSocketNotifier diary(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&diary, &QSocketNotifier::activated, &application, [] { QCoreApplication::exit(1); });

    QAudioOutput output;
    QMediaPlayer player;
    player.setAudioOutput(&output);
    QObject::connect(&player, &QMediaPlayer::errorOccurred, &application, [] { QCoreApplication::exit(1); });
    QObject::connect(&player, &QMediaPlayer::mediaStatusChanged, &application, [](QMediaPlayer::MediaStatus status) {
        if (status == QMediaPlayer::EndOfMedia)
            QCoreApplication::exit(0);
        else if (status == QMediaPlayer::InvalidMedia)
            QCoreApplication::exit(1);
    });
    // Within the loop, which alone hears of an error.
    QMetaObject::invokeMethod(
        &player,
        [&player, file = QFileInfo(arguments.last()).absoluteFilePath()] {
            player.setSource(QUrl::fromLocalFile(file));
            player.play();
        },
        Qt::QueuedConnection);
    return QCoreApplication::exec();
}
