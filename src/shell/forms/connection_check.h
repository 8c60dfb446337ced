// The button that tries the account of a web server, and the line that says what came of it.
#pragma once

#include "desktop/context.h"
#include "publish/internet.h"

#include <QObject>

#include <functional>
#include <memory>

class QLabel;
class QPushButton;

namespace velloria::shell {

/// What is tried: the boxes as they are at that moment.
struct TriedAccount {
    publish::FtpLogin login;
    QString startFolder;
};

/// The windows are served while a server is waited for, so what was taken from the boxes stays what it was, and the
/// button stops the trial. The end of its window or of the program stops it too.
class ConnectionCheck : public QObject {
    Q_OBJECT
public:
    /// Belongs to the window of `button`.
    ConnectionCheck(desktop::Context& context, QPushButton& button, QLabel& line,
                    std::function<TriedAccount()> account);
    ~ConnectionCheck() override;

private:
    struct Trial {
        TriedAccount account;
        bool isStopWanted = false;
        QString line = {};
    };

    void start();
    void end(const QString& line);
    static void run(desktop::Context& context, Trial& trial);

    desktop::Context& m_context;
    QPushButton& m_button;
    QLabel& m_line;
    QString m_caption; ///< of the button while nothing runs
    std::function<TriedAccount()> m_account;
    std::shared_ptr<Trial> m_trial; ///< the one that runs
};

} // namespace velloria::shell
