// The windows while another program holds the diary.
#include "core/ini.h"
#include "desktop/command.h"
#include "desktop/qt_desk.h"
#include "desktop/wait_box.h"
#include "editor_home.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "store/sqlite/connection.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// Wants to be drawn again all the time, and counts how often it is.
class Drawn : public QWidget {
public:
    explicit Drawn(QWidget* parent)
        : QWidget(parent) {
        resize(20, 20);
        show();
        connect(&m_timer, &QTimer::timeout, this, qOverload<>(&QWidget::update));
        m_timer.start(20);
    }
    int times = 0;

protected:
    void paintEvent(QPaintEvent*) override { ++times; }

private:
    QTimer m_timer;
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
    static QMessageBox* waitBox() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(window);
            if (box && box->isVisible())
                return box;
        }
        return nullptr;
    }
    /// Leaves the next wait that shows its box; `look` sees the text first.
    template <typename Look>
    static void leaveNextWait(Look look) {
        QTimer::singleShot(20, [look] {
            if (QMessageBox* box = waitBox()) {
                look(box->text());
                QTest::mouseClick(box->button(QMessageBox::Cancel), Qt::LeftButton);
            } else {
                leaveNextWait(look);
            }
        });
    }

    desktop::WaitBox waits;
    std::optional<store::sqlite::Connection> holder;
    std::optional<store::sqlite::Transaction> lock;
};

TEST_F(LockedDiary, LetsTheWindowsPaintAndTheSaveGoOnWhenItIsFree) {
    Drawn drawn(&top());
    settle();
    const int before = drawn.times;
    QTimer::singleShot(200, [&] { release(); });
    clickTool(u"SaveToMDBOnly"_s);
    EXPECT_GT(drawn.times, before + 2);
    EXPECT_FALSE(waitBox()) << "a short wait shows nothing";
    EXPECT_EQ(rows(), QStringList{u"1title"_s});
    EXPECT_FALSE(isSavable());
}

TEST_F(LockedDiary, ShowsABoxInALongWaitThatGoesWithIt) {
    bool wasShown = false;
    QTimer::singleShot(1200, [&] {
        wasShown = waitBox();
        release();
    });
    clickTool(u"SaveToMDBOnly"_s);
    EXPECT_TRUE(wasShown);
    EXPECT_TRUE(waitFor([] { return !waitBox(); }));
    EXPECT_EQ(rows(), QStringList{u"1title"_s});
}

TEST_F(LockedDiary, AFolderInUseLetsTheWindowsPaintAsWell) {
    Drawn drawn(&top());
    settle();
    const int before = drawn.times;
    std::optional<platform::FolderLock> other(std::in_place, session.UserPath);
    QTimer::singleShot(300, [&] { other.reset(); });
    core::WriteIni(session.DiaryIniFile, u"S"_s, u"k"_s, u"v"_s);
    EXPECT_FALSE(other.has_value());
    EXPECT_GT(drawn.times, before + 2);
    EXPECT_EQ(core::ReadIni(session.DiaryIniFile, u"S"_s, u"k"_s), u"v"_s);
}

TEST_F(LockedDiary, AFolderInUseIsNamedInABoxThatCanBeLeft) {
    const platform::FolderLock other(session.UserPath);
    QElapsedTimer timer;
    timer.start();
    leaveNextWait([this](const QString& text) { EXPECT_TRUE(text.contains(session.UserPath)) << text.toStdString(); });
    EXPECT_THROW(platform::FolderLock{session.UserPath}, platform::Failure);
    EXPECT_LT(timer.elapsed(), 4000);
}

TEST_F(LockedDiary, CanBeLeftAndKeepsTheTextUnsaved) {
    QElapsedTimer timer;
    timer.start();
    expectedFailures = 1;
    leaveNextWait(
        [](const QString& text) { EXPECT_TRUE(text.startsWith(u"日記データベースは他のプログラムが使用中です。"_s)); });
    clickTool(u"SaveToMDBOnly"_s);
    EXPECT_LT(timer.elapsed(), 4000) << "nobody waits for the end of the wait";
    EXPECT_TRUE(isSavable());
    EXPECT_EQ(title().text(), u"title"_s);

    // The next save waits anew.
    QTimer::singleShot(100, [&] { release(); });
    clickTool(u"SaveToMDBOnly"_s);
    EXPECT_EQ(rows(), QStringList{u"1title"_s});
    EXPECT_TRUE(waitFor([] { return !waitBox(); }));
}

TEST_F(LockedDiary, WhatIsSaidBehindTheWaitStays) {
    desktop::QtDesk qtDesk;
    qtDesk.beforeBox = [this] { waits.end(); };
    int seenMs = 0;
    QTimer watch;
    QElapsedTimer shown;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        QMessageBox* box = waitBox();
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
