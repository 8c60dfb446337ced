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

TEST_F(Memo, GetsUserAndPassword) {
    writeProgram("#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$0.part\" && mv \"$0.part\" \"$0.words\"\n");
    core::WriteIni(session.MyPath + u"velluser.ini"_s, u"taro"_s, u"Pass"_s, u"dcb"_s);
    session.UserID = u"taro"_s;
    shell::memoCommand(run);
    const QString words = program() + u".words"_s;
    for (const QDeadlineTimer deadline(kPatienceMs); !exists(words) && !deadline.hasExpired();)
        QThread::msleep(5);
    ASSERT_TRUE(exists(words));
    EXPECT_EQ(bytesOf(words), (session.MyPath + u"velluser.ini\ntaro\nabc\n"_s).toUtf8());
    EXPECT_EQ(told(), QStringList());
}

TEST_F(Memo, ThatIsNoProgramIsAFailure) {
    writeFile(program(), "no program");
    const QString failure = failureOf([&] { shell::memoCommand(run); });
    EXPECT_TRUE(failure.contains(u"プログラムを起動できません。"_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(program())) << failure.toStdString();
}

} // namespace
} // namespace velloria::tests
