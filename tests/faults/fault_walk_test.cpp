// Each command on a disk that refuses once, from some moment on, or with the end of the program, at every call that the
// command makes. What it changes is then whole as it was or whole as it should be, nobody's text is lost, and where
// something is missing the command has said so.
#include "core/keys.h"
#include "core/settings_change.h"
#include "editor/draft.h"
#include "editor/edited_entry.h"
#include "exchange/clipboard_import.h"
#include "registers/file_registration.h"
#include "registers/log_registration.h"
#include "shell/backup_commands.h"
#include "site/customize_set_commands.h"
#include "site/customize_sets.h"
#include "site/site_home.h"
#include "site/site_rebuild.h"
#include "site/text_piece.h"
#include "store/database_file.h"
#include "store/database_repair.h"
#include "store/diary_backups.h"
#include "store/genre_list.h"
#include "store/migration.h"
#include "store/optimize_command.h"
#include "support/faulty_disk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>

#include <sqlite3.h>

#include <iostream>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// A missing file is one without value.
using Files = QMap<QString, QByteArray>;

/// Whether all that a command changes belongs together, or each row of the diary and each line of a list by itself.
enum class Whole { Command, Line };

struct Command {
    std::function<void()> run;
    QStringList quiet{}; ///< endings of files in which a change that is refused is passed over by rule
    Whole whole = Whole::Command;
    QStringList extra{}; ///< endings of whole files that may stay besides when something fails
};

/// A copy of whoever broke off: the next command takes these away or, the journal, back.
bool isLeftover(const QString& file) {
    return file.contains(u"/.velltmp-"_s) || file.endsWith(u"-journal"_s) || file.endsWith(u"/diary-backup.tmp"_s);
}

/// A working file of an update, which the next one makes anew.
bool isWorkingFile(const QString& file) {
    return file.endsWith(u"/old.mdb"_s) || file.endsWith(u"/new.mdb"_s);
}

/// Whether each line stands in one of the others.
bool hasLinesOf(const QByteArray& text, const QByteArray& one, const QByteArray& other) {
    const QList<QByteArray> known = one.split('\n') + other.split('\n');
    const QList<QByteArray> lines = text.split('\n');
    return std::all_of(lines.begin(), lines.end(), [&](const QByteArray& line) { return known.contains(line); });
}

/// The lists of pages, one behind the other.
QByteArray listsOf(const Files& files) {
    QByteArray lists;
    for (auto file = files.begin(); file != files.end(); ++file) {
        if (file.key().endsWith(u".tmp"_s))
            lists += file.value() + '\n';
    }
    return lists;
}

class FaultWalk : public SiteHome {
protected:
    FaultWalk() {
        setSetting(keys::general::kHPTitle, u"My diary"_s);
        divide(1, true);
        turnFeedsOn();
        write(u"2004/03/05"_s, u"March"_s);
        write(u"2004/04/05"_s, u"April"_s);
        write(u"2004/05/05"_s, u"yesterday"_s);
        write(u"2004/05/06"_s, u"first"_s, QString(3000, u'a'));
        write(u"2004/05/06"_s, u"second"_s, QString(3000, u'b'));
        putPart(u"p.gif"_s);
        registerFile(u"p.gif"_s, u"2004/05/06"_s);
        writeFile(path(u"in.gif"_s), "picture");
        writeFile(path(u"200402.htm"_s), "page");
        store::readGenres(run);
        saver().SaveHTML();
        write(u"2004/05/06"_s, u"third"_s);
    }

    /// `stride` above 1 tries every so many of the calls alone.
    void walk(const Command& command, int stride = 1);

private:
    struct State {
        Files files;
        QByteArray rows; ///< of the diary
        QSet<QByteArray> rescued;
    };

    QString database() const { return session.databaseFile().sliced(home.path().size()); }

    State state() {
        State state{{}, rowsOfDiary(), {}};
        state.files = contentOf(home.path());
        const QByteArray rescue = state.files.take(session.UserPath.sliced(home.path().size()) + u"rescue.jsonl"_s);
        for (const QByteArray& line : rescue.split('\n')) {
            if (!line.isEmpty())
                state.rescued += line;
        }
        state.files.remove(database());
        return state;
    }

