#include "desktop/qt_desk.h"

#include "desktop/yes_no_box.h"
#include "platform/failure.h"
#include "support/desktop_home.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTranslator>
#include <QtTest/qtestspontaneevent.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::MessageKind;

class QtDesk : public ::testing::Test {
protected:
    QtDesk() {
        desk.beforeBox = [this] { ++boxes; };
        desk.showStatus = [this](const QString& text) { status = text; };
        desk.showPage = [this](const QString& address) { page = address; };
    }

    desktop::QtDesk desk;
    int boxes = 0;
    QString status;
    QString page;
};

TEST_F(QtDesk, ShowsPlainTextInABoxOfItsKind) {
    const struct {
        MessageKind kind;
        QMessageBox::Icon icon;
    } cases[] = {{MessageKind::Critical, QMessageBox::Critical},
                 {MessageKind::Exclamation, QMessageBox::Warning},
                 {MessageKind::Information, QMessageBox::Information},
                 {MessageKind::Plain, QMessageBox::NoIcon}};
    for (const auto& c : cases) {
        whenShown<QMessageBox>([&](QMessageBox& box) {
            EXPECT_EQ(box.icon(), c.icon);
            EXPECT_EQ(box.text(), u"<B>a\nb"_s);
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            EXPECT_EQ(box.windowTitle(), u"日記作成"_s);
            EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
            box.accept();
        });
        desk.message(c.kind, u"<B>a\r\nb"_s, u"日記作成"_s);
    }
    EXPECT_EQ(boxes, 4);
}

TEST_F(QtDesk, ALongTextLeavesTheButtonOnTheScreen) {
    const QString text = u"読み込み完了!"_s + u"\r\n2004/05/06"_s.repeated(5000);
    bool isSeen = false;
    whenShown<QMessageBox>([&](QMessageBox& box) {
        EXPECT_TRUE(becomesVisible(box));
        const QAbstractButton& button = *box.button(QMessageBox::Ok);
        const QRect place(button.mapToGlobal(QPoint()), button.size());
        EXPECT_TRUE(box.screen()->geometry().contains(place)) << place.bottom();
        EXPECT_EQ(box.text(), QString(text).replace("\r\n"_L1, "\n"_L1));
        auto* area = box.findChild<QScrollArea*>();
        ASSERT_TRUE(area);
        EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
        EXPECT_GT(area->verticalScrollBar()->maximum(), 0);
        isSeen = true;
        QTest::keyClick(&box, Qt::Key_Return);
    });
    desk.message(MessageKind::Information, text, u"Velloria"_s);
    EXPECT_TRUE(isSeen);
}

