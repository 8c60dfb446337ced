#include "store/database_file.h"
#include "store/jet_home.h"
#include "store/open_old_diary.h"
#include "support/patience.h"

#include <QElapsedTimer>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::GetDBVersion;

constexpr int kPage = 4096;

/// A whole file of version 4 of the format, to be damaged.
class JetBytes {
public:
    explicit JetBytes(const QByteArray& whole)
        : bytes(whole) {}

    quint16 at16(qsizetype at) const { return qFromLittleEndian<quint16>(bytes.constData() + at); }
    quint32 at32(qsizetype at) const { return qFromLittleEndian<quint32>(bytes.constData() + at); }
    void set16(qsizetype at, int value) { qToLittleEndian(quint16(value), bytes.data() + at); }
    void set32(qsizetype at, quint32 value) { qToLittleEndian(value, bytes.data() + at); }

    /// Where the page begins that defines the table Contents.
    qsizetype definition() const {
        for (qsizetype at = 0; at < bytes.size(); at += kPage) {
            const QByteArrayView page = QByteArrayView(bytes).sliced(at, kPage);
            if (page.startsWith("\2\1") && page.contains(utf16("Extend")) && page.contains(utf16("Excerpt")))
                return at;
        }
        ADD_FAILURE() << "no definition";
        return 0;
    }
    /// Where the pages of its rows begin.
    QList<qsizetype> pages() const { return pagesOf(quint32(definition() / kPage)); }
    /// And those of long texts.
    QList<qsizetype> longTexts() const { return pagesOf(qFromLittleEndian<quint32>("LVAL")); }
    /// Where its first live row begins, which has not moved.
    qsizetype firstRow() const {
        for (const qsizetype page : pages()) {
            for (int slot = 0; slot < at16(page + 12); ++slot) {
                if (const int start = at16(page + 14 + 2 * slot); start < 0x1000)
                    return page + start;
            }
        }
        ADD_FAILURE() << "no row";
        return 0;
    }
    /// Where the slot of the list of its pages stands.
    qsizetype mapSlot() const {
        const quint32 pointer = at32(definition() + 55);
        return qsizetype(pointer >> 8) * kPage + 14 + 2 * (pointer & 0xff);
    }
    /// Where the list of its pages says whether it has the page, by a bit of this byte.
    qsizetype listed(quint32 page) const {
        const qsizetype slot = mapSlot();
        const qsizetype list = slot / kPage * kPage + (at16(slot) & 0x1fff);
        return bytes[list] == 1 ? qsizetype(at32(list + 1)) * kPage + 4 + page / 8
                                : list + 5 + (page - at32(list + 1)) / 8;
    }
    void removeFromList(qsizetype page) {
        char& eight = bytes.data()[listed(quint32(page / kPage))];
        eight = char(eight & ~(1 << page / kPage % 8));
    }
    /// The one row of the table DBInfo begins with it, behind the count of its columns.
    void setVersion(int old, int version) {
        int found = 0;
        for (qsizetype at = 0; at < bytes.size(); at += kPage) {
            const qsizetype row = at + (at16(at + 14) & 0x1fff);
            const int columns = old == 220 ? 3 : 1;
            if (bytes[at] != 1 || at16(at + 12) != 1 || row + 4 > bytes.size() || at16(row) != columns ||
                at16(row + 2) != old)
                continue;
            set16(row + 2, version);
            ++found;
        }
        EXPECT_EQ(found, 1);
    }
    /// Where the entry of a column begins, the first of which are counted from 0.
    qsizetype column(int number) const {
        const qsizetype at = definition();
        return at + 63 + 12 * at32(at + 51) + 25 * number;
    }
    static QByteArray utf16(const char* text) {
        QByteArray units;
        for (; *text; ++text)
            units += QByteArray(1, *text) + '\0';
        return units;
    }

    QByteArray bytes;

private:
    QList<qsizetype> pagesOf(quint32 owner) const {
        QList<qsizetype> found;
        for (qsizetype at = 0; at < bytes.size(); at += kPage) {
            if (bytes[at] == 1 && at32(at + 4) == owner)
                found += at;
        }
        EXPECT_FALSE(found.isEmpty());
        return found;
    }
};

