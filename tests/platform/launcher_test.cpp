#include "platform/launcher.h"

#include "support/patience.h"
#include "support/test_home.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QThread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// Folders of their own for the home, the working folder and the search path.
class Launcher : public FactoryHome {
protected:
    Launcher()
        : m_path(qgetenv("PATH"))
        , m_folder(QDir::currentPath()) {
        for (const QString& name : {u"home"_s, u"here"_s, u"path"_s})
            QDir().mkdir(path(name));
        QDir::setCurrent(path(u"here"_s));
        qputenv("PATH", m_path + ':' + path(u"path"_s).toUtf8());
    }
    ~Launcher() override {
        qputenv("PATH", m_path);
        QDir::setCurrent(m_folder);
    }

    /// What the search finds, relative to the fixture's folder; "" when it finds nothing.
    QString found(const QString& name) {
        QString file = u"left from before"_s;
        const bool isFound = platform::FindOnSearchPath(path(u"home/"_s), name, file);
        EXPECT_EQ(isFound, !file.isEmpty());
        return file.startsWith(home.path()) ? file.sliced(home.path().size() + 1) : file;
    }

    /// A program that writes its arguments, one a line, beside itself; `before` runs first.
    QString program(const QString& name, const QByteArray& before = {}) {
        const QString file = path(name);
        QDir().mkpath(QFileInfo(file).path());
        writeFile(file,
                  "#!/bin/sh\n" + before + "\nprintf '[%s]' \"$@\" > \"$0.part\" && mv \"$0.part\" \"$0.words\"\n");
        QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        return file;
    }

    /// What the program was given, once it has run; "never" when it does not.
    QByteArray wordsOf(const QString& file) {
        for (const QDeadlineTimer deadline(kPatienceMs); !exists(file + u".words"_s) && !deadline.hasExpired();)
            QThread::msleep(5);
        return exists(file + u".words"_s) ? bytesOf(file + u".words"_s) : "never";
    }

    bool start(const QString& line, platform::Wait wait = platform::Wait::No) { return execute.ShellX(line, wait); }

    platform::cExecute execute{path(u"home/"_s)};

private:
    int m_argumentCount = 0;
    QCoreApplication m_application{m_argumentCount, nullptr};
    QByteArray m_path;
    QString m_folder;
};

TEST_F(Launcher, LooksInHomeThenTheWorkingFolderThenThePath) {
    for (const QString& folder : {u"path"_s, u"here"_s, u"home"_s}) {
        EXPECT_FALSE(found(u"UnLHA32.DLL"_s).startsWith(folder));
        writeFile(path(folder + u"/UnLHA32.DLL"_s), {});
        EXPECT_EQ(found(u"UnLHA32.DLL"_s), folder + u"/UnLHA32.DLL"_s);
    }
}

TEST_F(Launcher, LooksInTheSystemsLibraryFolders) {
    qputenv("PATH", "");
    EXPECT_TRUE(found(u"libc.so.6"_s).endsWith(u"/libc.so.6"_s));
}

TEST_F(Launcher, PrefersTheExactNameToOneInOtherCase) {
    writeFile(path(u"home/unlha32.dll"_s), {});
    EXPECT_EQ(found(u"UnLHA32.DLL"_s), u"home/unlha32.dll"_s);
    writeFile(path(u"home/UnLHA32.DLL"_s), {});
    EXPECT_EQ(found(u"UnLHA32.DLL"_s), u"home/UnLHA32.DLL"_s);
}

TEST_F(Launcher, FindsNoFolderAndNothingThatIsNotThere) {
    QDir().mkdir(path(u"home/UnLHA32.DLL"_s));
    EXPECT_EQ(found(u"UnLHA32.DLL"_s), QString());
    EXPECT_EQ(found(u"gone.exe"_s), QString());
    EXPECT_EQ(found(QString()), QString());
    EXPECT_EQ(found(u"."_s), QString());
}

TEST_F(Launcher, FindsAFullPathWhereItSays) {
    writeFile(path(u"here/a b.exe"_s), {});
    EXPECT_EQ(found(path(u"here/a b.exe"_s)), u"here/a b.exe"_s);
    EXPECT_EQ(found(path(u"gone/a b.exe"_s)), QString());
}

TEST_F(Launcher, StartsABareNameFromHome) {
    program(u"here/VellUpTmp.exe"_s);
    const QString file = program(u"home/VellUpTmp.exe"_s);
    EXPECT_TRUE(start(u"VellUpTmp.exe"_s));
    EXPECT_EQ(wordsOf(file), "[]");
    EXPECT_FALSE(exists(path(u"here/VellUpTmp.exe.words"_s)));
}

