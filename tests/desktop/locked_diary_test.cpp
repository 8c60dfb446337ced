// The windows while another program holds the diary.
#include "core/ini.h"
#include "desktop/command.h"
#include "desktop/qt_desk.h"
#include "desktop/wait_box.h"
#include "editor_home.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/waiting.h"
#include "store/sqlite/connection.h"

#include <QElapsedTimer>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// Wants to be drawn again all the time, and does something once it was a few times in a wait.
class Drawn : public QWidget {
public:
    Drawn(QWidget* parent, std::function<void()> action)
        : QWidget(parent)
        , m_action(std::move(action)) {
        resize(20, 20);
        show();
        qApp->installEventFilter(this);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            update();
            constexpr int kAFewTimes = 3;
            if (m_times >= kAFewTimes && m_action)
                std::exchange(m_action, nullptr)();
        });
        m_timer.start(20);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        m_isWaiting = m_isWaiting || event->type() == platform::Waiting::kType;
        return false;
    }
    void paintEvent(QPaintEvent*) override { m_times += int(m_isWaiting); }

private:
    std::function<void()> m_action;
    QTimer m_timer;
    bool m_isWaiting = false;
    int m_times = 0;
};

class LockedDiary : public EditorHome {
protected:
    void SetUp() override {
        EditorHome::SetUp();
        clickDay(6);
        keys(title(), u"title"_s);
        holder.emplace(session.databaseFile(), store::sqlite::Access::ReadWrite);
        lock.emplace(*holder);
    }
    void release() {
        lock.reset();
        holder.reset();
    }
    /// Leaves the next wait that shows its box; `look` sees the text first.
    template <typename Look>
    void leaveNextWait(Look look) {
        whenBoxIsVisible(waits, [this, look](QMessageBox& box) {
            look(box.text());
            sinceLeft.start();
            QTest::mouseClick(box.button(QMessageBox::Cancel), Qt::LeftButton);
        });
    }
    /// However long it took until the box was there.
    void expectLeftAtOnce() const {
        ASSERT_TRUE(sinceLeft.isValid());
        EXPECT_LT(sinceLeft.elapsed(), 3000) << "nobody waits for the end of the wait";
    }

    QElapsedTimer sinceLeft;
    desktop::WaitBox waits;
    std::optional<store::sqlite::Connection> holder;
    std::optional<store::sqlite::Transaction> lock;
};

TEST_F(LockedDiary, LetsTheWindowsPaintAndTheSaveGoOnWhenItIsFree) {
    const Drawn drawn(&top(), [this] { release(); });
    settle();
    clickTool(u"SaveToMDBOnly"_s);
    EXPECT_EQ(rows(), QStringList{u"1title"_s});
    EXPECT_FALSE(isSavable());
}

TEST_F(LockedDiary, ShowsNoBoxInAShortWait) {
    using namespace std::chrono_literals;
    for (const auto& [waited, isShown] : {std::pair(0ms, false), std::pair(399ms, false), std::pair(400ms, true)}) {
        platform::Waiting waiting(u"held"_s, waited);
        QCoreApplication::sendEvent(qApp, &waiting);
        EXPECT_EQ(visibleBox() != nullptr, isShown) << waited.count();
    }
}

TEST_F(LockedDiary, ShowsABoxInALongWaitThatGoesWithIt) {
    bool wasShown = false;
    whenBoxIsVisible(waits, [&](QMessageBox&) {
        wasShown = true;
        release();
    });
    clickTool(u"SaveToMDBOnly"_s);
    EXPECT_TRUE(wasShown);
    EXPECT_TRUE(waitFor([] { return !visibleBox(); }));
    EXPECT_EQ(rows(), QStringList{u"1title"_s});
}

TEST_F(LockedDiary, AFolderInUseLetsTheWindowsPaintAsWell) {
    std::optional<platform::FolderLock> other(std::in_place, session.UserPath);
    const Drawn drawn(&top(), [&] { other.reset(); });
    settle();
    core::WriteIni(session.DiaryIniFile, u"S"_s, u"k"_s, u"v"_s);
    EXPECT_FALSE(other.has_value());
    EXPECT_EQ(core::ReadIni(session.DiaryIniFile, u"S"_s, u"k"_s), u"v"_s);
}

TEST_F(LockedDiary, AFolderInUseIsNamedInABoxThatCanBeLeft) {
    const platform::FolderLock other(session.UserPath);
    leaveNextWait([this](const QString& text) { EXPECT_TRUE(text.contains(session.UserPath)) << text.toStdString(); });
    EXPECT_THROW(platform::FolderLock{session.UserPath}, platform::Failure);
    expectLeftAtOnce();
}

TEST_F(LockedDiary, CanBeLeftAndKeepsTheTextUnsaved) {
    expectedFailures = 1;
    leaveNextWait(
        [](const QString& text) { EXPECT_TRUE(text.startsWith(u"日記データベースは他のプログラムが使用中です。"_s)); });
    clickTool(u"SaveToMDBOnly"_s);
    expectLeftAtOnce();
    EXPECT_TRUE(isSavable());
    EXPECT_EQ(title().text(), u"title"_s);

    // The next save waits anew.
    QTimer::singleShot(100, [&] { release(); });
    clickTool(u"SaveToMDBOnly"_s);
    EXPECT_EQ(rows(), QStringList{u"1title"_s});
    EXPECT_TRUE(waitFor([] { return !visibleBox(); }));
}

TEST_F(LockedDiary, WhatIsSaidBehindTheWaitStays) {
    desktop::QtDesk qtDesk;
    qtDesk.beforeBox = [this] { waits.makeWay(); };
    int seenMs = 0;
    QTimer watch;
    QElapsedTimer shown;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        QMessageBox* box = visibleBox();
        if (!box || box->icon() != QMessageBox::Critical)
            return;
        if (!shown.isValid())
            shown.start();
        constexpr int kLongerThanTheEndOfAWait = 600;
        seenMs = int(shown.elapsed());
        if (seenMs > kLongerThanTheEndOfAWait)
            box->accept();
    });
    watch.start(20);
    desktop::runCommand(qtDesk, [this] {
        store::sqlite::Connection writer(session.databaseFile(), store::sqlite::Access::ReadWrite);
        const store::sqlite::Transaction change(writer);
    });
    EXPECT_GT(seenMs, 600);
}

} // namespace
} // namespace velloria::tests
