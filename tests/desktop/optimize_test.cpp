// The command that makes the diary's file compact, in the windows.
#include "desktop/line_box.h"
#include "editor/open_day.h"
#include "platform/waiting.h"
#include "store/diary_store.h"
#include "updating_home.h"

#include <QCloseEvent>
#include <QtTest/qtestspontaneevent.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kQuestion = u"diary.mdbを最適化しますか？\n"
                          "バックアップとして、現在のファイルを「diary.bak」として保存します。"_s;
const QString kDone = u"diary.mdbの最適化は完了しました。\n念のためにVelloriaを再起動してください。"_s;

class Optimize : public Updating {
protected:
    void SetUp() override {
        Updating::SetUp();
        write(u"2004/05/06"_s, u"first"_s);
        write(u"2003/01/02"_s, u"old"_s);
        contents().day().openDay(u"2004/05/06"_s);
        qtDesk.showUpdaterWindow = [this](const platform::UpdaterWindow& shown) {
            updates.show(shown);
            text = shown.text;
            if (meanwhile)
                meanwhile();
        };
    }

    /// Picks the command; its boxes are answered one after the other, and their texts kept.
    void optimize(const QList<QMessageBox::StandardButton>& answers) {
        answerNext(answers);
        top().command(u"MnuOptimize"_s)->trigger();
    }
    void answerNext(QList<QMessageBox::StandardButton> answers) {
        if (answers.isEmpty())
            return;
        whenShown<QMessageBox>([this, answers](QMessageBox& box) {
            boxTexts += box.text();
            QObject::connect(&box, &QObject::destroyed, qApp, [this, answers] { answerNext(answers.mid(1)); });
            if (QAbstractButton* button = box.button(answers.first()))
                QTest::mouseClick(button, Qt::LeftButton);
            else
                box.reject(); // not the box that was expected: its text tells
        });
    }
    QLineEdit& title() { return control<QLineEdit>(contents(), u"txtTitle"_s); }
    QString stored(const QString& what) {
        return sqlValue(u"SELECT "_s + what + u" FROM Contents WHERE Day='2004/05/06'"_s);
    }

    QStringList boxTexts;
    QString text;
    std::function<void()> meanwhile; ///< at every word of the update
};

TEST_F(Optimize, ANoLeavesEverythingAsItIs) {
    const QByteArray before = bytesOf(session.databaseFile());
    optimize({QMessageBox::No, QMessageBox::Ok});
    EXPECT_EQ(boxTexts, (QStringList{kQuestion, u"diary.mdbの最適化を中止しました。"_s}));
    EXPECT_EQ(bytesOf(session.databaseFile()), before);
    EXPECT_EQ(text, QString());
}

