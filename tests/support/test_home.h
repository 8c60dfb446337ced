// A program folder of its own for one test, started at a fixed time.
#pragma once

#include "core/session.h"
#include "platform/clock.h"
#include "platform/scripted_desk.h"
#include "site/site_settings.h"
#include "store/diary_store.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace velloria::tests {

/// Fixture: a home with every factory file, the session of its first start, and words to fill and read it.
class TestHome : public ::testing::Test {
protected:
    TestHome();

    /// Starts (again) at "yyyy/mm/dd hh:nn:ss".
    void startAt(const QString& now);

    store::DiaryStore diary() const { return {session.databaseFile(), *clock}; }

    /// Saves an entry as the editor does and returns its number. A null text is stored as a missing value.
    int write(const QString& day, const QString& title, const QString& contents = QStringLiteral("text"));
    int write(const store::Entry& entry);
    /// An entry as an untouched editor would save it.
    static store::Entry entryOf(const QString& day, const QString& title);

    /// Runs SQL on the diary behind the program's back.
    void sql(const QString& statement);
    /// The first column of the first row as text; "NULL" for a missing value, "" without a row.
    QString sqlValue(const QString& query);

    /// Writes a site setting, for example setSetting(site::keys::frame::kFrameOn, "1").
    void setSetting(const site::SiteKey& key, const QString& value);
    void removeSetting(const site::SiteKey& key);
    /// Every key of the generator gone: what is left is what the code itself prints.
    void clearSettings();
    void writePiece(const QString& name, const QByteArray& bytes);

    /// The site folder, made and set as the target of Save HTML with this month file.
    void useSite(const QString& fileName = QStringLiteral("index.htm"));

    QString path(const QString& relative) const { return home.filePath(relative); }
    bool exists(const QString& file) const;
    QByteArray bytesOf(const QString& file) const;
    /// A page as text, line ends as they are.
    QString pageOf(const QString& file) const;
    void writeFile(const QString& file, const QByteArray& bytes) const;

    QTemporaryDir home;
    core::Session session;
    platform::ScriptedDesk desk;
    std::unique_ptr<platform::FixedClock> clock;
};

} // namespace velloria::tests
