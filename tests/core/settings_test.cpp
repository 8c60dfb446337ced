#include "core/settings.h"

#include "core/ini.h"
#include "core/keys.h"
#include "core/program_keys.h"
#include "core/settings_change.h"
#include "core/site_keys.h"
#include "platform/file_write.h"

#include <gtest/gtest.h>

#include <QSet>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using core::SettingsFile;
namespace keys = core::keys;

class SettingsOfASession : public testing::Test {
protected:
    SettingsOfASession() {
        session.MyPath = folder.path() + u'/';
        session.DiaryIniFile = session.MyPath + u"diary.ini"_s;
        session.CustIniFile = session.MyPath + u"Customize.ini"_s;
        session.FrameIniFile = session.MyPath + u"Frame.ini"_s;
        session.RSSIniFile = session.MyPath + u"RSS.ini"_s;
        session.HaloScanIniFile = session.MyPath + u"HaloScan.ini"_s;
        session.BlogIniFile = session.MyPath + u"Blog.ini"_s;
    }
    void put(const QString& name, const QByteArray& bytes) const {
        platform::replaceFile(session.MyPath + name, bytes, platform::Durability::Derived);
    }

    QTemporaryDir folder;
    core::Session session;
    const core::Settings settings{session};
};

TEST_F(SettingsOfASession, KnowWhereEachFileIsNow) {
    const std::pair<SettingsFile, QString> files[] = {
        {SettingsFile::Diary, u"diary.ini"_s},         {SettingsFile::Customize, u"Customize.ini"_s},
        {SettingsFile::Frame, u"Frame.ini"_s},         {SettingsFile::Rss, u"RSS.ini"_s},
        {SettingsFile::HaloScan, u"HaloScan.ini"_s},   {SettingsFile::Blog, u"Blog.ini"_s},
        {SettingsFile::Users, u"velluser.ini"_s},      {SettingsFile::Endpoints, u"endpoints.ini"_s},
        {SettingsFile::HtmlToText, u"HTML2TXT.ini"_s}, {SettingsFile::Update, u"update.txt"_s}};
    for (const auto& [file, name] : files)
        EXPECT_EQ(settings.file(file), session.MyPath + name);
    session.CustIniFile = u"/other/set.ini"_s;
    EXPECT_EQ(settings.file(SettingsFile::Customize), u"/other/set.ini"_s);
}

TEST_F(SettingsOfASession, AreReadFromTheirFileAtEachCall) {
    put(u"Frame.ini"_s, "[Divide]\r\nDiaryTerm=3\r\n");
    EXPECT_EQ(settings.number(keys::divide::kDiaryTerm), 3);
    put(u"Frame.ini"_s, "[Divide]\r\nDiaryTerm=4\r\n");
    EXPECT_EQ(settings.number(keys::divide::kDiaryTerm), 4);
    EXPECT_EQ(settings.text(keys::rss::kTitle), u"日記"_s) << "no file";
    put(u"RSS.ini"_s, "[Setting]\r\nTitle=\r\n");
    EXPECT_EQ(settings.text(keys::rss::kTitle), u""_s) << "empty is not missing";
}

TEST_F(SettingsOfASession, AFlagIsOnForOneAlone) {
    for (const auto& [value, isOn] : {std::pair("1", true),
                                      {"1x", true},
                                      {"0", false},
                                      {"2", false},
                                      {"", false},
                                      {"x", false},
                                      {"99999999", false}}) {
        put(u"diary.ini"_s, QByteArray("[Browser]\r\nFavoriteSort=") + value + "\r\n");
        EXPECT_EQ(settings.isOn(keys::kFavoriteSort), isOn) << value;
    }
}

TEST_F(SettingsOfASession, APathComesBackWhateverItIsCalled) {
    const QString name = u"/home/〜 — 名/a.htm"_s;
    core::writeQuietly(session, keys::kSaveFilePath, name);
    EXPECT_EQ(settings.text(keys::kSaveFilePath), name);
    EXPECT_NE(core::ReadIni(session.DiaryIniFile, u"ALL"_s, u"SaveFilePath"_s), name) << "as the file has it";
}

TEST_F(SettingsOfASession, AKeyMayStandInASectionOrUnderANameThatIsGiven) {
    put(u"velluser.ini"_s, "[taro]\r\nID=taro\r\nPass=p\r\n[hana]\r\nPass=q\r\n");
    EXPECT_EQ(settings.text(core::inSection(keys::kUserPass, u"hana"_s)), u"q"_s);
    EXPECT_EQ(settings.text(core::inSection(keys::kUserId, u"hana"_s)), u""_s);
    put(u"endpoints.ini"_s, "[Search]\r\n0=a\r\n7=b\r\n");
    EXPECT_EQ(settings.text(core::named(keys::kSearchHost, QString::number(7))), u"b"_s);
}

TEST_F(SettingsOfASession, ARefusedWriteKeepsTheOldValue) {
    session.DiaryIniFile = session.MyPath + u"nowhere/diary.ini"_s;
    EXPECT_NO_THROW(core::writeQuietly(session, keys::kSelectedBlog, u"b"_s));
    EXPECT_EQ(settings.text(keys::kSelectedBlog), u"mixi"_s);
}

TEST(CustomizeSet, NamesEachOfItsKeysOnce) {
    QSet<QString> names;
    for (const core::Setting* setting : keys::kCustomizeSet) {
        EXPECT_EQ(setting->file, SettingsFile::Customize);
        names += u"[%1]%2"_s.arg(setting->section, setting->name);
    }
    EXPECT_EQ(names.size(), int(std::size(keys::kCustomizeSet)));
}

TEST(CustomizeSet, KnowsWhatIsPersonal) {
    QStringList personal;
    for (const core::Setting* setting : keys::kCustomizeSet) {
        if (setting->isPersonal)
            personal += u"%1/%2"_s.arg(setting->section, setting->name);
    }
    EXPECT_EQ(personal.join(u' '), u"General/HPTitle General/StyleSheetURL General/HeadTag General/HeadTag_Div "
                                   "Body/BackImage Body/UpText Body/DownText Body/UpText_Log Body/DownText_Log "
                                   "Body/UpText_Div Body/DownText_Div Body/UpText_Div_Log Body/DownText_Div_Log "
                                   "CalenderWindow/BGImage CalenderWindow/HeadTag CalenderWindow/UpText "
                                   "CalenderWindow/DownText"_s);
}

TEST(CustomizeSet, KnowsWhatNamesATextPiece) {
    int pieces = 0;
    for (const core::Setting* setting : keys::kCustomizeSet) {
        const bool isPiece = setting->name.startsWith(u"UpText") || setting->name.startsWith(u"DownText") ||
                             setting->name.startsWith(u"HeadTag");
        EXPECT_EQ(setting->kind == core::SettingKind::PieceName, isPiece) << setting->name.toUtf8().constData();
        pieces += isPiece;
    }
    EXPECT_EQ(pieces, 14);
}

} // namespace
} // namespace velloria::tests
