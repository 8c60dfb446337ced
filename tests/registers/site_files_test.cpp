#include "registers/site_files.h"

#include "core/day_key.h"
#include "core/keys.h"
#include "core/settings_change.h"
#include "registers/file_register.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using registers::kAllDays;
using store::FileRow;

class SiteFiles : public TestHome {
protected:
    void writeEntry(const QString& day, bool isPrivate) {
        store::Entry entry = entryOf(day, u"題"_s);
        entry.isPrivate = isPrivate;
        write(entry);
    }
    void add(const QString& name, const QString& day, int number = 1, bool isUploaded = false) {
        registers::FileRegister(session.databaseFile()).addFile({0, name, day, number, isUploaded, false});
    }
    /// The names of the rows that go, of all that there are.
    QStringList taken(registers::SiteFiles& files) const {
        QStringList names;
        for (const FileRow& row : files.take(registers::FileRegister(session.databaseFile()).ListFiles()))
            names += row.name;
        return names;
    }
    QStringList taken() const {
        registers::SiteFiles files(session);
        return taken(files);
    }
};

TEST_F(SiteFiles, OfPrivateEntriesStayAway) {
    writeEntry(u"2004/05/05"_s, true);
    writeEntry(u"2004/05/06"_s, false);
    writeEntry(u"2004/05/06"_s, true);
    add(u"private.gif"_s, u"2004/05/05"_s);
    add(u"public.gif"_s, u"2004/05/06"_s, 1);
    add(u"second.gif"_s, u"2004/05/06"_s, 2);
    add(u"no entry.gif"_s, u"2004/05/06"_s, 3);
    add(u"no day.gif"_s, u"2004/05/07"_s);
    add(u"all.css"_s, kAllDays, 0);
    EXPECT_EQ(taken(), (QStringList{u"public.gif"_s, u"no entry.gif"_s, u"no day.gif"_s, u"all.css"_s}));
}

TEST_F(SiteFiles, OfPrivateEntriesFollowWhenOneBeforeThemIsDeleted) {
    writeEntry(u"2004/05/05"_s, false);
    writeEntry(u"2004/05/05"_s, true);
    writeEntry(u"2004/05/05"_s, false);
    add(u"first.gif"_s, u"2004/05/05"_s, 1);
    add(u"private.gif"_s, u"2004/05/05"_s, 2);
    add(u"public.gif"_s, u"2004/05/05"_s, 3);
    diary().DeleteEntry(u"2004/05/05"_s, 1);
    EXPECT_EQ(taken(), QStringList{u"public.gif"_s});
    diary().DeleteEntry(u"2004/05/05"_s, 2);
    EXPECT_EQ(taken(), QStringList{u"public.gif"_s});
}

TEST_F(SiteFiles, OfADeletedPrivateEntryStayAway) {
    writeEntry(u"2004/05/05"_s, true);
    writeEntry(u"2004/05/05"_s, false);
    add(u"private.gif"_s, u"2004/05/05"_s, 1);
    add(u"public.gif"_s, u"2004/05/05"_s, 2);
    diary().DeleteEntry(u"2004/05/05"_s, 1);
    EXPECT_EQ(taken(), QStringList{u"public.gif"_s});
    diary().DeleteEntry(u"2004/05/05"_s, 1);
    writeEntry(u"2004/05/05"_s, false);
    EXPECT_EQ(taken(), QStringList{u"public.gif"_s});
}

TEST_F(SiteFiles, GoWhenTheNameHasAPublicRowToo) {
    writeEntry(u"2004/05/05"_s, true);
    writeEntry(u"2004/05/06"_s, false);
    add(u"both.gif"_s, u"2004/05/05"_s);
    add(u"ＢＯＴＨ.GIF"_s, u"2004/05/06"_s);
    add(u"all.gif"_s, u"2004/05/05"_s);
    add(u"all.gif"_s, kAllDays, 0);
    add(u"two.gif"_s, u"2004/05/05"_s);
    add(u"two.gif"_s, u"2004/05/05"_s);
    EXPECT_EQ(taken(), (QStringList{u"all.gif"_s, u"both.gif"_s, u"ＢＯＴＨ.GIF"_s, u"all.gif"_s}));
}

TEST_F(SiteFiles, CountByTheDateOfTheirDay) {
    writeEntry(u"2004/05/03"_s, true);
    for (const QString& day : {u"2004/5/3"_s, u"2004-05-03"_s, u"2004/05/03 12:00"_s})
        add(u"private.gif"_s, day);
    add(u"other day.gif"_s, u"2004/05/04"_s);
    sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES ('null.gif', NULL, 1), ('no number.gif', '2004/05/03', "
        u"NULL)"_s);
    EXPECT_EQ(taken(), (QStringList{u"null.gif"_s, u"no number.gif"_s, u"other day.gif"_s}));
}

