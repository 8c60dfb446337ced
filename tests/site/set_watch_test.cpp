#include "site/set_watch.h"

#include "site/site_home.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class SetWatch : public SiteHome {
protected:
    SetWatch() {
        writeFile(session.CustIniFile, "mine");
        watch.look();
    }
    site::SetWatch watch{run};
};

TEST_F(SetWatch, LetsWriteWhatNobodyElseHasChanged) {
    EXPECT_TRUE(watch.mayWrite());
    EXPECT_TRUE(watch.mayTakeBack());
    EXPECT_TRUE(desk.texts(u"message"_s).isEmpty());
}

TEST_F(SetWatch, AsksAboutAChangeOfSomebodyElse) {
    writeFile(session.CustIniFile, "theirs");
    desk.answers = {u"no"_s, u"yes"_s, u"no"_s};
    EXPECT_FALSE(watch.mayWrite());
    EXPECT_TRUE(watch.mayWrite());
    EXPECT_FALSE(watch.mayTakeBack());
    EXPECT_EQ(bytesOf(session.CustIniFile), "theirs");
    EXPECT_EQ(desk.texts(u"message"_s), (QStringList{u"カスタマイズセット「Customize」は、ほかで変更されています。\r\n"
                                                     "この画面の内容で上書きしますか？"_s,
                                                     u"カスタマイズセット「Customize」は、ほかで変更されています。\r\n"
                                                     "この画面の内容で上書きしますか？"_s,
                                                     u"カスタマイズセット「Customize」は、ほかで変更されています。\r\n"
                                                     "編集を始める前の内容に戻しますか？"_s}));
}

TEST_F(SetWatch, MakesASetAnewThatHasVanished) {
    ASSERT_TRUE(QFile::remove(session.CustIniFile));
    desk.answers = {u"no"_s, u"yes"_s};
    EXPECT_FALSE(watch.mayWrite());
    EXPECT_FALSE(exists(session.CustIniFile));
    EXPECT_TRUE(watch.mayWrite());
    EXPECT_EQ(bytesOf(session.CustIniFile), "mine");
    EXPECT_EQ(desk.texts(u"message"_s).last(), u"カスタマイズセット「Customize」のファイルがなくなっています。\r\n"
                                               "この画面の内容で作り直しますか？"_s);
}

} // namespace
} // namespace velloria::tests
