#include "site/customize_set_commands.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/settings.h"
#include "site/customize_sets.h"
#include "site/site_home.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class CustomizeSetCommands : public SiteHome {
protected:
    CustomizeSetCommands() { writeFile(set(u"Customize"_s), "old"); }

    QString set(const QString& name) const { return site::customizeSetFile(session, name); }
    QByteArray bytes(const QString& name) const { return bytesOf(set(name)); }
    /// An Apply that writes behind what the set holds.
    void apply(const QByteArray& what = "+applied") {
        writeFile(session.CustIniFile, bytesOf(session.CustIniFile) + what);
    }
    void make(const QString& name) {
        site::makeCustomizeSet(session, backup, name, [this] { apply(); });
    }
    QString selectedInSettings() const { return core::Settings(session).text(core::keys::kCustomizeIni); }

    site::CustomizeBackup backup{session};
};

TEST_F(CustomizeSetCommands, ANewSetIsACopyWithWhatIsApplied) {
    const QString selected = selectedInSettings();
    make(u"青"_s);
    EXPECT_EQ(bytes(u"青"_s), "old+applied");
    EXPECT_EQ(bytes(u"Customize"_s), "old");
    EXPECT_EQ(site::selectedCustomizeSet(session), u"青"_s);
    EXPECT_EQ(selectedInSettings(), selected);
    EXPECT_FALSE(exists(core::files::kCustomizeBackup.in(session)));
}

/// What was tried out before the new set was thought of belongs to the new one.
TEST_F(CustomizeSetCommands, ANewSetLeavesTheOldOneAsItWasBeforeItsLiveChanges) {
    backup.take();
    apply("+live");
    make(u"青"_s);
    EXPECT_EQ(bytes(u"Customize"_s), "old");
    EXPECT_EQ(bytes(u"青"_s), "old+live+applied");
    EXPECT_TRUE(backup.isTaken()) << "that of the old one, until the next is taken";
    EXPECT_FALSE(backup.isSetChanged());
}

TEST_F(CustomizeSetCommands, ANewSetIsNoneWhenTheOldOneCantBePutBack) {
    writeFile(set(u"青"_s), "replaced");
    backup.take();
    apply("+live");
    const QString old = session.CustIniFile;
    ASSERT_TRUE(QFile::setPermissions(old, QFile::ReadOwner));
    for (const QString& name : {u"青"_s, u"new"_s}) {
        EXPECT_NE(failureOf([&] { make(name); }), u""_s);
        EXPECT_EQ(session.CustIniFile, old);
    }
    EXPECT_EQ(bytes(u"青"_s), "replaced");
    EXPECT_FALSE(exists(set(u"new"_s)));
    EXPECT_TRUE(backup.isSetChanged()) << "and can be put back later";
}

TEST_F(CustomizeSetCommands, ANewSetMayTakeThePlaceOfAnotherOrOfItself) {
    writeFile(set(u"青"_s), "replaced");
    make(u"青"_s);
    EXPECT_EQ(bytes(u"青"_s), "old+applied");
    backup.take();
    make(u"青"_s);
    EXPECT_EQ(bytes(u"青"_s), "old+applied+applied");
}

TEST_F(CustomizeSetCommands, ANewSetThatFailsLeavesEverything) {
    writeFile(set(u"青"_s), "replaced");
    const auto fail = [] { throw platform::Failure(u"no"_s, {}, {}); };
    const QString old = session.CustIniFile;
    for (const QString& name : {u"青"_s, u"new"_s}) {
        EXPECT_NE(failureOf([&] { site::makeCustomizeSet(session, backup, name, fail); }), u""_s);
        EXPECT_EQ(session.CustIniFile, old);
    }
    EXPECT_EQ(bytes(u"青"_s), "replaced");
    EXPECT_FALSE(exists(set(u"new"_s)));
}

TEST_F(CustomizeSetCommands, DeletingGoesOnWithTheNextOfTheList) {
    for (const QString& name : {u"a"_s, u"z"_s})
        writeFile(set(name), "[" + name.toLatin1() + "]");
    site::deleteCustomizeSet(session, u"Customize"_s);
    EXPECT_EQ(site::customizeSets(session), (QStringList{u"a"_s, u"z"_s}));
    EXPECT_EQ(site::selectedCustomizeSet(session), u"z"_s);
    EXPECT_EQ(selectedInSettings(), session.CustIniFile);
    EXPECT_FALSE(exists(core::files::kCustomizeBackup.in(session)));
    site::deleteCustomizeSet(session, u"z"_s);
    EXPECT_EQ(site::selectedCustomizeSet(session), u"a"_s);
}

TEST_F(CustomizeSetCommands, DeletingPassesOverWhatCantBeSelected) {
    const QByteArray noText("[m]\0", 4);
    writeFile(set(u"a"_s), "[a]");
    writeFile(set(u"m"_s), noText);
    site::deleteCustomizeSet(session, u"Customize"_s);
    EXPECT_EQ(site::selectedCustomizeSet(session), u"a"_s);
    // Where nothing else is left, it is told and not replaced.
    EXPECT_NE(failureOf([this] { site::deleteCustomizeSet(session, u"a"_s); }), u""_s);
    EXPECT_EQ(bytes(u"a"_s), "[a]");
    EXPECT_EQ(bytes(u"m"_s), noText);
}

TEST_F(CustomizeSetCommands, DeletingTheLastOneBringsThatOfTheProgram) {
    const QByteArray first = bytesOf(core::files::kFirstCustomizeIni.in(session));
    site::deleteCustomizeSet(session, u"Customize"_s);
    EXPECT_EQ(bytes(u"Customize"_s), first);
    EXPECT_EQ(site::selectedCustomizeSet(session), u"Customize"_s);
    writeFile(set(u"only"_s), "only");
    ASSERT_TRUE(QFile::remove(set(u"Customize"_s)));
    site::selectCustomizeSet(session, u"only"_s);
    site::deleteCustomizeSet(session, u"only"_s);
    EXPECT_EQ(site::customizeSets(session), QStringList{u"Customize"_s});
    EXPECT_EQ(selectedInSettings(), set(u"Customize"_s));
}

TEST_F(CustomizeSetCommands, DeletingThatFailsKeepsSetAndChoice) {
    writeFile(set(u"z"_s), "[z]");
    const QString old = session.CustIniFile;
    ASSERT_TRUE(QFile::setPermissions(session.DiaryIniFile, QFile::ReadOwner));
    EXPECT_NE(failureOf([this] { site::deleteCustomizeSet(session, u"Customize"_s); }), u""_s);
    EXPECT_EQ(session.CustIniFile, old);
    EXPECT_EQ(bytes(u"Customize"_s), "old");
}

} // namespace
} // namespace velloria::tests
