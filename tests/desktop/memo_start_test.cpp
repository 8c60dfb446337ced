// The memo program itself, started by the row of the menu.
#include "core/ini.h"
#include "support/desktop_home.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <csignal>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class MemoStart : public DesktopHome {
protected:
    MemoStart() {
        QFile::remove(program());
        EXPECT_TRUE(QFile::copy(QStringLiteral(VELLORIA_PROGRAM_FOLDER "/VellMemo.exe"), program()));
        const QString users = session.MyPath + u"velluser.ini"_s;
        core::WriteIni(users, u"taro"_s, u"ID"_s, u"taro"_s);
        core::WriteIni(users, u"taro"_s, u"Pass"_s, u"ihgfedcb"_s); // "abcdefgh"
        core::WriteIni(users, u"taro"_s, u"Path"_s, session.UserPath);
        session.IsLogin = true;
        session.UserID = u"taro"_s;
    }
    ~MemoStart() override {
        if (const qint64 id = running())
            ::kill(pid_t(id), SIGKILL);
    }

    QString program() const { return session.MyPath + u"VellMemo.exe"_s; }
    /// The process that runs the copy of this test; 0 when none does.
    qint64 running() const {
        const QString real = QFileInfo(program()).canonicalFilePath();
        for (const QString& name : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
            bool isNumber = false;
            const qint64 id = name.toLongLong(&isNumber);
            if (isNumber && QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(id)) == real)
                return id;
        }
        return 0;
    }
    static QByteArray fileOf(qint64 id, const QString& name) {
        QFile file(u"/proc/%1/%2"_s.arg(id).arg(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Whether a window with such a title is on the screen.
    static bool isOnScreen(const QString& title) {
        QProcess search;
        search.start(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, title});
        return search.waitForFinished() && !search.readAllStandardOutput().trimmed().isEmpty();
    }
    void click() {
        auto* command = top().command(u"mnuVellMemo"_s);
        command->setEnabled(true);
        command->trigger();
    }
};

TEST_F(MemoStart, ShowsTheUsersMemosAndHidesThePasswordFromOthers) {
    click();
    ASSERT_TRUE(waitFor([this] { return running() != 0; }));
    const qint64 id = running();
    EXPECT_TRUE(waitFor([] { return isOnScreen(u"^ベロリアメモ .User:taro"_s); }));
    EXPECT_EQ(fileOf(id, u"cmdline"_s).split('\0'),
              (QByteArrayList{program().toUtf8(), (session.MyPath + u"velluser.ini"_s).toUtf8(), "taro", "-", ""}));
    EXPECT_FALSE(fileOf(id, u"environ"_s).contains("abcdefgh"));
    EXPECT_FALSE(fileOf(id, u"maps"_s).contains("WebEngine")) << "it costs a second and a hundred megabytes";
    ::kill(pid_t(id), SIGTERM);
    EXPECT_TRUE(waitFor([this] { return running() == 0; }));
}

TEST_F(MemoStart, WithTheWrongPasswordShowsABoxAndNothingElse) {
    QProcess memo;
    memo.start(program(), {session.MyPath + u"velluser.ini"_s, u"taro"_s, u"wrong"_s});
    ASSERT_TRUE(memo.waitForStarted());
    EXPECT_TRUE(waitFor([] { return isOnScreen(u"^ベロリアメモ$"_s); }));
    EXPECT_FALSE(isOnScreen(u"User:taro"_s));
    memo.kill();
    memo.waitForFinished();
}

} // namespace
} // namespace velloria::tests
