// The Desk of the command line tool: answers from a file, from the terminal, or No.
#pragma once

#include "platform/event_desk.h"

#include <QElapsedTimer>
#include <QJsonArray>

namespace velloria::cli {

class TerminalDesk : public platform::EventDesk {
public:
    bool showsEvents = false;          ///< each event is one JSON line on standard error
    bool answersYes = false;           ///< every question is answered Yes
    std::optional<QJsonArray> answers; ///< the script; when it is used up: No, cancel

    /// Nobody sees a status text here but with the events.
    void status(const QString& text) override;

    /// Told at every row of a diary, of which nobody could read each: the line is anew at a new text and now and then.
    void updaterWindow(const platform::UpdaterWindow& shown) override;
    void closeUpdaterWindow() override { endProgress(); }

    /// The event, and in every mode the reason in one line.
    void failure(const platform::Failure& failure) override;

    /// Ends the progress line, if one is shown.
    void endProgress();

protected:
    void record(const QJsonObject& event) override;
    bool answerYesNo(const QJsonObject& question) override;
    std::optional<QString> answerText(const QJsonObject& question) override;
    std::optional<QString> answerSecret(const QJsonObject& question) override;

private:
    std::optional<QString> scriptedText();
    void showProgress(const QString& text, int value, int max);

    bool m_hasProgressLine = false;
    QString m_updaterText;        ///< what the line was made of
    QElapsedTimer m_sinceUpdater; ///< and since when it is there
};

} // namespace velloria::cli
