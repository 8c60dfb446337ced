#include "core/keys.h"
#include "core/settings.h"
#include "exchange/customize_files.h"
#include "platform/failure.h"
#include "site/customize_sets.h"

#include <unistd.h>

namespace velloria::tests {
namespace {

/// Where an exchange reads and writes when names are not what one expects.
class CustomizeTargets : public CustomizeFiles {};

TEST_F(CustomizeTargets, AFileWithoutANameBecomesNoSet) {
    for (const QString& name : {u".cst"_s, u".ini"_s, u".INI"_s}) {
        const QString source = file(name);
        const QMap<QString, QByteArray> before = contentOf(home.path());
        EXPECT_THROW(import(source), platform::Failure) << name.toStdString();
        EXPECT_EQ(contentOf(home.path()), before);
    }
}

TEST_F(CustomizeTargets, AnImportFindsTheFolderOfTheSelectedSetWhateverTheCaseInTheSettings) {
    session.CustIniFile = session.DataPath + u"CUSTOMIZE/customize.INI"_s;
    EXPECT_TRUE(import(file(u"look.ini"_s)));
    EXPECT_EQ(imported, setFile(u"look"_s));
    EXPECT_EQ(bytesOf(setFile(u"look"_s)), kSet);
    EXPECT_TRUE(exportTo(out(u"x.ini"_s)));
}

TEST_F(CustomizeTargets, AnExportToAFolderIsRefused) {
    const QMap<QString, QByteArray> before = contentOf(home.path());
    EXPECT_THROW(exportTo(out()), platform::Failure);
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(CustomizeTargets, ASetIsOneFileWhateverTheCaseInWhichItsExportIsSpelt) {
    const QStringList sets = site::allCustomizeSets(session);
    EXPECT_TRUE(exportTo(setFile(u"MINE"_s), CustomizeFormat::Ini, {u"yes"_s}));
    EXPECT_EQ(boxes(), QStringList{kReplace});
    EXPECT_EQ(exported, setFile(u"mine"_s));
    EXPECT_EQ(bytesOf(setFile(u"mine"_s)), kSet + kSigned);
    EXPECT_EQ(site::allCustomizeSets(session), sets);
    // In any other folder both may lie side by side.
    file(u"x.ini"_s);
    EXPECT_TRUE(exportTo(out(u"X"_s)));
    EXPECT_EQ(bytesOf(out(u"x.ini"_s)), kSet);
}

/// The set is not touched by what takes the place of another name of its file.
TEST_F(CustomizeTargets, AHardLinkToTheSetIsBlankedForOthers) {
    for (const QString& answer : {u"yes"_s, u"no"_s}) {
        QFile::remove(out(u"x.cst"_s));
        ASSERT_EQ(
            ::link(QFile::encodeName(setFile(u"mine"_s)).constData(), QFile::encodeName(out(u"x.cst"_s)).constData()),
            0);
        EXPECT_TRUE(exportTo(out(u"x.cst"_s), CustomizeFormat::Cst, {answer}));
        EXPECT_EQ(key(out(u"x.cst"_s), u"General"_s, u"HPTitle"_s), u""_s) << answer.toStdString();
        EXPECT_EQ(key(out(u"x.cst"_s), u"Author"_s, u"Name"_s), u"太郎"_s);
        EXPECT_EQ(bytesOf(setFile(u"mine"_s)), kSet);
    }
}

} // namespace
} // namespace velloria::tests
