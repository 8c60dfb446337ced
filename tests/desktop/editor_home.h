// The editor and the calendar on a screen, and words to work them as a person does.
#pragma once

#include "desktop/combo.h"
#include "desktop/line_box.h"
#include "desktop/month_view.h"
#include "desktop/text_pane.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "support/desktop_home.h"

#include <QInputMethodEvent>
#include <QJsonDocument>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>

namespace velloria::tests {

/// Fixture: main window, calendar and editor beside each other, no day loaded. A failure box that the test doesn't
/// expect, an unanswered question among them, fails it.
class EditorHome : public DesktopHome {
protected:
    static inline const QString kDay = QStringLiteral("2004/05/06");

    void SetUp() override {
        showTop();
        calendar().place({0, 0, 279, 214});
        calendar().showChild();
        calendar().showDay({2004, 5, 6});
        contents().place({285, 0, 420, 600});
        settle();
    }
    void TearDown() override {
        EXPECT_EQ(desk.texts(QStringLiteral("failure")).size(), expectedFailures)
            << desk.texts(QStringLiteral("failure")).join(u'\n').toStdString();
        EXPECT_TRUE(desk.answers.isEmpty()) << "a question that was expected was not asked";
    }

    editor::frmContents& contents() { return context.windows.get<editor::frmContents>(); }
    editor::frmCalender& calendar() { return context.windows.get<editor::frmCalender>(); }
    template <class Control>
    Control& field(const QString& name) {
        return control<Control>(contents(), name);
    }
    desktop::LineBox& title() { return field<desktop::LineBox>(QStringLiteral("txtTitle")); }
    desktop::TextPane& pane(int index = 0) {
        static const QStringList kNames{QStringLiteral("txtContents"), QStringLiteral("txtExtend"),
                                        QStringLiteral("txtExcerpt")};
        return field<desktop::TextPane>(kNames[index]);
    }
    desktop::Combo& combo(const QString& name) { return field<desktop::Combo>(name); }
    QToolButton& tool(const QString& key) { return field<QToolButton>(key); }
    QTabWidget& tabs() { return field<QTabWidget>(QStringLiteral("TabStrip1")); }
    desktop::MonthView& month() { return control<desktop::MonthView>(calendar(), QStringLiteral("Calender")); }

    bool isSavable() {
        EXPECT_EQ(tool(QStringLiteral("SaveToMDBOnly")).isEnabled(), tool(QStringLiteral("SaveToMDB")).isEnabled());
        return tool(QStringLiteral("SaveToMDB")).isEnabled();
    }
    bool isInsertable() {
        const bool isOn = combo(QStringLiteral("ComboTag")).isEnabled();
        for (const char* key : {"InsertURL", "InsertImg", "InsertTag"})
            EXPECT_EQ(tool(QLatin1StringView(key)).isEnabled(), isOn) << key;
        return isOn;
    }

    void clickDay(const QDate& day) {
        const QRect cell = month().cellOf(day);
        ASSERT_FALSE(cell.isEmpty());
        QTest::mouseClick(&month(), Qt::LeftButton, Qt::NoModifier, cell.center());
        settle();
    }
    void clickDay(int day) { clickDay(QDate(2004, 5, day)); }
    void clickButton(const QString& name) {
        QTest::mouseClick(&control<QPushButton>(calendar(), name), Qt::LeftButton);
        settle();
    }
    void clickTool(const QString& key) {
        QTest::mouseClick(&tool(key), Qt::LeftButton);
        settle();
    }
    /// Puts the caret at the end of the pane by a click, as a writer begins.
    void clickPane(int index = 0) {
        QTest::mouseClick(pane(index).viewport(), Qt::LeftButton, Qt::NoModifier,
                          pane(index).viewport()->rect().center());
        settle();
    }
    void clickTab(int index) {
        QTabBar* bar = tabs().tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(index).center());
        settle();
    }
    /// Picks an item with the keyboard: the list opens, Home and Down lead to it.
    void pick(desktop::Combo& box, int index) {
        box.showPopup();
        settle();
        QWidget* list = QApplication::activePopupWidget();
        ASSERT_TRUE(list) << "no list is open";
        QTest::keyClick(box.view(), Qt::Key_Home);
        for (int i = 0; i < index; ++i)
            QTest::keyClick(box.view(), Qt::Key_Down);
        QTest::keyClick(box.view(), Qt::Key_Return);
        settle();
    }
    /// Types ASCII by keys and the rest by an input method, as it is typed in life.
    static void keys(QWidget& widget, const QString& text) {
        for (const QChar character : text) {
            if (character.unicode() < 0x80)
                QTest::keyClick(&widget, char(character.unicode()));
            else
                compose(widget, {}, character);
        }
    }
    static void compose(QWidget& widget, const QString& preedit, const QString& commit = {}) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(&widget, &event);
    }

    QString caption() { return contents().windowTitle(); }
    /// Number and title of the day's rows, highest first.
    QStringList rows(const QString& day = kDay) {
        QStringList rows;
        for (const store::Entry& row : diary().LoadDay(day))
            rows += QString::number(row.number) + row.title;
        return rows;
    }
    /// Titles of the rescued lines.
    QStringList rescued() {
        QStringList titles;
        if (!exists(session.UserPath + QStringLiteral("rescue.jsonl")))
            return titles;
        for (const QByteArray& line : bytesOf(session.UserPath + QStringLiteral("rescue.jsonl")).split('\n')) {
            if (!line.isEmpty())
                titles += QJsonDocument::fromJson(line).object()[QStringLiteral("Title")].toString();
        }
        return titles;
    }
    void writeDay(const QStringList& titles, const QString& day = kDay) {
        for (const QString& entryTitle : titles)
            write(day, entryTitle, QStringLiteral("text of ") + entryTitle);
    }
    void answer(const QString& text) { desk.answers.append(text); }
    QStringList questions() {
        QStringList texts;
        for (const QJsonValue& event : desk.events) {
            if (event[QStringLiteral("kind")] == QStringLiteral("question"))
                texts += event[QStringLiteral("text")].toString();
        }
        return texts;
    }

    qsizetype expectedFailures = 0;
};

} // namespace velloria::tests
