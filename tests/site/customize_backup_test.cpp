#include "site/customize_backup.h"

#include "core/files.h"
#include "site/customize_sets.h"
#include "site/site_home.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class CustomizeBackup : public SiteHome {
protected:
    CustomizeBackup() { writeFile(set(), "[General]\r\nHPTitle=old\r\n"); }

    QString set(const QString& name = u"Customize"_s) const { return site::customizeSetFile(session, name); }
    void edit(const QByteArray& title = "new") { writeFile(set(), "[General]\r\nHPTitle=" + title + "\r\n"); }
    bool hasBackup() const {
        return exists(core::files::kCustomizeBackup.in(session)) || exists(core::files::kCustomizeBackupOf.in(session));
    }
    QByteArray title(const QString& name = u"Customize"_s) const { return bytesOf(set(name)).mid(19).trimmed(); }
    /// As a dialog does that is killed.
    void leaveBackup() { site::CustomizeBackup(session).take(); }
    QStringList questions() const { return desk.texts(u"message"_s); }
};

TEST_F(CustomizeBackup, LiesBesideTheProgramWhileASetIsEdited) {
    site::CustomizeBackup backup(session);
    EXPECT_FALSE(backup.isTaken());
    const QByteArray before = bytesOf(set());
    backup.take();
    EXPECT_TRUE(backup.isTaken());
    EXPECT_EQ(bytesOf(session.MyPath + u"Customize.bak"_s), before);
    backup.drop();
    EXPECT_FALSE(backup.isTaken());
    EXPECT_FALSE(hasBackup());
}

TEST_F(CustomizeBackup, PutsBackEachByte) {
    writeFile(set(), "no set\n\xff\x81");
    site::CustomizeBackup backup(session);
    backup.take();
    EXPECT_FALSE(backup.isSetChanged());
    edit();
    EXPECT_TRUE(backup.isSetChanged());
    backup.restore();
    EXPECT_EQ(bytesOf(set()), "no set\n\xff\x81");
    EXPECT_TRUE(backup.isTaken());
}

TEST_F(CustomizeBackup, BringsBackASetThatIsGone) {
    site::CustomizeBackup backup(session);
    backup.take();
    ASSERT_TRUE(QFile::remove(set()));
    EXPECT_TRUE(backup.isSetChanged());
    backup.restore();
    EXPECT_EQ(title(), "old");
}

TEST_F(CustomizeBackup, GoesToTheSetThatItIsOf) {
    site::CustomizeBackup backup(session);
    backup.take();
    edit();
    writeFile(set(u"other"_s), "other");
    session.CustIniFile = set(u"other"_s);
    backup.restore();
    EXPECT_EQ(title(), "old");
    EXPECT_EQ(bytesOf(set(u"other"_s)), "other");
}

TEST_F(CustomizeBackup, IsNoneWhenItCouldNotBeTaken) {
    session.CustIniFile = set(u"gone"_s);
    site::CustomizeBackup backup(session);
    EXPECT_NE(failureOf([&] { backup.take(); }), u""_s);
    EXPECT_FALSE(backup.isTaken());
    EXPECT_FALSE(hasBackup());
}

TEST_F(CustomizeBackup, IsKeptWhenTheSetCantBePutBack) {
    site::CustomizeBackup backup(session);
    backup.take();
    edit();
    ASSERT_TRUE(QFile::setPermissions(set(), QFile::ReadOwner));
    EXPECT_NE(failureOf([&] { backup.restore(); }), u""_s);
    EXPECT_EQ(title(), "new");
    EXPECT_TRUE(hasBackup());
}

TEST_F(CustomizeBackup, OfAKilledDialogIsOfferedAndTakenBack) {
    leaveBackup();
    edit();
    desk.answers = {u"yes"_s};
    site::settleLeftBackup(run);
    EXPECT_EQ(questions(), QStringList{u"前回の編集を取り消しますか？"_s});
    EXPECT_EQ(title(), "old");
    EXPECT_FALSE(hasBackup());
}

TEST_F(CustomizeBackup, OfAKilledDialogIsRefusedOnce) {
    leaveBackup();
    edit();
    desk.answers = {u"no"_s};
    site::settleLeftBackup(run);
    site::settleLeftBackup(run);
    EXPECT_EQ(title(), "new");
    EXPECT_FALSE(hasBackup());
}

TEST_F(CustomizeBackup, OfAnotherSetIsRemovedWithoutAWord) {
    leaveBackup();
    edit();
    writeFile(set(u"other"_s), "other");
    session.CustIniFile = set(u"other"_s);
    site::settleLeftBackup(run);
    EXPECT_EQ(title(), "new");
    EXPECT_EQ(bytesOf(set(u"other"_s)), "other");
    EXPECT_FALSE(hasBackup());
}

TEST_F(CustomizeBackup, WithoutItsSetsNameOrAChangeIsRemovedWithoutAWord) {
    writeFile(core::files::kCustomizeBackup.in(session), "stale");
    site::settleLeftBackup(run);
    EXPECT_FALSE(hasBackup());
    leaveBackup();
    site::settleLeftBackup(run);
    EXPECT_FALSE(hasBackup());
    EXPECT_EQ(title(), "old");
}

} // namespace
} // namespace velloria::tests