    QByteArray rowsOfDiary() const {
        sqlite3* handle = nullptr;
        const auto close = qScopeGuard([&] { sqlite3_close(handle); });
        QByteArray rows;
        const auto take = [](void* target, int count, char** values, char**) {
            for (int i = 0; i < count; ++i)
                *static_cast<QByteArray*>(target) += QByteArray(values[i] ? values[i] : "NULL") + '\t';
            *static_cast<QByteArray*>(target) += '\n';
            return 0;
        };
        if (sqlite3_open_v2(QFile::encodeName(session.databaseFile()).constData(), &handle, SQLITE_OPEN_READWRITE,
                            nullptr) != 0)
            return "cannot be opened";
        for (const char* query : {"PRAGMA integrity_check", "SELECT * FROM Contents ORDER BY RecordID",
                                  "SELECT * FROM FileDB ORDER BY FileID", "SELECT * FROM LogDB ORDER BY rowid"}) {
            if (sqlite3_exec(handle, query, take, &rows, nullptr) != SQLITE_OK)
                rows += sqlite3_errmsg(handle);
        }
        return rows;
    }

    void restore(const Files& files) {
        const Files now = contentOf(home.path());
        for (const QString& file : now.keys()) {
            if (!files.contains(file) && now[file] != "(folder)")
                QFile::remove(home.path() + file);
        }
        for (auto file = files.begin(); file != files.end(); ++file) {
            if (file.value() == "(folder)")
                QDir().mkpath(home.path() + file.key());
            else if (!now.contains(file.key()) || now[file.key()] != file.value())
                writeFile(home.path() + file.key(), file.value());
        }
        session = m_session;
        desk.answers = m_answers;
        desk.events = {};
    }

    /// Runs it; what it told of its failure, nothing when it came to its end without a word.
    std::optional<QString> refusalOf(const Command& command) {
        try {
            command.run();
        } catch (const platform::Failure& failure) {
            return failure.line();
        }
        const QStringList failures = desk.texts(u"failure"_s);
        return failures.isEmpty() ? std::nullopt : std::optional(failures.join(u'\n'));
    }

    bool step(const Command& command, Fault fault, int n);
    void expectWhole(const State& now, const Command& command, bool isComplete, bool mayLeaveHalves);

    core::Session m_session;
    QJsonArray m_answers;
    Files m_bytes; ///< of the home before the command
    State m_before;
    State m_after;
};

void FaultWalk::walk(const Command& command, int stride) {
    m_session = session;
    m_answers = desk.answers;
    m_before = state();
    m_bytes = contentOf(home.path());
    ASSERT_EQ(refusalOf(command), std::nullopt);
    m_after = state();
    ASSERT_TRUE(m_after.files != m_before.files || m_after.rows != m_before.rows) << "the command changes nothing";

    int faults = 0;
    for (const Fault fault : {Fault::FullDisk, Fault::IoError, Fault::BrokenDisk, Fault::KilledProgram}) {
        int n = 1;
        for (; !HasFailure() && step(command, fault, n); n += stride)
            ++faults;
        if (HasFailure()) {
            std::cerr << "fault " << int(fault) << " at call " << n << std::endl;
            return;
        }
    }
    // Told in front of the last line of ./test.
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    std::cout << "FAULTS " << test->test_suite_name() << "." << test->name() << ": " << faults << std::endl;
}

