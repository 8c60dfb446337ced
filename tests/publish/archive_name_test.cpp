#include "publish/archive_name.h"

#include "support/print.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using velloria::publish::isArchiveName;

namespace velloria::tests {
namespace {

TEST(ArchiveName, IsThatOfAnArchiveOrInstaller) {
    for (const QString& name : {u"v.lzh"_s, u"Velloria221.LZH"_s, u"v.zip"_s, u"Velloria-2.2.1.exe"_s, u"setup.EXE"_s,
                                u"velloria_2.2.1_amd64.deb"_s, u"velloria-2.2.1.tar.gz"_s, u"次.lzh"_s, u"é 1.zip"_s,
                                u"Velloria.zip"_s, u"diary.mdb.zip"_s, u"%1.lzh"_s})
        EXPECT_TRUE(isArchiveName(name)) << name.toStdString();
}

TEST(ArchiveName, IsNoneThatTheProgramReadsLoadsOrStarts) {
    for (const QString& name : {u"Chimer.dll"_s,
                                u"LarkHandle.dll"_s,
                                u"velluser.ini"_s,
                                u"VellUpdater.exe"_s,
                                u"VELLUPDATER.EXE"_s,
                                u"VellUpTmp.exe"_s,
                                u"VellMemo.exe"_s,
                                u"Velloria.exe"_s,
                                u"velloria-cli.exe"_s,
                                u"velloria-jet.exe"_s,
                                u"velloria-plugin.exe"_s,
                                u"velloria-sound.exe"_s,
                                u"diary.mdb"_s,
                                u"default.mdb"_s,
                                u"diarymdb.bak"_s,
                                u"x.blg"_s,
                                u"x.ini"_s,
                                u"default.ini"_s,
                                u"endpoints.ini"_s,
                                u"update.txt"_s,
                                u"update.lst"_s,
                                u"Genre.csv"_s,
                                u"colorname.csv"_s,
                                u"Manual.mht"_s,
                                u"index.htm"_s,
                                u"velloria"_s,
                                u"velloria-cli"_s,
                                u"UnLHA32.DLL"_s,
                                u"lib.so"_s,
                                u"x.desktop"_s,
                                u"x.cst"_s,
                                u"v"_s,
                                u""_s,
                                u"v.gz"_s,
                                u"v.tar"_s,
                                u"v.lzh.txt"_s,
                                u"v.lzh "_s,
                                u"v.lzh."_s,
                                u"v.ｌｚｈ"_s,
                                u"vlzh"_s})
        EXPECT_FALSE(isArchiveName(name)) << name.toStdString();
}

TEST(ArchiveName, LeadsNowhereElse) {
    for (const QString& name : {u"../v.lzh"_s, u"..\\v.lzh"_s, u"a/v.lzh"_s, u"a\\v.lzh"_s, u"/v.lzh"_s, u"C:v.lzh"_s,
                                u"diary.mdb:v.zip"_s, u"a..b.lzh"_s, u".lzh"_s, u".zip"_s, u".tar.gz"_s,
                                u".velltmp-1.lzh"_s, u"a\nb.lzh"_s, u"a\0b.lzh"_s, u"a?.lzh"_s, u"*.lzh"_s})
        EXPECT_FALSE(isArchiveName(name)) << name.toStdString();
}

} // namespace
} // namespace velloria::tests
