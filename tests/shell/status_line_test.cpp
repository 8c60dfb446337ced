#include "shell/status_line.h"

#include "support/print.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kSaved = u"2004/05/06の日記を保存しました。"_s;
const QString kLoading = u"Webページ表示中..."_s;
const QString kLoaded = u"Webページ表示完了！"_s;

TEST(StatusLine, ShowsWhatIsTold) {
    shell::StatusLine line;
    for (const QString& text : {kLoading, kLoaded, kSaved, u"Copying a.gif"_s, u""_s, kLoaded})
        EXPECT_EQ(line.tell(text), text);
}

TEST(StatusLine, KeepsWhatACommandHasDoneBesideThePageThatItShows) {
    shell::StatusLine line;
    line.tell(kSaved);
    EXPECT_EQ(line.tell(kLoading), kSaved + u"　"_s + kLoading);
    EXPECT_EQ(line.tell(kLoaded), kSaved + u"　"_s + kLoaded);
    EXPECT_EQ(line.tell(u"2004/05/06の日記を削除しました。"_s), u"2004/05/06の日記を削除しました。"_s);
    EXPECT_EQ(line.tell(kLoaded), u"2004/05/06の日記を削除しました。　Webページ表示完了！"_s);
}

TEST(StatusLine, KeepsItWhenSomebodyTypesOnMeanwhile) {
    shell::StatusLine line;
    line.tell(kSaved);
    line.tell(kLoading);
    line.takeInput();
    EXPECT_EQ(line.tell(kLoaded), kSaved + u"　"_s + kLoaded);
    EXPECT_EQ(line.tell(kLoaded), kLoaded);
}

TEST(StatusLine, ForgetsItForAnotherPage) {
    shell::StatusLine line;
    line.tell(kSaved);
    line.tell(kLoading);
    line.tell(kLoaded);
    line.takeInput();
    EXPECT_EQ(line.tell(kLoading), kLoading);
    EXPECT_EQ(line.tell(kLoaded), kLoaded);
    line.tell(kSaved);
    line.takeInput();
    EXPECT_EQ(line.tell(kLoaded), kLoaded); // a link in the page was clicked
}

TEST(StatusLine, LetsANoticeOutlastThePageUntilSomebodyGoesOn) {
    shell::StatusLine line;
    EXPECT_EQ(line.notice(u"下書きがあります"_s), u"下書きがあります"_s);
    EXPECT_EQ(line.tell(kLoading), u"下書きがあります"_s);
    EXPECT_EQ(line.tell(kLoaded), u"下書きがあります"_s);
    EXPECT_EQ(line.tell(kSaved), kSaved);
    line.notice(u"もう一つ"_s);
    EXPECT_TRUE(line.waitsForInput());
    line.takeInput();
    EXPECT_FALSE(line.waitsForInput());
    EXPECT_EQ(line.tell(kLoaded), kLoaded);
}

} // namespace
} // namespace velloria::tests
