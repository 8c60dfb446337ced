#include "shell/memo.h"

#include "core/ini.h"
#include "support/patience.h"
#include "support/test_home.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Memo : public TestHome {
protected:
    Memo() { desk.events = {}; }
    QString program() const { return session.MyPath + u"VellMemo.exe"_s; }
    /// What the program has left beside itself, once it is there.
    QByteArray left(const QString& ending) const {
        const QString file = program() + ending;
        for (const QDeadlineTimer deadline(kPatienceMs); !exists(file) && !deadline.hasExpired();)
            QThread::msleep(5);
        return exists(file) ? bytesOf(file) : "never";
    }
    void writeProgram(const QByteArray& script) const {
        writeFile(program(), script);
        QFile::setPermissions(program(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }

private:
    int m_argumentCount = 0;
    QCoreApplication m_application{m_argumentCount, nullptr};
};

TEST_F(Memo, SaysThatItIsMissing) {
    shell::memoCommand(run);
    EXPECT_EQ(boxes(), QStringList{u"critical: VellMemo.exeが存在しません。"_s});
}

TEST_F(Memo, GetsTheUserAndByItsInputThePassword) {
    writeProgram("#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$0.words\"\n"
                 "tr '\\0' '\\n' < /proc/$$/cmdline > \"$0.line\"\n"
                 "cat > \"$0.part\" && mv \"$0.part\" \"$0.input\"\n");
    core::WriteIni(session.MyPath + u"velluser.ini"_s, u"taro"_s, u"Pass"_s, u"dcb"_s);
    session.UserID = u"taro"_s;
    shell::memoCommand(run);
    EXPECT_EQ(left(u".input"_s), "abc\n") << "the input has to end, too";
    EXPECT_EQ(left(u".words"_s), (session.MyPath + u"velluser.ini\ntaro\n-\n"_s).toUtf8());
    EXPECT_FALSE(left(u".line"_s).contains("abc")) << "other accounts can read it";
    EXPECT_EQ(told(), QStringList());
}

TEST_F(Memo, WithoutUsersGetsAnEmptyNameAndPassword) {
    writeProgram("#!/bin/sh\nprintf '[%s]' \"$@\" > \"$0.words\"\n"
                 "cat > \"$0.part\" && mv \"$0.part\" \"$0.input\"\n");
    shell::memoCommand(run);
    EXPECT_EQ(left(u".input"_s), "\n");
    EXPECT_EQ(left(u".words"_s), ('[' + session.MyPath.toUtf8() + "velluser.ini][][-]"));
}

TEST_F(Memo, ThatIsNoProgramIsAFailure) {
    writeFile(program(), "no program");
    const QString failure = failureOf([&] { shell::memoCommand(run); });
    EXPECT_TRUE(failure.contains(u"プログラムを起動できません。"_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(program())) << failure.toStdString();
}

} // namespace
} // namespace velloria::tests