struct Damage {
    const char* name;
    void (*make)(JetBytes& file);
    const char* reason; ///< a part of what the person reads
};

const Damage kDamages[] = {
    {"NoBytes", [](JetBytes& file) { file.bytes.clear(); }, "日記データベースではありません"},
    {"Text", [](JetBytes& file) { file.bytes = "Dear diary\r\n"; }, "日記データベースではありません"},
    {"AnotherSignature", [](JetBytes& file) { file.bytes[6] = 'x'; }, "日記データベースではありません"},
    {"HeadAlone", [](JetBytes& file) { file.bytes.truncate(30); }, "ファイルの終わりが欠けています"},
    {"CutInAPage", [](JetBytes& file) { file.bytes.chop(1); }, "ファイルの終わりが欠けています"},
    {"TwoPages", [](JetBytes& file) { file.bytes.truncate(2 * kPage); }, "ファイルの終わりが欠けています"},
    {"CutAtAPage", [](JetBytes& file) { file.bytes.truncate(file.bytes.size() / kPage / 2 * kPage); }, ""},
    {"LaterFormat2", [](JetBytes& file) { file.bytes[0x14] = 2; }, "新しすぎる形式"},
    {"LaterFormat3", [](JetBytes& file) { file.bytes[0x14] = 3; }, "新しすぎる形式"},
    {"LaterFormat6", [](JetBytes& file) { file.bytes[0x14] = 6; }, "新しすぎる形式"},
    {"NoDefinition", [](JetBytes& file) { file.bytes.replace(file.definition(), kPage, QByteArray(kPage, '\0')); },
     "表の定義が壊れています"},
    {"NoColumns", [](JetBytes& file) { file.set16(file.definition() + 45, 0); }, "表の定義が壊れています"},
    {"TooManyColumns", [](JetBytes& file) { file.set16(file.definition() + 45, 0x1234); }, "表の定義が壊れています"},
    {"TooManyIndexes", [](JetBytes& file) { file.set32(file.definition() + 51, 0x7fffffff); },
     "表の定義が壊れています"},
    {"OneRowMore", [](JetBytes& file) { file.set32(file.definition() + 16, 52); }, "52件のうち51件まで"},
    {"OneRowFewer", [](JetBytes& file) { file.set32(file.definition() + 16, 50); }, "件数が合いません"},
    {"NoList", [](JetBytes& file) { file.set32(file.definition() + 55, 0xffffff00); }, "表の定義が壊れています"},
    {"ListWithoutBytes",
     [](JetBytes& file) {
         const qsizetype slot = file.mapSlot();
         const bool isFirst = slot % kPage == 14;
         file.set16(slot, isFirst ? kPage : file.at16(slot - 2) & 0x1fff);
     },
     "壊れています"},
    {"ListOfAnotherKind",
     [](JetBytes& file) {
         const qsizetype slot = file.mapSlot();
         file.bytes[slot / kPage * kPage + (file.at16(slot) & 0x1fff)] = 7;
     },
     "表のページの一覧が壊れています"},
    {"NoPageInTheList",
     [](JetBytes& file) {
         for (const qsizetype page : file.pages())
             file.removeFromList(page);
     },
     "51件のうち0件まで"},
    {"APageMissingInTheList", [](JetBytes& file) { file.removeFromList(file.pages().constLast()); }, "51件のうち"},
    {"ZeroPage", [](JetBytes& file) { file.bytes.replace(file.pages().constFirst(), kPage, QByteArray(kPage, '\0')); },
     "はこの表のページではありません"},
    {"PageOfAnotherTable", [](JetBytes& file) { file.set32(file.pages().constFirst() + 4, 2); },
     "はこの表のページではありません"},
    {"RowsWithoutNumber", [](JetBytes& file) { file.set16(file.pages().constFirst() + 12, 0xffff); }, "壊れています"},
    {"SlotBehindThePage", [](JetBytes& file) { file.set16(file.pages().constFirst() + 14, 0x1fff); }, "壊れています"},
    {"SlotAmongTheSlots", [](JetBytes& file) { file.set16(file.pages().constFirst() + 14, 4); }, "壊れています"},
    {"PointerToNowhere",
     [](JetBytes& file) {
         file.set16(file.pages().constFirst() + 14, file.at16(file.pages().constFirst() + 14) | 0x4000);
     },
     "壊れています"},
    {"FewerColumnsInARow", [](JetBytes& file) { file.set16(file.firstRow(), 12); }, "壊れています"},
    {"FarFewerColumnsInARow", [](JetBytes& file) { file.set16(file.firstRow(), 9); }, "壊れています"},
    {"MoreColumnsInARow", [](JetBytes& file) { file.set16(file.firstRow(), 14); }, "壊れています"},
    {"ColumnOfBytes", [](JetBytes& file) { file.bytes[file.column(3)] = 0x0b; }, "日記にはありません"},
    {"ColumnOfMoney", [](JetBytes& file) { file.bytes[file.column(2)] = 5; }, "日記にはありません"},
    {"NumberOfAnotherSize", [](JetBytes& file) { file.bytes[file.column(2)] = 2; }, "日記にはありません"},
    {"RingOfLongTexts",
     [](JetBytes& file) {
         for (const qsizetype page : file.longTexts()) {
             for (int slot = 0; slot < file.at16(page + 12); ++slot) {
                 if (const int start = file.at16(page + 14 + 2 * slot); start < 0x1000)
                     file.set32(page + start, quint32(page / kPage) << 8 | quint32(slot));
             }
         }
     },
     "壊れています"},
    {"LongTextsOnForeignPages",
     [](JetBytes& file) {
         for (const qsizetype page : file.longTexts())
             file.set32(page + 4, 5);
     },
     "は長い文章のページではありません"},
};