/// False when the command ended before the n-th call.
bool FaultWalk::step(const Command& command, Fault fault, int n) {
    restore(m_bytes);
    std::optional<QString> refusal;
    bool hasFailed = false;
    bool isKilled = false;
    if (fault == Fault::KilledProgram) {
        const pid_t child = ::fork();
        if (child == 0) {
            FaultyDisk disk(home.path());
            disk.failAt(fault, n);
            refusal = refusalOf(command);
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        isKilled = WIFEXITED(status) && WEXITSTATUS(status) == FaultyDisk::kKilled;
        hasFailed = isKilled;
        EXPECT_TRUE(isKilled || (WIFEXITED(status) && WEXITSTATUS(status) == 0)) << "status " << status;
    } else {
        FaultyDisk disk(home.path());
        disk.failAt(fault, n);
        refusal = refusalOf(command);
        hasFailed = disk.hasFailed();
    }
    EXPECT_NE(refusal, QString()) << "a failure without a word";
    const State now = state();
    expectWhole(now, command, !refusal && !isKilled, isKilled || fault == Fault::BrokenDisk);
    if (!isKilled || HasFailure())
        return hasFailed;

    // Whoever starts over gets it all.
    session = m_session;
    desk.answers = {u"yes"_s, u"yes"_s, u"yes"_s};
    if (now.rows == m_before.rows) {
        EXPECT_EQ(refusalOf(command), std::nullopt);
        EXPECT_EQ(state().rows, m_after.rows);
    }
    return hasFailed;
}

void FaultWalk::expectWhole(const State& now, const Command& command, bool isComplete, bool mayLeaveHalves) {
    const bool isByLine = command.whole == Whole::Line;
    const auto isWhole = [&](const auto& value, const auto& before, const auto& after, bool mayStay) {
        return value == after || (mayStay && value == before);
    };
    EXPECT_TRUE(isWhole(now.rows, m_before.rows, m_after.rows, !isComplete) ||
                (isByLine && !isComplete && hasLinesOf(now.rows, m_before.rows, m_after.rows)))
        << now.rows.toStdString();
    EXPECT_TRUE(now.rescued.contains(m_before.rescued));
    EXPECT_TRUE(now.rows == m_before.rows || isByLine || now.rescued.contains(m_after.rescued))
        << "a text is in the diary no more, and nowhere else";
    QStringList names = now.files.keys() + m_before.files.keys() + m_after.files.keys();
    names.removeDuplicates();
    for (const QString& name : names) {
        const auto ends = [&](const QString& ending) { return name.endsWith(ending); };
        const bool isExtra = std::any_of(command.extra.begin(), command.extra.end(), ends);
        if ((isLeftover(name) && mayLeaveHalves) || isExtra || (isWorkingFile(name) && !isComplete) ||
            name.endsWith(u".lock"_s))
            continue;
        const auto of = [&](const State& state) {
            return state.files.contains(name) ? std::optional(state.files[name]) : std::nullopt;
        };
        const bool isQuiet = std::any_of(command.quiet.begin(), command.quiet.end(), ends);
        const bool isList = isByLine && !isComplete && name.endsWith(u".tmp"_s);
        EXPECT_TRUE(isWhole(of(now), of(m_before), of(m_after), !isComplete || isQuiet) ||
                    (isList && hasLinesOf(now.files[name], listsOf(m_before.files), listsOf(m_after.files))))
            << name.toStdString() << ": " << of(now).value_or("(missing)").left(300).toStdString();
    }
}

TEST_F(FaultWalk, SavingAnEntryAnew) {
    walk({[this] {
        editor::EditedEntry edited(run);
        edited.show(1, diary().LoadEntry(u"2004/05/06"_s, 1));
        store::Entry entry = *diary().LoadEntry(u"2004/05/06"_s, 2);
        entry.contents = u"anew"_s;
        edited.save(entry);
    }});
}

TEST_F(FaultWalk, DeletingAnEntry) {
    walk({[this] { editor::EditedEntry(run).remove(u"2004/05/06"_s, 1); }});
}

TEST_F(FaultWalk, ImportingFromTheClipboard) {
    desk.answers = {u"yes"_s};
    walk({[this] {
              exchange::ClipboardImport(run).ImportFormattedClipboard(
                  u"＜日付＞2004/05/05＜／日付＞＜タイトル＞a＜／タイトル＞＜内容＞b＜／内容＞"_s
                  u"＜日付＞2004/01/05＜／日付＞＜タイトル＞c＜／タイトル＞＜内容＞d＜／内容＞"_s,
                  exchange::ParagraphTags::None);
          },
          {},
          Whole::Line});
}

TEST_F(FaultWalk, TheCopyOfADay) {
    walk({[this] { store::makeBackup(run); }});
}

TEST_F(FaultWalk, AnotherCopyOfADay) {
    store::makeBackup(run);
    write(u"2004/05/06"_s, u"fourth"_s);
    walk({[this] { store::makeBackup(run); }});
}

TEST_F(FaultWalk, RestoringACopy) {
    store::makeBackup(run);
    setNow(u"2004/05/07 08:00:00"_s);
    write(u"2004/05/06"_s, u"fourth"_s);
    desk.answers = {u"yes"_s};
    walk({[this] { shell::restoreBackupCommand(run, u"diary-20040506.mdb"_s); },
          {u"/diary-20040507.mdb"_s},
          Whole::Command,
          {u"/diarymdb.replaced.bak"_s}});
}

TEST_F(FaultWalk, SaveHtml) {
    walk({[this] { saver().SaveHTML(); }, {u"diary.ini"_s}});
}

/// What it has registered by then stays, and the next run completes it.
TEST_F(FaultWalk, TheLogOfAMonth) {
    walk({[this] { archive().save(u"2004"_s, u"4"_s); }, {}, Whole::Line});
}

/// Its logs and pages are those that the tests above walk call by call.
TEST_F(FaultWalk, RebuildingTheSite) {
    walk({[this] { site::rebuildSite(run, {}, {}); }, {u"diary.ini"_s}, Whole::Line}, 7);
}

TEST_F(FaultWalk, RegisteringAFile) {
    walk({[this] { registers::FileRegistration(run).ResistFile(path(u"in.gif"_s), u"2004/05/05"_s, 1); },
          {u"diary.ini"_s}});
}

TEST_F(FaultWalk, RegisteringALog) {
    walk({[this] { registers::LogRegistration(run).ResistLogFile(path(u"200402.htm"_s), u"2004"_s, u"2"_s); },
          {u"diary.ini"_s}});
}

TEST_F(FaultWalk, AddingAGenre) {
    walk({[this] { store::addGenres(run, {u"new"_s}); }});
}

TEST_F(FaultWalk, KeepingADraft) {
    walk({[this] { editor::DraftFile(run).write({entryOf(u"2004/05/06"_s, u"unsaved"_s)}); }});
}

TEST_F(FaultWalk, ChangingSettings) {
    walk({[this] {
        core::SettingsChange change;
        change.set(session, core::keys::kFtpId, u"id"_s);
        change.set(session, core::keys::kFtpUrl, u"h.example"_s);
        change.write();
    }});
}

TEST_F(FaultWalk, TakingTheBackupOfASet) {
    walk({[this] { site::CustomizeBackup(session).take(); }});
}

TEST_F(FaultWalk, TakingASetBack) {
    site::CustomizeBackup backup(session);
    backup.take();
    setSetting(keys::general::kHPTitle, u"tried out"_s);
    walk({[&] {
        backup.restore();
        site::CustomizeBackup(session).drop();
    }});
}

TEST_F(FaultWalk, DeletingACustomizeSet) {
    writeFile(site::customizeSetFile(session, u"next"_s), "[General]\r\n");
    const QString name = site::selectedCustomizeSet(session);
    walk({[this, name] {
        if (exists(site::customizeSetFile(session, name)))
            site::deleteCustomizeSet(session, name);
    }});
}

TEST_F(FaultWalk, SavingATextPiece) {
    site::writeTextPiece(session, u"one"_s, u"old"_s);
    walk({[this] { site::writeTextPiece(session, u"one"_s, u"new"_s); }});
}

TEST_F(FaultWalk, RepairingTheDiary) {
    sql(u"UPDATE Contents SET Number = Number + 3 WHERE Day = '2004/05/06'"_s);
    sql(u"UPDATE Contents SET Day = '2004/3/5' WHERE Day = '2004/03/05'"_s);
    sql(u"UPDATE FileDB SET Number = 4"_s);
    walk({[this] { store::repairDatabase(run); }});
}

TEST_F(FaultWalk, BackingTheDiaryUp) {
    walk({[this] { store::backUpDatabase(session.databaseFile(), session.UserPath + u"diarymdb.bak"_s); }});
}

TEST_F(FaultWalk, OptimizingTheDiary) {
    sql(u"DELETE FROM Contents WHERE Title = 'March'"_s);
    desk.answers = {u"yes"_s};
    walk({[this] {
        desk.answers = {u"yes"_s};
        store::optimizeCommand(run);
    }});
}

/// Its layout is the present one, but for the table that becomes four files.
TEST_F(FaultWalk, UpdatingAnOldDiary) {
    sql(u"CREATE TABLE [Option] (Header TEXT, Footer TEXT, Header_Log TEXT, Footer_Log TEXT)"_s);
    sql(u"INSERT INTO [Option] VALUES ('new', 'b', 'c', 'd')"_s);
    sql(u"UPDATE DBInfo SET VersionInfo = 100"_s);
    writeFile(session.DataPath + u"Customize/default_up.htm"_s, "mine");
    // Without the day's copy the start goes on: "diarymdb.bak" has the old diary.
    walk({[this] { store::updateOldDiary(run, [] {}); }, {u"diary.ini"_s, u"/diary-20040506.mdb"_s}});
}

} // namespace
} // namespace velloria::tests
