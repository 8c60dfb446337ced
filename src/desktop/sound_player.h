// Plays the user's sound at the end of an upload.
#pragma once

#include <QObject>

class QProcess;

namespace velloria::desktop {

/// Plays in the background; what can't be played is silent. The sound comes from a small program of its own: the
/// machine's multimedia library takes a program down with it where one of its parts is missing or broken.
class SoundPlayer : public QObject {
    Q_OBJECT
public:
    /// `program` plays the one file that it is given, as long as its standard input is open.
    explicit SoundPlayer(QString program, QObject* parent = nullptr);
    ~SoundPlayer() override;

    /// A command of the form `Play "FILE"`. Any other one, or one without a file, does nothing. A sound that still
    /// plays gives way; the end of this program ends it too.
    void execute(const QString& command);

private:
    QString m_program;
    QProcess* m_playing = nullptr; ///< the last one; it may have ended
};

/// The file of such a command, "" when it names none.
QString soundFileOf(const QString& command);

} // namespace velloria::desktop
