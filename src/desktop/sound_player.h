// Plays the user's sound at the end of an upload.
#pragma once

#include <QObject>

class QMediaPlayer;

namespace velloria::desktop {

/// Plays in the background; what can't be played is silent.
class SoundPlayer : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// A command of the form `Play "FILE"`. Any other one, or one without a file, does nothing. A sound that still
    /// plays gives way.
    void execute(const QString& command);

private:
    QMediaPlayer* m_player = nullptr; ///< made with the first sound: it looks for the machine's devices
};

/// The file of such a command, "" when it names none.
QString soundFileOf(const QString& command);

} // namespace velloria::desktop
