#include "site/customize_talks.h"

#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class CustomizeTalks : public SiteHome {
protected:
    /// What was said after the answers, and what was made.
    QStringList talk(const site::CustomizeTalk& talk, const QJsonArray& answers) {
        desk.answers = answers;
        desk.events = {};
        made.clear();
        site::newCommand(run, talk, {u"上"_s, u"Up"_s}, [this](const QString& name) { made += name; });
        return told();
    }
    QString title() const { return *boxTitles().begin(); }

    QStringList made;
};

struct Words {
    const site::CustomizeTalk& talk;
    QString title;
    QString prompt;
    QString made;
    QString taken;
    QString replaced;
};

const Words kWords[] = {
    {site::kPieceTalk, u"Velloria"_s, u"新しいテキストの名前を入力してください。"_s,
     u"新しいテキストを作成しました。"_s, u"すでにその名前のテキストはあります。"_s,
     u"既存のテキストに上書きしました。"_s},
    {site::kSetTalk, u"カスタマイズセット"_s, u"新しいカスタマイズセットの名前を入力してください。"_s,
     u"新しいカスタマイズセットを作成しました。"_s, u"すでにその名前のカスタマイズセットはあります。"_s,
     u"既存のカスタマイズセットに上書きしました。"_s},
};

TEST_F(CustomizeTalks, SayWhatBecameOfANewName) {
    const QString hint = u"\r\n(ファイル名に使用できない文字は使用しないでください。)"_s;
    for (const Words& words : kWords) {
        const QString prompt = u"input: "_s + words.prompt + hint;
        const QString question = u"message: "_s + words.taken + u"\r\n上書きしますか？"_s;
        EXPECT_EQ(talk(words.talk, {u""_s}), (QStringList{prompt, u"message: 名前の入力がなかったため中止します。"_s,
                                                          u"status: 中止しました。"_s}));
        EXPECT_EQ(made, QStringList());
        EXPECT_EQ(talk(words.talk, {u"新"_s}),
                  (QStringList{prompt, u"message: "_s + words.made, u"status: "_s + words.made}));
        EXPECT_EQ(made, QStringList{u"新"_s});
        EXPECT_EQ(boxTitles(), QSet<QString>{words.title});
        EXPECT_EQ(talk(words.talk, {u"UP"_s, u"yes"_s}),
                  (QStringList{prompt, question, u"message: "_s + words.replaced, u"status: "_s + words.replaced}));
        EXPECT_EQ(made, QStringList{u"UP"_s});
        EXPECT_EQ(talk(words.talk, {u"上"_s, u"no"_s}),
                  (QStringList{prompt, question, u"message: 中止します。"_s, u"status: 中止しました。"_s}));
        EXPECT_EQ(made, QStringList());
    }
}

TEST_F(CustomizeTalks, GiveUpANameThatNoFileCanHave) {
    for (const QString& name : {u"a/b"_s, u"a\\b"_s, u"a:b"_s, u"a*"_s, u"a?"_s, u"a\""_s, u"a<"_s, u"a>"_s, u"a|"_s,
                                u"😀"_s, QString(300, u'a')}) {
        for (const Words& words : kWords) {
            EXPECT_EQ(talk(words.talk, {name}).mid(1),
                      (QStringList{u"message: 中止します。"_s, u"status: 中止しました。"_s}))
                << name.toStdString();
            EXPECT_EQ(made, QStringList());
        }
    }
}

TEST_F(CustomizeTalks, LeaveTheFeedsTheirName) {
    talk(site::kSetTalk, {u"rss"_s});
    EXPECT_EQ(made, QStringList());
    talk(site::kPieceTalk, {u"rss"_s});
    EXPECT_EQ(made, QStringList{u"rss"_s});
}

TEST_F(CustomizeTalks, AskBeforeSomethingIsDeleted) {
    const struct {
        const site::CustomizeTalk& talk;
        QString what;
    } cases[] = {{site::kPieceTalk, u"「上」を消去し"_s}, {site::kSetTalk, u"カスタマイズセット「上」を消去し"_s}};
    for (const auto& c : cases) {
        desk.events = {};
        desk.answers = {u"no"_s, u"yes"_s};
        EXPECT_FALSE(site::mayDelete(run, c.talk, u"上"_s));
        EXPECT_TRUE(site::mayDelete(run, c.talk, u"上"_s));
        site::tellDeleted(run, c.talk, u"上"_s);
        const QString question = u"message: "_s + c.what + u"ます。\r\nよろしいですか？"_s;
        EXPECT_EQ(told(), (QStringList{question, u"status: 消去を中止しました。"_s, question,
                                       u"status: "_s + c.what + u"ました。"_s}));
    }
}

} // namespace
} // namespace velloria::tests
