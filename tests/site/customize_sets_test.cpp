#include "site/customize_sets.h"

#include "core/keys.h"
#include "core/settings.h"
#include "site/site_home.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class CustomizeSets : public SiteHome {
protected:
    void makeSet(const QString& name) {
        writeFile(session.DataPath + u"Customize/"_s + name + u".ini"_s, "[General]\r\n");
    }
};

TEST_F(CustomizeSets, AreTheIniFilesWithoutTheOneOfTheFeeds) {
    for (const QString& name : {u"rss"_s, u"青"_s, u"Night"_s})
        makeSet(name);
    EXPECT_EQ(site::customizeSets(session), (QStringList{u"Customize"_s, u"Night"_s, u"青"_s}));
    EXPECT_EQ(site::allCustomizeSets(session), (QStringList{u"Customize"_s, u"Night"_s, u"rss"_s, u"青"_s}));
}

TEST_F(CustomizeSets, PiecesAreTheOtherFiles) {
    writePiece(u"上"_s, "up");
    EXPECT_EQ(site::textPieces(session), QStringList{u"上"_s});
    EXPECT_EQ(bytesOf(site::textPieceFile(session, u"上"_s)), "up");
}

TEST_F(CustomizeSets, AFileThatIsNothingButAnEndingIsNone) {
    makeSet(u""_s);
    writePiece(u""_s, "");
    EXPECT_EQ(site::allCustomizeSets(session), QStringList{u"Customize"_s});
    EXPECT_EQ(site::textPieces(session), QStringList());
}

/// The next start would refuse it, and nobody could select another one.
TEST_F(CustomizeSets, WhatIsNoTextOrBeyondAllMeasureIsNotSelected) {
    const QString old = session.CustIniFile;
    writeFile(site::customizeSetFile(session, u"wide"_s), QByteArray("\xff\xfe[\0G\0]\0", 8));
    EXPECT_TRUE(
        failureOf([this] { site::selectCustomizeSet(session, u"wide"_s); }).contains(u"テキストではありません"_s));
    writeFile(site::customizeSetFile(session, u"huge"_s), "[General]\r\n");
    ASSERT_TRUE(QFile::resize(site::customizeSetFile(session, u"huge"_s), qint64(10) << 30)); // takes no room
    EXPECT_TRUE(
        failureOf([this] { site::selectCustomizeSet(session, u"huge"_s); }).contains(u"ファイルが大きすぎます"_s));
    EXPECT_EQ(session.CustIniFile, old);
    EXPECT_EQ(core::Settings(session).text(core::keys::kCustomizeIni), old);
}

TEST_F(CustomizeSets, ASetIsFoundWhateverTheCaseOfItsFile) {
    QDir(session.DataPath).rename(u"Customize"_s, u"CUSTOMIZE"_s);
    QFile::rename(session.DataPath + u"CUSTOMIZE/Customize.ini"_s, session.DataPath + u"CUSTOMIZE/NIGHT.INI"_s);
    EXPECT_EQ(site::customizeSets(session), QStringList{u"NIGHT"_s});
    EXPECT_EQ(site::customizeSetFile(session, u"night"_s), session.DataPath + u"CUSTOMIZE/NIGHT.INI"_s);
}

TEST_F(CustomizeSets, TakeNamesThatEveryDiskAndTheSettingsTake) {
    for (const QString& name : {u"青"_s, u"a.b"_s, u"[a=b]"_s, u"a b"_s, u"UserData"_s})
        EXPECT_TRUE(site::isCustomizeName(session, name)) << name.toStdString();
    for (const QString& name : {u""_s,     u" "_s,  u" a"_s, u"a "_s,           u"a."_s,   u"."_s,   u".."_s,  u"a/b"_s,
                                u"a\\b"_s, u"c:"_s, u"a*"_s, u"a?"_s,           u"a\"b"_s, u"a<b"_s, u"a>b"_s, u"a|b"_s,
                                u"a\tb"_s, u"é"_s,  u"😀"_s,  QString(300, u'a')})
        EXPECT_FALSE(site::isCustomizeName(session, name)) << name.toStdString();
}

TEST_F(CustomizeSets, TheSelectedOneIsKeptInTheSettings) {
    makeSet(u"青"_s);
    site::selectCustomizeSet(session, u"青"_s);
    EXPECT_EQ(site::selectedCustomizeSet(session), u"青"_s);
    EXPECT_EQ(core::Settings(session).text(core::keys::kCustomizeIni), session.CustIniFile);
    EXPECT_EQ(session.CustIniFile, session.DataPath + u"Customize/青.ini"_s);
}

TEST_F(CustomizeSets, OneThatIsGoneIsRefusedAndTheOldOneStays) {
    const QString old = session.CustIniFile;
    EXPECT_TRUE(
        failureOf([this] { site::selectCustomizeSet(session, u"gone"_s); }).contains(u"ファイルがありません"_s));
    // One that lies elsewhere is none, and one that the settings would give back cut would be lost at the next start.
    writeFile(session.DataPath + u"elsewhere.ini"_s, "");
    EXPECT_NE(failureOf([this] { site::selectCustomizeSet(session, u"../elsewhere"_s); }), u""_s);
    const QString longName(240, u'a');
    makeSet(longName);
    EXPECT_TRUE(
        failureOf([&] { site::selectCustomizeSet(session, longName); }).contains(u"長すぎて設定に保存できません"_s));
    EXPECT_EQ(session.CustIniFile, old);
    EXPECT_EQ(core::Settings(session).text(core::keys::kCustomizeIni), old);
}

} // namespace
} // namespace velloria::tests
