#include "desktop/sound_player.h"

#include "platform/directory.h"

#include <QProcess>
#include <QRegularExpression>

#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::desktop {

QString soundFileOf(const QString& command) {
    static const QRegularExpression kPlay(u"^Play \"(.+)\"$"_s, QRegularExpression::CaseInsensitiveOption);
    return kPlay.match(command).captured(1);
}

SoundPlayer::SoundPlayer(QString program, QObject* parent)
    : QObject(parent)
    , m_program(std::move(program)) {}

SoundPlayer::~SoundPlayer() {
    for (QProcess* playing : findChildren<QProcess*>()) {
        playing->kill();
        playing->waitForFinished();
    }
}

void SoundPlayer::execute(const QString& command) {
    const QString file = platform::existingPath(soundFileOf(command));
    if (!platform::fileExists(file))
        return;
    if (m_playing && m_playing->state() != QProcess::NotRunning) {
        connect(m_playing, &QProcess::finished, m_playing, &QObject::deleteLater);
        m_playing->kill();
    } else {
        delete m_playing;
    }
    m_playing = new QProcess(this);
    m_playing->setStandardOutputFile(QProcess::nullDevice());
    m_playing->setStandardErrorFile(QProcess::nullDevice());
    m_playing->start(m_program, {file});
}

} // namespace velloria::desktop
