#include "desktop/sound_player.h"

#include "platform/directory.h"

#include <QAudioOutput>
#include <QMediaPlayer>
#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace velloria::desktop {

QString soundFileOf(const QString& command) {
    static const QRegularExpression kPlay(u"^Play \"(.+)\"$"_s, QRegularExpression::CaseInsensitiveOption);
    return kPlay.match(command).captured(1);
}

void SoundPlayer::execute(const QString& command) {
    const QString file = platform::existingPath(soundFileOf(command));
    if (!platform::fileExists(file))
        return;
    if (!m_player) {
        m_player = new QMediaPlayer(this);
        m_player->setAudioOutput(new QAudioOutput(m_player));
    }
    m_player->setSource(QUrl::fromLocalFile(file));
    m_player->play();
}

} // namespace velloria::desktop