/// The pane is there for the keys, too: whoever asks for help sends its text on.
TEST_F(QtDesk, DetailsOpenBelowAButtonAndCanBeReadAndCopied) {
    QTranslator translator;
    ASSERT_TRUE(translator.load(u"qtbase_ja"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)));
    QApplication::installTranslator(&translator);
    QStringList lines;
    for (int i = 1; i <= 40; ++i)
        lines += u"21:00:%1 http://127.0.0.1/"_s.arg(i, 2, 10, QChar(u'0')) + QString(i * 10, u'x');
    bool isSeen = false;
    whenShown<QMessageBox>([&](QMessageBox& box) {
        EXPECT_TRUE(becomesActive(box));
        auto* pane = box.findChild<QTextEdit*>();
        ASSERT_TRUE(pane);
        EXPECT_FALSE(pane->isVisible());
        ASSERT_EQ(box.buttons().size(), 2);
        QAbstractButton& ok = *box.button(QMessageBox::Ok);
        QAbstractButton& button = *box.buttons()[box.buttons()[0] == &ok ? 1 : 0];
        EXPECT_TRUE(button.text().startsWith(u"詳細"_s)) << button.text().toStdString();
        const QRect screen = box.screen()->availableGeometry();
        box.move(screen.right() - box.width(), screen.bottom() - box.height()); // there is no room for it below
        QTest::qWait(50);
        button.click();
        EXPECT_TRUE(waitFor([&] { return pane->isVisible() && screen.contains(box.frameGeometry()); }))
            << box.frameGeometry().bottom();
        EXPECT_TRUE(button.text().startsWith(u"詳細"_s)) << button.text().toStdString();
        EXPECT_EQ(pane->toPlainText(), lines.join(u'\n'));
        EXPECT_TRUE(pane->isReadOnly());
        EXPECT_EQ(pane->visibleRegion().boundingRect(), pane->rect());
        EXPECT_GE(pane->viewport()->height(), 8 * pane->fontMetrics().lineSpacing());
        EXPECT_GE(pane->viewport()->width(), 60 * pane->fontMetrics().averageCharWidth());
        EXPECT_EQ(pane->horizontalScrollBar()->maximum(), 0) << "long addresses are wrapped";
        EXPECT_EQ(ok.visibleRegion().boundingRect(), ok.rect());
        for (int i = 0; i < 3 && !pane->hasFocus(); ++i)
            QTest::keyClick(box.windowHandle(), Qt::Key_Tab);
        EXPECT_TRUE(pane->hasFocus()) << "by keys";
        QTest::keyClick(pane, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(pane, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QApplication::clipboard()->text(), lines.join(u'\n'));
        isSeen = true;
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    desk.detailedMessage(MessageKind::Critical, u"エラーが発生しました。\r\nError_Code:初期化エラー"_s,
                         lines.join(u"\r\n"_s));
    EXPECT_TRUE(isSeen);
    whenShown<QMessageBox>([](QMessageBox& box) {
        EXPECT_EQ(box.buttons().size(), 1) << "without details there is nothing to show";
        box.accept();
    });
    desk.detailedMessage(MessageKind::Critical, u"text"_s, {});
    QApplication::removeTranslator(&translator);
}

TEST_F(QtDesk, ALongTextWithDetailsScrollsAsWell) {
    const QString text = u"line"_s + u"\r\n2004/05/06"_s.repeated(5000);
    bool isSeen = false;
    whenShown<QMessageBox>([&](QMessageBox& box) {
        EXPECT_TRUE(becomesVisible(box));
        box.buttons().constLast()->click();
        const QAbstractButton& ok = *box.button(QMessageBox::Ok);
        EXPECT_TRUE(box.screen()->geometry().contains(QRect(ok.mapToGlobal(QPoint()), ok.size())));
        isSeen = true;
        box.accept();
    });
    desk.detailedMessage(MessageKind::Information, text, u"details"_s);
    EXPECT_TRUE(isSeen);
}

TEST_F(QtDesk, APromptStartsWithItsDefaultSelectedAndGivesWhatIsTyped) {
    whenShown<QInputDialog>([](QInputDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"Velloria"_s);
        EXPECT_EQ(dialog.labelText(), u"月を\n入力"_s);
        auto* line = dialog.findChild<QLineEdit*>();
        EXPECT_EQ(line->selectedText(), u"05"_s);
        QTest::keyClicks(line, u"12"_s);
        QTest::keyClick(line, Qt::Key_Return);
    });
    EXPECT_EQ(desk.input(u"月を\r\n入力"_s, u"05"_s, u"Velloria"_s), u"12"_s);
    whenShown<QInputDialog>([](QInputDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(desk.input(u"月"_s, u"05"_s, u"Velloria"_s), u""_s);
    EXPECT_EQ(boxes, 2);
}

TEST_F(QtDesk, AQuestionHasNoWayAroundItsAnswer) {
    whenShown<desktop::YesNoBox>([](desktop::YesNoBox& box) {
        EXPECT_EQ(box.icon(), QMessageBox::Question);
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Yes));
        QTest::keyClick(&box, Qt::Key_Escape);
        QCloseEvent close;
        QSpontaneKeyEvent::setSpontaneous(&close);
        qApp->notify(&box, &close);
        EXPECT_TRUE(box.isVisible());
        EXPECT_FALSE(box.windowFlags().testFlag(Qt::WindowCloseButtonHint));
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_TRUE(desk.ask(u"保存しますか？"_s, u"Velloria"_s));
    whenShown<desktop::YesNoBox>([](desktop::YesNoBox& box) { box.button(QMessageBox::No)->click(); });
    EXPECT_FALSE(desk.ask(u"保存しますか？"_s, u"Velloria"_s));
}

TEST_F(QtDesk, AFileDialogMatchesInEveryCase) {
    const QTemporaryDir folder;
    whenShown<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"日記の書き出し..."_s);
        EXPECT_EQ(dialog.nameFilters().size(), 1);
        EXPECT_EQ(dialog.nameFilters().first(), u"HTML Files(*.htm;*.html) (*.htm *.HTM *html *HTML)"_s);
        EXPECT_EQ(dialog.findChild<QComboBox*>(u"fileTypeCombo"_s)->currentText(), u"HTML Files(*.htm;*.html)"_s);
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(dialog.directory(), QDir(folder.path()));
        dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(u"d"_s);
        static_cast<QDialog&>(dialog).accept();
    });
    EXPECT_EQ(desk.choosePath({platform::PathMode::Save, u"日記の書き出し..."_s,
                               u"HTML Files(*.htm;*.html)|*.htm;*html|"_s, folder.path()}),
              folder.filePath(u"d"_s));
    whenShown<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(desk.choosePath({platform::PathMode::Open, {}, {}, folder.path()}), std::nullopt);
}

