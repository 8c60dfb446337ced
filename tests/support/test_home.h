// A program folder of its own for one test, started at a fixed time.
#pragma once

#include "core/run.h"
#include "core/setting.h"
#include "platform/failure.h"
#include "shell/startup.h"
#include "site/site_settings.h"
#include "store/diary_store.h"
#include "support/print.h"
#include "support/scripted_desk.h"

#include <gtest/gtest.h>

#include <QMap>
#include <QTemporaryDir>

#include <functional>

namespace velloria::tests {

/// Fixture: a home with every factory file and no plug-in, never started.
class FactoryHome : public ::testing::Test {
protected:
    FactoryHome();

    shell::StartResult start(const std::optional<shell::Login>& login = std::nullopt);
    void setNow(const QString& now); ///< "yyyy/mm/dd hh:nn:ss"

    QString path(const QString& relative) const { return home.filePath(relative); }
    bool exists(const QString& file) const;
    QByteArray bytesOf(const QString& file) const;
    /// A page as text, line ends as they are.
    QString pageOf(const QString& file) const;
    void writeFile(const QString& file, const QByteArray& bytes) const;
    /// The boxes that were shown, as "critical: text", line ends as they are.
    QStringList boxes() const;
    /// The permission bits of a file or folder.
    static unsigned modeOf(const QString& file);
    /// Every file below `folder` with its bytes, to tell whether anything has changed.
    static QMap<QString, QByteArray> contentOf(const QString& folder);

    /// The titles of all boxes.
    QSet<QString> boxTitles() const;
    /// What the first status panel shows; "" when nothing was written there.
    QString lastStatus() const;
    /// What the desk was told in turn: the shapes of the pointer, the texts of boxes, "failure" for a failure box.
    QStringList turns() const;
    /// Every event of the desk in turn but the pointer's, as "status: text" or "navigate: address".
    QStringList told() const;
    /// The last file or folder dialog.
    QJsonObject lastFileEvent() const;

    QTemporaryDir home;
    core::Session session;
    ScriptedDesk desk;
    platform::FixedClock clock{QDateTime()};
    const core::Run run{session, clock, desk};
};

/// Fixture: a home after its first start, the session of that start, and words to fill and read it.
class TestHome : public FactoryHome {
protected:
    TestHome();

    /// Starts (again) at "yyyy/mm/dd hh:nn:ss".
    void startAt(const QString& now);

    store::DiaryStore diary() const { return store::DiaryStore(run); }

    /// Saves an entry as the editor does and returns its number. A null text is stored as a missing value.
    int write(const QString& day, const QString& title, const QString& contents = QStringLiteral("text"));
    int write(const store::Entry& entry);
    /// An entry as an untouched editor would save it.
    static store::Entry entryOf(const QString& day, const QString& title);

    /// Runs SQL on the diary behind the program's back.
    void sql(const QString& statement);
    /// From here on the engine refuses every row of Contents of which `condition` holds.
    void refuseRows(const QString& condition);
    /// The first column of the first row as text; "NULL" for a missing value, "" without a row.
    QString sqlValue(const QString& query);

    /// Writes a site setting, for example setSetting(site::keys::frame::kFrameOn, "1").
    void setSetting(const core::Setting& key, const QString& value);
    void removeSetting(const core::Setting& key);
    /// Every key of the generator gone: what is left is what the code itself prints.
    void clearSettings();
    void writePiece(const QString& name, const QByteArray& bytes);

    /// The site folder, made and set as the target of Save HTML with this month file.
    void useSite(const QString& fileName = QStringLiteral("index.htm"));
};

/// Runs `action` in a process of its own and returns whether it came back with true.
bool holdsInChild(const std::function<bool()>& action);
/// The same without the rights of the superuser, whoever runs the tests.
bool holdsForNobody(const std::function<bool()>& action);

/// What a refusal says, in one line; "" when nothing was thrown.
template <typename Action>
QString failureOf(Action action) {
    try {
        action();
    } catch (const platform::Failure& failure) {
        return failure.line();
    }
    return {};
}

} // namespace velloria::tests