class DamagedJetDiary : public JetHome, public ::testing::WithParamInterface<Damage> {};

INSTANTIATE_TEST_SUITE_P(With, DamagedJetDiary, ::testing::ValuesIn(kDamages),
                         [](const auto& damage) { return damage.param.name; });

TEST_P(DamagedJetDiary, IsRefusedWithTheReasonAndStaysAsItIs) {
    JetBytes damaged(bytesOf(sample(u"v220"_s)));
    GetParam().make(damaged);
    const QString file = path(u"old/diary.mdb"_s);
    QDir().mkpath(path(u"old"_s));
    writeFile(file, damaged.bytes);
    const auto before = contentOf(path(u"old"_s));
    QElapsedTimer timer;
    timer.start();
    const QString failure = failureOf([&] {
        GetDBVersion(file);
        rowsOf(*store::openOldDiary(file), u"Contents"_s,
               {u"Day"_s, u"Number"_s, u"Title"_s, u"Contents"_s, u"Extend"_s, u"Private"_s});
    });
    EXPECT_TRUE(failure.contains(file) && failure.contains(QString::fromUtf8(GetParam().reason)))
        << failure.toStdString();
    EXPECT_FALSE(failure.contains(u"止まりました"_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(u"変更されていません"_s));
    EXPECT_LT(timer.elapsed(), kPatienceMs);
    EXPECT_EQ(contentOf(path(u"old"_s)), before);
}

class DamagedJetSample : public JetHome, public ::testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(Of, DamagedJetSample, ::testing::Values("damaged_cut_half_odd", "damaged_lval_ring_empty"));

TEST_P(DamagedJetSample, IsRefusedSoon) {
    const QString file = sample(QString::fromLatin1(GetParam()).replace(u'_', u'-'));
    const QByteArray before = bytesOf(file);
    QElapsedTimer timer;
    timer.start();
    const QString failure = failureOf([&] { rowsOf(file, u"Contents"_s, {u"Day"_s, u"Contents"_s}); });
    EXPECT_TRUE(failure.contains(u"壊れています"_s) && failure.contains(file)) << failure.toStdString();
    EXPECT_FALSE(failure.contains(u"止まりました"_s)) << failure.toStdString();
    EXPECT_LT(timer.elapsed(), kPatienceMs);
    EXPECT_TRUE(bytesOf(file) == before);
}

class JetDamage : public JetHome {
protected:
    QString damagedCopy(const std::function<void(JetBytes&)>& make, const QString& name = u"v220"_s) {
        JetBytes bytes(bytesOf(sample(name)));
        make(bytes);
        writeFile(path(u"x.mdb"_s), bytes.bytes);
        return path(u"x.mdb"_s);
    }
};

TEST_F(JetDamage, AFileThatWasNotClosedProperlyHasTheRowsThatItHas) {
    const QString file = damagedCopy([](JetBytes& bytes) { bytes.set32(bytes.definition() + 16, 0); });
    EXPECT_EQ(rowsOf(file, u"Contents"_s, {u"Day"_s}).size(), 51U);
}

TEST_F(JetDamage, WithoutACountNoPageIsForgotten) {
    const QString file = damagedCopy([](JetBytes& bytes) {
        bytes.set32(bytes.definition() + 16, 0);
        bytes.removeFromList(bytes.pages().constLast());
    });
    const QString failure = failureOf([&] { rowsOf(file, u"Contents"_s, {u"Day"_s}); });
    EXPECT_TRUE(failure.contains(u"が一覧にありません"_s)) << failure.toStdString();
}

TEST_F(JetDamage, ALostNumberOfTheVersionIsNoVersionZero) {
    const QString file = damagedCopy([](JetBytes& bytes) {
        bytes.bytes.replace(JetBytes::utf16("DBInfo"), JetBytes::utf16("DBInfx"));
        bytes.bytes.replace("DBInfo", "DBInfx");
    });
    EXPECT_TRUE(failureOf([&] { GetDBVersion(file); }).contains(u"表「DBInfo」がありません"_s));
}

TEST_F(JetDamage, AVersionThatIsOlderThanTheTablesIsRefused) {
    for (const int version : {0, 101, 120, 200, 219}) {
        const QString file = damagedCopy([version](JetBytes& bytes) { bytes.setVersion(220, version); });
        const QString failure = failureOf([&] { GetDBVersion(file); });
        EXPECT_TRUE(failure.contains(u"バージョン%1の日記に"_s.arg(version))) << version << failure.toStdString();
    }
    const QString odd = damagedCopy([](JetBytes& bytes) { bytes.setVersion(150, 199); }, u"v150"_s);
    EXPECT_EQ(GetDBVersion(odd), 199);
    const QString withOption = damagedCopy([](JetBytes& bytes) { bytes.setVersion(100, 101); }, u"v100"_s);
    EXPECT_TRUE(failureOf([&] { GetDBVersion(withOption); }).contains(u"「Option」があります"_s));
}

TEST_F(JetDamage, APageInThePlaceOfAnotherIsTold) {
    const QList<qsizetype> pages = JetBytes(bytesOf(sample(u"v220"_s))).pages();
    const QString file = damagedCopy([&](JetBytes& bytes) {
        bytes.bytes.replace(pages.constLast(), kPage, bytes.bytes.mid(pages.constFirst(), kPage));
        bytes.set32(bytes.definition() + 16, 0); // no count could tell
    });
    const QString failure = failureOf([&] { rowsOf(file, u"Contents"_s, {u"Day"_s}); });
    EXPECT_TRUE(failure.contains(u"同じ行が二度現れます"_s)) << failure.toStdString();
}

TEST_F(JetDamage, WhatIsReadableIsTold) {
    const QString file = damagedCopy([](JetBytes& bytes) { bytes.set16(bytes.firstRow(), 9); });
    EXPECT_TRUE(failureOf([&] {
                    rowsOf(file, u"Contents"_s, {u"Day"_s});
                }).contains(u"「Contents」は51件のうち50件まで読めました"_s));
}

} // namespace
} // namespace velloria::tests