TEST_F(Optimize, CopiesTheDiaryAndTellsItsSteps) {
    sql(u"CREATE TABLE Extra (Filler)"_s);
    sql(u"INSERT INTO Extra VALUES (zeroblob(1000000))"_s);
    sql(u"DROP TABLE Extra"_s);
    const qsizetype before = bytesOf(session.databaseFile()).size();
    bool isWindowSeen = false;
    meanwhile = [&] { isWindowSeen = isWindowSeen || (window() && window()->isVisible()); };
    optimize({QMessageBox::Yes, QMessageBox::Ok});
    EXPECT_EQ(boxTexts, (QStringList{kQuestion, kDone}));
    EXPECT_TRUE(isWindowSeen);
    EXPECT_FALSE(window());
    EXPECT_TRUE(text.startsWith(u"アップデートを開始します。\r\nテンポラリファイル作成中。\r\n"_s))
        << text.toStdString();
    EXPECT_TRUE(text.endsWith(u"\r\nテンポラリファイルの削除完了。"_s)) << text.toStdString();
    EXPECT_LT(bytesOf(session.databaseFile()).size(), before / 2);
    EXPECT_EQ(stored(u"Title"_s), u"first"_s);
    EXPECT_TRUE(exists(session.UserPath + u"diarymdb.bak"_s));
    EXPECT_FALSE(context.runs.isAnyRunning());
    EXPECT_EQ(top().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(Optimize, TheOpenEntryKeepsItsUnsavedTextAndCanBeSaved) {
    title().setText(u"changed"_s);
    pane().setFocus();
    QTest::keyClicks(&pane(), u"unsaved"_s);
    ASSERT_TRUE(pane().hasFocus());
    const QString written = pane().toPlainText();
    optimize({QMessageBox::Yes, QMessageBox::Ok});
    EXPECT_EQ(boxTexts, (QStringList{kQuestion, kDone}));
    EXPECT_EQ(title().text(), u"changed"_s);
    EXPECT_EQ(pane().toPlainText(), written);
    EXPECT_EQ(stored(u"Title"_s), u"first"_s);
    EXPECT_TRUE(waitFor([&] { return pane().hasFocus(); }));
    top().command(u"MnuSaveDiary"_s)->trigger();
    EXPECT_EQ(stored(u"Title"_s), u"changed"_s);
    EXPECT_EQ(stored(u"Contents"_s), written);
    EXPECT_EQ(sqlValue(u"SELECT COUNT(*) FROM Contents"_s), u"2"_s);
}

TEST_F(Optimize, TheDiaryCanBeReadAndADraftKeptAtEveryStep) {
    QTest::keyClicks(&pane(), u"unsaved"_s);
    int times = 0;
    /// Counts the moments of waiting for what somebody else holds.
    struct : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            times += int(event->type() == platform::Waiting::kType);
            return false;
        }
        int times = 0;
    } waits;
    meanwhile = [&] {
        qApp->installEventFilter(&waits);
        contents().day().keepDraft();
        if (QFile::exists(session.databaseFile())) {
            EXPECT_EQ(diary().LoadDay(u"2004/05/06"_s).size(), 1U) << text.toStdString();
        }
        qApp->removeEventFilter(&waits);
        ++times;
    };
    optimize({QMessageBox::Yes, QMessageBox::Ok});
    EXPECT_EQ(boxTexts, (QStringList{kQuestion, kDone}));
    EXPECT_GT(times, 10);
    EXPECT_EQ(waits.times, 0) << "neither waits for what the update holds";
    EXPECT_TRUE(exists(session.UserPath + u"draft.json"_s));
}

TEST_F(Optimize, AWishToCloseInTheMiddleIsFulfilledBehindItsLastBox) {
    QTest::keyClicks(&pane(), u"unsaved"_s);
    bool isWished = false;
    meanwhile = [&] {
        QCloseEvent request;
        QSpontaneKeyEvent::setSpontaneous(&request);
        qApp->notify(top().windowHandle(), &request);
        isWished = true;
    };
    optimize({QMessageBox::Yes, QMessageBox::Ok, QMessageBox::Yes});
    EXPECT_TRUE(isWished);
    EXPECT_TRUE(top().isVisible());
    EXPECT_TRUE(waitFor([&] { return !top().isVisible(); }));
    EXPECT_EQ(boxTexts, (QStringList{kQuestion, kDone, u"変更されています。保存しますか？"_s}));
    EXPECT_TRUE(stored(u"Contents"_s).contains(u"unsaved"_s));
}

TEST_F(Optimize, AFailureClosesItsWindowAndLeavesTheDiary) {
    QFile::remove(session.MyPath + u"default.mdb"_s);
    const QByteArray before = bytesOf(session.databaseFile());
    optimize({QMessageBox::Yes, QMessageBox::Ok});
    ASSERT_EQ(boxTexts.size(), 2);
    EXPECT_EQ(boxTexts.first(), kQuestion);
    EXPECT_NE(boxTexts.last(), kDone);
    EXPECT_FALSE(window());
    EXPECT_EQ(bytesOf(session.databaseFile()), before);
    EXPECT_FALSE(context.runs.isAnyRunning());
    QTest::keyClicks(&pane(), u"x"_s);
    EXPECT_TRUE(pane().toPlainText().contains(u'x'));
}

TEST_F(Optimize, DoesNotRunWhileAnUploadDoes) {
    const QByteArray before = bytesOf(session.databaseFile());
    context.runs.run(desktop::LongRoutine::Upload, [&] { optimize({QMessageBox::Ok}); });
    EXPECT_EQ(boxTexts, QStringList{u"通信が終わってから、データベースを最適化してください。"_s});
    EXPECT_EQ(bytesOf(session.databaseFile()), before);
    EXPECT_FALSE(exists(session.UserPath + u"diarymdb.bak"_s));
}

} // namespace
} // namespace velloria::tests
