#include "shell/forms/connection_check.h"

#include "desktop/command.h"
#include "publish/connection_test.h"

#include <QCoreApplication>
#include <QLabel>
#include <QMdiArea>
#include <QPointer>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace velloria::shell {

ConnectionCheck::ConnectionCheck(desktop::Context& context, QPushButton& button, QLabel& line,
                                 std::function<TriedAccount()> account)
    : QObject(button.window())
    , m_context(context)
    , m_button(button)
    , m_line(line)
    , m_caption(button.text())
    , m_account(std::move(account)) {
    connect(&button, &QPushButton::clicked, this, [this] {
        if (m_trial)
            m_trial->isStopWanted = true;
        else
            start();
    });
}

ConnectionCheck::~ConnectionCheck() {
    if (m_trial)
        m_trial->isStopWanted = true;
}

/// From the main window's turn and not from the click: the window of the button may be gone before the trial's end.
void ConnectionCheck::start() {
    m_trial = std::make_shared<Trial>(Trial{m_account()});
    m_button.setText(u"中止"_s);
    m_line.setText(u"接続しています..."_s);
    const QPointer<ConnectionCheck> self(this);
    QMetaObject::invokeMethod(
        m_context.mdi->window(),
        [self, trial = m_trial, &context = m_context] {
            desktop::runCommand(context.desk, [&] { run(context, *trial); });
            if (self)
                self->end(trial->line);
        },
        Qt::QueuedConnection);
}

void ConnectionCheck::run(desktop::Context& context, Trial& trial) {
    trial.line = u"アップロードが終わってから試してください。"_s;
    // An upload talks with the same server: neither begins while the other one runs.
    context.runs.run(desktop::LongRoutine::Upload, [&] {
        trial.line.clear();
        trial.line = publish::tryConnection(trial.account.login, trial.account.startFolder, [&] {
                         QCoreApplication::processEvents();
                         return !trial.isStopWanted && !context.runs.isEnding();
                     }).line;
    });
}

void ConnectionCheck::end(const QString& line) {
    m_trial.reset();
    m_button.setText(m_caption);
    m_line.setText(line);
    m_line.setToolTip(line);
    m_context.desk.status(line);
}

} // namespace velloria::shell
