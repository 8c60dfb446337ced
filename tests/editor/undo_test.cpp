#include "editor/undo.h"

#include "support/print.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <malloc.h>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

/// The list as it is told: whole texts in an array.
class PlainList {
public:
    void reset(const QString& text, int caret) {
        m_snapshots = {{}, {text, caret}};
        m_position = 1;
    }
    void record(const QString& text, int caret) {
        m_snapshots.push_back({text, caret});
        m_position = count();
    }
    std::optional<Snapshot> undo() {
        if (m_position < 2)
            return std::nullopt;
        return m_snapshots[std::size_t(--m_position)];
    }
    std::optional<Snapshot> redo() {
        if (m_position == count())
            return std::nullopt;
        return m_snapshots[std::size_t(++m_position)];
    }
    int count() const { return int(m_snapshots.size()) - 1; }
    int position() const { return m_position; }
    const QString& text() const { return m_snapshots[std::size_t(m_position)].text; }

private:
    std::vector<Snapshot> m_snapshots;
    int m_position = 1;
};

QString textOf(const std::optional<Snapshot>& snapshot) {
    return snapshot ? u"%1|%2"_s.arg(snapshot->text).arg(snapshot->caret) : u"nothing"_s;
}

qsizetype bytesInUse() {
    const struct mallinfo2 info = ::mallinfo2();
    return qsizetype(info.uordblks + info.hblkhd);
}

TEST(Undo, RightAfterALoadThereIsNothingToUndoOrRedo) {
    UndoList list;
    list.reset(u"text"_s, 2);
    EXPECT_EQ(textOf(list.undo()), u"nothing"_s);
    EXPECT_EQ(textOf(list.redo()), u"nothing"_s);
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(list.position(), 1);
}

TEST(Undo, TwoTypedLettersAreTwoSteps) {
    UndoList list;
    list.reset(u""_s, 0);
    list.record(u"a"_s, 1);
    list.record(u"ab"_s, 2);
    EXPECT_EQ(textOf(list.undo()), u"a|1"_s);
    EXPECT_EQ(textOf(list.undo()), u"|0"_s);
    EXPECT_EQ(textOf(list.undo()), u"nothing"_s);
    EXPECT_EQ(textOf(list.redo()), u"a|1"_s);
    EXPECT_EQ(textOf(list.redo()), u"ab|2"_s);
    EXPECT_EQ(textOf(list.redo()), u"nothing"_s);
}

TEST(Undo, TypingAfterAnUndoGoesOnTopAndCutsNothingOff) {
    UndoList list;
    list.reset(u""_s, 0);
    for (const QString& text : {u"a"_s, u"ab"_s, u"abc"_s})
        list.record(text, int(text.size()));
    list.undo();
    list.record(u"abx"_s, 3);
    EXPECT_EQ(list.count(), 5);
    EXPECT_EQ(textOf(list.redo()), u"nothing"_s);
    EXPECT_EQ(textOf(list.undo()), u"abc|3"_s);
    EXPECT_EQ(textOf(list.undo()), u"ab|2"_s);
    EXPECT_EQ(textOf(list.redo()), u"abc|3"_s);
    EXPECT_EQ(textOf(list.redo()), u"abx|3"_s);
}

TEST(Undo, ALoadForgetsAll) {
    UndoList list;
    list.reset(u"old"_s, 0);
    list.record(u"older"_s, 1);
    list.reset(u"new"_s, 3);
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(textOf(list.undo()), u"nothing"_s);
}

TEST(Undo, AnyWalkShowsWhatWholeTextsWouldShow) {
    for (quint32 seed = 1; seed <= 40; ++seed) {
        QRandomGenerator random(seed);
        UndoList list;
        PlainList plain;
        const QString first(5000, QChar(u'あ'));
        list.reset(first, 0);
        plain.reset(first, 0);
        for (int i = 0; i < 300; ++i) {
            const int choice = random.bounded(10);
            if (choice < 3) {
                ASSERT_EQ(textOf(list.undo()), textOf(plain.undo())) << seed << ' ' << i;
            } else if (choice < 5) {
                ASSERT_EQ(textOf(list.redo()), textOf(plain.redo())) << seed << ' ' << i;
            } else {
                QString text = plain.text();
                const int at = random.bounded(int(text.size()) + 1);
                const int length = random.bounded(int(text.size()) - at + 1);
                text.replace(at, choice == 5 ? length : length % 3, QString(random.bounded(4), QChar(u'a' + i % 26)));
                list.record(text, at);
                plain.record(text, at);
            }
            ASSERT_EQ(list.count(), plain.count());
            ASSERT_EQ(list.position(), plain.position());
        }
    }
}

TEST(Undo, TheSameTextAgainIsASnapshotLikeAnyOther) {
    UndoList list;
    list.reset(u"aaa"_s, 0);
    list.record(u"aaa"_s, 3);
    list.record(u"aaaa"_s, 1);
    EXPECT_EQ(textOf(list.undo()), u"aaa|3"_s);
    EXPECT_EQ(textOf(list.undo()), u"aaa|0"_s);
}

TEST(Undo, TenThousandChangesOfALongTextTakeLittleRoom) {
    constexpr int kChanges = 10'000;
    QString text(200'000, QChar(u'日'));
    const qsizetype before = bytesInUse();
    UndoList list;
    list.reset(text, 0);
    QRandomGenerator random(1);
    for (int i = 0; i < kChanges; ++i) {
        const int at = random.bounded(int(text.size()));
        text.insert(at, QChar(u'a' + i % 26));
        list.record(text, at + 1);
    }
    EXPECT_LT(bytesInUse() - before, 100'000'000);
    for (int i = 0; i < kChanges; ++i)
        list.undo();
    EXPECT_EQ(list.position(), 1);
    EXPECT_EQ(list.redo()->text.size(), 200'001);
}

TEST(Undo, ChangesAtBothEndsWithUndosBetweenTakeLittleRoomToo) {
    QString text(100'000, QChar(u'日'));
    const qsizetype before = bytesInUse();
    UndoList list;
    list.reset(text, 0);
    for (int i = 0; i < 3000; ++i) {
        list.record(u'a' + text, 1);
        list.record(u'a' + text + u'b', int(text.size()) + 2);
        list.undo();
        ASSERT_EQ(list.undo()->text.size(), text.size());
        list.record(text + u'c', int(text.size()) + 1);
        list.undo();
        ASSERT_EQ(list.undo()->text.size(), text.size() + 1);
        list.record(text, 0);
    }
    EXPECT_LT(bytesInUse() - before, 20'000'000);
}

} // namespace
} // namespace velloria::editor