TEST_F(SiteFiles, WithADayInAnotherFormFollowTheirPrivateEntry) {
    for (const bool isPrivate : {false, true, true, false, false})
        writeEntry(u"2004/02/05"_s, isPrivate);
    for (const QString& day : {u"2004/2/5"_s, u"2004-02-05"_s, u"平成16年2月5日"_s})
        add(u"%1.gif"_s.arg(day.size()), day, 2);
    add(u"to be deleted.gif"_s, u"2004/2/5"_s, 3);
    add(u"public.gif"_s, u"2004/2/5"_s, 1);
    add(u"other day.gif"_s, u"2004/2/6"_s, 2);
    const QStringList free = taken();
    EXPECT_EQ(free, (QStringList{u"public.gif"_s, u"other day.gif"_s}));
    diary().DeleteEntry(u"2004/02/05"_s, 3);
    EXPECT_EQ(taken(), free);
    diary().DeleteEntry(u"2004/02/05"_s, 1);
    EXPECT_EQ(taken(), QStringList{u"other day.gif"_s}) << "public.gif names the private entry, now the first";
    sql(u"DELETE FROM FileDB WHERE FileName = 'public.gif'"_s);
    diary().DeleteEntry(u"2004/02/05"_s, 1);
    EXPECT_EQ(taken(), QStringList{u"other day.gif"_s});
}

TEST_F(SiteFiles, OfPrivateEntriesWhoseDayHasAnotherFormStayAway) {
    writeEntry(u"2004/2/5"_s, false);
    writeEntry(u"2004/2/5"_s, true);
    sql(u"UPDATE Contents SET Number = RecordID"_s);
    add(u"a.gif"_s, u"2004/02/05"_s, 2);
    add(u"b.gif"_s, u"2004-2-5"_s, 2);
    add(u"c.gif"_s, u"2004/02/05"_s, 1);
    EXPECT_EQ(taken(), QStringList{u"c.gif"_s});
    diary().DeleteEntry(u"2004/2/5"_s, 1);
    sql(u"DELETE FROM FileDB WHERE FileName = 'c.gif'"_s);
    EXPECT_EQ(taken(), QStringList());
    diary().DeleteEntry(u"2004/2/5"_s, 1);
    EXPECT_EQ(taken(), QStringList());
}

TEST_F(SiteFiles, OfADayInTwoFormsStayAwayWhenEitherEntryIsPrivate) {
    writeEntry(u"2004/02/05"_s, true);
    writeEntry(u"2004/2/5"_s, false);
    writeEntry(u"2004/02/06"_s, false);
    writeEntry(u"2004/2/6"_s, true);
    for (const QString& day : {u"2004/02/05"_s, u"2004/2/5"_s, u"2004/02/06"_s, u"2004/2/6"_s})
        add(core::dayFileName(day), day);
    EXPECT_EQ(taken(), QStringList());
}

TEST_F(SiteFiles, AllGoWhenTheUserWantsIt) {
    writeEntry(u"2004/05/05"_s, true);
    add(u"private.gif"_s, u"2004/05/05"_s, 1, true);
    add(u"../x"_s, u"2004/05/05"_s);
    const struct {
        const char16_t* value;
        QStringList taken;
    } cases[] = {{u"1", {u"private.gif"_s}}, {u"0", {}}, {u"2", {}}, {u"yes", {}}, {u"99999", {}}, {u"", {}}};
    for (const auto& c : cases) {
        core::writeQuietly(session, core::keys::kPrivateFiles, QString::fromUtf16(c.value));
        EXPECT_EQ(taken(), c.taken) << QString::fromUtf16(c.value).toStdString();
    }
}

TEST_F(SiteFiles, TellsOnceWhatHasGoneOutBefore) {
    writeEntry(u"2004/05/05"_s, true);
    add(u"waiting.gif"_s, u"2004/05/05"_s);
    add(u"sent.gif"_s, u"2004/05/05"_s, 1, true);
    registers::SiteFiles files(session);
    desk.events = {};
    files.tell(desk);
    EXPECT_EQ(desk.texts(u"status"_s), QStringList());
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(taken(files), QStringList());
        files.tell(desk);
    }
    EXPECT_EQ(desk.texts(u"status"_s),
              QStringList{u"「sent.gif」は非公開の日記だけのファイルですが、公開したものがサイトに残っています。"_s});
    files.take(registers::FileRegister(session.databaseFile()).ListFiles(),
               [](const FileRow& row) { return row.name == u"waiting.gif"; });
    files.tell(desk);
    EXPECT_TRUE(lastStatus().startsWith(u"「waiting.gif」は非公開"_s)) << lastStatus().toStdString();
}

TEST_F(SiteFiles, AreNamesAndNothingElse) {
    const QStringList names{
        u"../diary.mdb"_s, u"..\\diary.ini"_s, u"/etc/passwd"_s, u"C:x.gif"_s, u"."_s, u".."_s, u""_s};
    for (const QString& name : names)
        add(name, kAllDays, 0);
    add(u"a\r\nb"_s, u"2004/05/06"_s);
    sql(u"INSERT INTO FileDB (FileName, Day) VALUES (NULL, 'ALL')"_s);
    add(u"good.gif"_s, kAllDays, 0);
    registers::SiteFiles files(session);
    desk.events = {};
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(taken(files), QStringList{u"good.gif"_s});
        files.tell(desk);
    }
    ASSERT_EQ(desk.texts(u"status"_s).size(), 1);
    for (const QString& name : names)
        EXPECT_EQ(lastStatus().count(u'「' + name + u'」'), 1) << name.toStdString();
    EXPECT_TRUE(lastStatus().contains(u"「a??b」"_s)) << lastStatus().toStdString();
}

} // namespace
} // namespace velloria::tests