TEST_F(QtDesk, ANameWithoutAnEndingGetsTheOneOfTheRequestAheadOfTheQuestion) {
    const QTemporaryDir folder;
    QFile old(folder.filePath(u"diary.txt"_s));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    const platform::PathRequest request{
        platform::PathMode::Save, {}, u"TEXT Files(*.txt)|*.txt|"_s, folder.path(), u"txt"_s};
    QStringList questions;
    const auto chosen = [&](const QString& typed, QMessageBox::StandardButton answer) {
        whenShown<QFileDialog>([&](QFileDialog& dialog) {
            QTimer watch;
            QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
                if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                    questions += box->text();
                    box->button(answer)->click();
                }
            });
            watch.start(20);
            dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(typed);
            static_cast<QDialog&>(dialog).accept();
            if (dialog.isVisible())
                dialog.reject();
        });
        return desk.choosePath(request);
    };
    EXPECT_EQ(chosen(u"diary"_s, QMessageBox::No), std::nullopt);
    EXPECT_EQ(chosen(u"diary"_s, QMessageBox::Yes), folder.filePath(u"diary.txt"_s));
    ASSERT_EQ(questions.size(), 2);
    EXPECT_TRUE(questions.first().contains(u"diary.txt"_s)) << questions.first().toStdString();
    EXPECT_EQ(chosen(u"new"_s, QMessageBox::No), folder.filePath(u"new.txt"_s));
    EXPECT_EQ(chosen(u"new.htm"_s, QMessageBox::No), folder.filePath(u"new.htm"_s));
    EXPECT_EQ(questions.size(), 2);
}

TEST_F(QtDesk, AllFilesAreThoseWithoutADotAsWell) {
    whenShown<QFileDialog>([](QFileDialog& dialog) {
        EXPECT_EQ(dialog.nameFilters(), QStringList(u"ALL Files(*.*) (*)"_s));
        dialog.reject();
    });
    desk.choosePath({platform::PathMode::Open, {}, u"ALL Files(*.*)|*.*"_s, {}});
}

TEST(FileFilter, IsPairsOfTextAndPatterns) {
    const auto filters = desktop::parseFilter(u"HTML Files(*.htm;*.html)|*.htm;*html|ALL Files(*.*)|*.*"_s);
    ASSERT_EQ(filters.size(), 2);
    EXPECT_EQ(filters[0].label, u"HTML Files(*.htm;*.html)"_s);
    EXPECT_EQ(filters[0].patterns, (QStringList{u"*.htm"_s, u"*html"_s}));
    EXPECT_EQ(filters[1].patterns, QStringList{u"*.*"_s});
    EXPECT_EQ(desktop::parseFilter({}).size(), 0);
    EXPECT_EQ(desktop::parseFilter(u"half"_s).size(), 0);
}

TEST_F(QtDesk, AFailureGivesThePointerBackAndStandsOnThePanel) {
    QMainWindow window;
    desk.setMainWindow(&window);
    desk.pointer(platform::Pointer::Hourglass);
    EXPECT_EQ(window.cursor().shape(), Qt::WaitCursor);
    whenShown<QMessageBox>([](QMessageBox& box) {
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        EXPECT_EQ(box.windowTitle(), u"Velloria"_s);
        EXPECT_TRUE(box.text().contains(u"/x/y"_s));
        box.accept();
    });
    desk.failure(platform::Failure(u"保存できません。"_s, u"/x/y"_s, u"no space"_s));
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
    EXPECT_TRUE(status.startsWith(u"エラー：保存できません。"_s));
}

TEST_F(QtDesk, HandsPasswordsOnWithTheWindowThatAsks) {
    EXPECT_FALSE(desk.passwords(u"caption"_s, platform::PasswordLines::One)) << "where there is no such window";
    QWidget window;
    desk.setMainWindow(&window);
    window.show();
    desk.askPasswords = [&](QWidget* owner, const QString& caption, platform::PasswordLines lines) {
        EXPECT_EQ(owner, &window);
        EXPECT_EQ(caption, u"caption"_s);
        EXPECT_EQ(lines, platform::PasswordLines::WithConfirmation);
        return std::optional(platform::Passwords{u"a"_s, u"b"_s});
    };
    const auto typed = desk.passwords(u"caption"_s, platform::PasswordLines::WithConfirmation);
    ASSERT_TRUE(typed);
    EXPECT_EQ(typed->password, u"a"_s);
    EXPECT_EQ(boxes, 2) << "a splash picture covers no prompt";
}

TEST_F(QtDesk, HandsPagesAndProgressOn) {
    desk.navigate(u"/a/tmp.htm#2004/05/06"_s);
    EXPECT_EQ(page, u"/a/tmp.htm#2004/05/06"_s);
    desk.progress(u"2004/05"_s, 3, 12);
    EXPECT_EQ(status, u"2004/05 (3/12)"_s);
}

} // namespace
} // namespace velloria::tests