TEST_F(Launcher, FindsAProgramWithABlankInItsPath) {
    const QString file = program(u"my own tools/run me.exe"_s);
    EXPECT_TRUE(start(file + u" one \"two words\""_s));
    EXPECT_EQ(wordsOf(file), "[one][two words]");
}

TEST_F(Launcher, TakesTheShorterOfTwoPrograms) {
    const QString longer = program(u"tools/run me"_s);
    const QString shorter = program(u"tools/run"_s);
    QDir().mkdir(path(u"tools/run me too"_s));
    EXPECT_TRUE(start(longer + u" too"_s));
    EXPECT_EQ(wordsOf(shorter), "[me][too]");
    EXPECT_FALSE(exists(longer + u".words"_s));
}

TEST_F(Launcher, TakesNoFolderForTheProgram) {
    QDir().mkdir(path(u"my"_s));
    const QString file = program(u"my tools/run"_s);
    EXPECT_TRUE(start(file + u" x"_s));
    EXPECT_EQ(wordsOf(file), "[x]");
}

TEST_F(Launcher, StartsAWholeLineWithoutArguments) {
    const QString file = program(u"my tools/run"_s);
    EXPECT_TRUE(start(file));
    EXPECT_EQ(wordsOf(file), "[]");
}

TEST_F(Launcher, TriesAQuotedProgramAtLast) {
    const QString file = program(u"my tools/run"_s);
    EXPECT_TRUE(start(u"\"%1\" x"_s.arg(file)));
    EXPECT_EQ(wordsOf(file), "[x]");
}

TEST_F(Launcher, RunsNoShell) {
    const QString file = program(u"home/run"_s);
    EXPECT_TRUE(start(u"run $(id); `id` > x | y & *"_s));
    EXPECT_EQ(wordsOf(file), "[$(id);][`id`][>][x][|][y][&][*]");
}

TEST_F(Launcher, SaysWhenNothingCouldBeStarted) {
    writeFile(path(u"home/plain.txt"_s), "no program");
    for (const platform::Wait wait : {platform::Wait::No, platform::Wait::UntilItEnds}) {
        for (const QString& line : {u"gone.exe a b"_s, QString(), u" "_s, u"\"\""_s, u"plain.txt"_s})
            EXPECT_FALSE(start(line, wait)) << line.toStdString();
    }
}

TEST_F(Launcher, WaitsForTheEnd) {
    const QString file = program(u"home/slow"_s, "sleep 0.4");
    EXPECT_TRUE(start(u"slow x"_s, platform::Wait::UntilItEnds));
    EXPECT_TRUE(exists(file + u".words"_s));
}

TEST_F(Launcher, DoesNotWaitUnlessToldSo) {
    const QString file = program(u"home/slow"_s, "while [ ! -e \"$0.go\" ]; do sleep 0.05; done");
    EXPECT_TRUE(start(u"slow x"_s));
    EXPECT_FALSE(exists(file + u".words"_s));
    writeFile(file + u".go"_s, {});
    EXPECT_EQ(wordsOf(file), "[x]");
}

TEST_F(Launcher, StopsWaitingAndLeavesTheProgramRunning) {
    const QString file = program(u"home/slow"_s, "while [ ! -e \"$0.go\" ]; do sleep 0.05; done");
    execute.stop();
    EXPECT_TRUE(start(u"slow x"_s, platform::Wait::UntilItEnds));
    EXPECT_FALSE(exists(file + u".words"_s));
    writeFile(file + u".go"_s, {});
    EXPECT_EQ(wordsOf(file), "[x]");
    // Lets go of what the launcher keeps until the program has ended.
    QThread::msleep(100);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(Launcher, EndsAProcessAtOnce) {
    QProcess process;
    process.start(u"sleep"_s, {u"600"_s});
    ASSERT_TRUE(process.waitForStarted());
    platform::endProcess(0); // nobody, and not all of them
    platform::endProcess(process.processId());
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
}

TEST_F(Launcher, HandsAProgramItsInputAndNothingElse) {
    const QString file = path(u"home/a program"_s);
    writeFile(file, "#!/bin/sh\ncat > \"$0.part\" && mv \"$0.part\" \"$0.words\"\n");
    QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    EXPECT_TRUE(platform::startWithInput(file, {u"x"_s}, "one \xE6\x97\xA5\n"));
    EXPECT_EQ(wordsOf(file), "one \xE6\x97\xA5\n");
}

TEST_F(Launcher, SaysThatAProgramWithInputIsNotThere) {
    EXPECT_FALSE(platform::startWithInput(path(u"home/none"_s), {}, "x\n"));
}

} // namespace
} // namespace velloria::tests
