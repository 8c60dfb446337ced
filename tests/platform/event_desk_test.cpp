#include "platform/event_desk.h"

#include "platform/failure.h"
#include "support/scripted_desk.h"

#include <gtest/gtest.h>

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace platform;

/// The last event is what the JSON says, no member more or less.
void expectLast(const ScriptedDesk& desk, const QByteArray& json) {
    QJsonParseError error;
    const QJsonObject expected = QJsonDocument::fromJson(json, &error).object();
    ASSERT_EQ(error.error, QJsonParseError::NoError) << json.constData();
    EXPECT_EQ(desk.events.last().toObject(), expected)
        << QJsonDocument(desk.events.last().toObject()).toJson().constData();
}

TEST(EventDesk, TellsEachKindOfBox) {
    ScriptedDesk desk;
    const struct {
        MessageKind kind;
        const char* name;
    } cases[] = {{MessageKind::Critical, "critical"},
                 {MessageKind::Question, "question"},
                 {MessageKind::Exclamation, "exclamation"},
                 {MessageKind::Information, "information"},
                 {MessageKind::Plain, "plain"}};
    for (const auto& c : cases) {
        desk.message(c.kind, u"一\r\n二"_s, u"Velloria"_s);
        expectLast(desk, QByteArray(R"({"event":"message","kind":"KIND","title":"Velloria","text":"一\r\n二",)"
                                    R"("buttons":"ok","answer":"ok"})")
                             .replace("KIND", c.name));
    }
}

TEST(EventDesk, TakesNoAnswerForABoxWithOkAlone) {
    ScriptedDesk desk;
    desk.answers = {u"yes"_s};
    desk.message(MessageKind::Plain, u"text"_s, u"Velloria"_s);
    EXPECT_EQ(desk.answers.size(), 1);
}

TEST(EventDesk, TellsAQuestionWithItsAnswer) {
    ScriptedDesk desk;
    desk.answers = {u"yes"_s, u"no"_s, QJsonValue::Null};
    EXPECT_TRUE(desk.ask(u"本当に？"_s, u"Velloria"_s));
    expectLast(desk, R"({"event":"message","kind":"question","title":"Velloria","text":"本当に？","buttons":"yesno",)"
                     R"("answer":"yes"})");
    EXPECT_FALSE(desk.ask(u"本当に？"_s, u"日記作成"_s));
    expectLast(desk, R"({"event":"message","kind":"question","title":"日記作成","text":"本当に？","buttons":"yesno",)"
                     R"("answer":"no"})");
    EXPECT_FALSE(desk.ask(u"本当に？"_s, u"Velloria"_s));
}

TEST(EventDesk, TellsAFileDialogWithItsAnswer) {
    ScriptedDesk desk;
    desk.answers = {u"/site/x.htm"_s, QJsonValue::Null, u""_s};
    EXPECT_EQ(desk.choosePath({PathMode::Save, u"日記の書き出し..."_s, u"HTML Files(*.htm)|*.htm"_s, u"/site/"_s}),
              u"/site/x.htm"_s);
    expectLast(desk, R"({"event":"file","mode":"save","title":"日記の書き出し...","filter":"HTML Files(*.htm)|*.htm",)"
                     R"("folder":"/site/","answer":"/site/x.htm"})");
    EXPECT_EQ(desk.choosePath({PathMode::Folder, u"フォルダの選択"_s, {}, {}}), std::nullopt);
    expectLast(desk, R"({"event":"file","mode":"folder","title":"フォルダの選択","filter":"","folder":"",)"
                     R"("answer":null})");
    EXPECT_EQ(desk.choosePath({PathMode::Open, u"t"_s, {}, {}}), u""_s);
    expectLast(desk, R"({"event":"file","mode":"open","title":"t","filter":"","folder":"","answer":""})");
}

TEST(EventDesk, TellsAPromptWithItsAnswer) {
    ScriptedDesk desk;
    desk.answers = {u"2005"_s, u""_s, QJsonValue::Null};
    EXPECT_EQ(desk.input(u"年を入力してください(例:2003)。"_s, u"2004"_s, u"Velloria"_s), u"2005"_s);
    expectLast(desk, R"({"event":"input","title":"Velloria","text":"年を入力してください(例:2003)。","default":"2004",)"
                     R"("answer":"2005"})");
    EXPECT_EQ(desk.input(u"年"_s, u"2004"_s, u"Velloria"_s), u""_s);
    EXPECT_EQ(desk.input(u"年"_s, u"2004"_s, u"Velloria"_s), u""_s);
    expectLast(desk, R"({"event":"input","title":"Velloria","text":"年","default":"2004","answer":null})");
}

TEST(EventDesk, NeverTellsAPassword) {
    ScriptedDesk desk;
    desk.answers = {u"geheim"_s, QJsonValue::Null};
    EXPECT_EQ(desk.passwords(u"Velloria - Login"_s, platform::PasswordLines::One)->password, u"geheim"_s);
    expectLast(desk, R"({"event":"input","title":"Velloria - Login","text":"パスワード","default":"",)"
                     R"("answer":"******"})");
    EXPECT_FALSE(desk.passwords(u"Velloria - Login"_s, platform::PasswordLines::One));
    expectLast(desk, R"({"event":"input","title":"Velloria - Login","text":"パスワード","default":"","answer":null})");
}

TEST(EventDesk, AsksForThePasswordAndItsConfirmationInTurn) {
    ScriptedDesk desk;
    desk.answers = {u"a"_s, u"b"_s, u"a"_s, QJsonValue::Null, QJsonValue::Null};
    const auto typed = desk.passwords(u"新しいパスワードの入力"_s, platform::PasswordLines::WithConfirmation);
    EXPECT_EQ(typed->password, u"a"_s);
    EXPECT_EQ(typed->confirmation, u"b"_s);
    expectLast(desk, R"({"event":"input","title":"新しいパスワードの入力","text":"パスワード（確認用）","default":"",)"
                     R"("answer":"*"})");
    EXPECT_FALSE(desk.passwords(u"c"_s, platform::PasswordLines::WithConfirmation));
    EXPECT_FALSE(desk.passwords(u"c"_s, platform::PasswordLines::WithConfirmation));
    EXPECT_TRUE(desk.answers.isEmpty()); // a window that was left asks for no second line
}

TEST(EventDesk, TellsWhatOnlyShowsItself) {
    ScriptedDesk desk;
    desk.status(u"Webページ表示中..."_s);
    expectLast(desk, R"({"event":"status","text":"Webページ表示中..."})");
    desk.pointer(Pointer::Hourglass);
    expectLast(desk, R"({"event":"pointer","shape":"hourglass"})");
    desk.pointer(Pointer::Default);
    expectLast(desk, R"({"event":"pointer","shape":"default"})");
    desk.navigate(u"/data/tmp.htm#2004/05/06"_s);
    expectLast(desk, R"({"event":"navigate","url":"/data/tmp.htm#2004/05/06"})");
    desk.progress(u"2004/05"_s, 1, 3);
    expectLast(desk, R"({"event":"progress","caption":"Velloria","title":"","text":"2004/05","max":3,"value":1,)"
                     R"("ok":false})");
    desk.progress(u"2004/06"_s, 3, 3);
    expectLast(desk, R"({"event":"progress","caption":"Velloria","title":"","text":"2004/06","max":3,"value":3,)"
                     R"("ok":true})");
}

TEST(EventDesk, TellsAFailureAndItsLineOnTheStatusPanel) {
    ScriptedDesk desk;
    desk.failure(Failure(u"書けません。"_s, u"/a/b"_s, u"No space"_s, u"空けてください。"_s));
    ASSERT_EQ(desk.events.size(), 2);
    EXPECT_EQ(desk.texts(u"failure"_s), QStringList{u"書けません。\r\n/a/b\r\nNo space\r\n空けてください。"_s});
    EXPECT_EQ(desk.texts(u"status"_s), QStringList{u"エラー：書けません。"_s});
}

TEST(EventDesk, KeepsTheOrderOfWhatWasShown) {
    ScriptedDesk desk;
    desk.answers = {u"yes"_s};
    desk.status(u"1"_s);
    desk.ask(u"2"_s, u"Velloria"_s);
    desk.navigate(u"3"_s);
    QStringList events;
    for (const QJsonValue& event : desk.events)
        events += event[u"event"_s].toString();
    EXPECT_EQ(events, (QStringList{u"status"_s, u"message"_s, u"navigate"_s}));
}

TEST(ScriptedDesk, CallsAnUnexpectedQuestionAnErrorOfTheTest) {
    ScriptedDesk desk;
    EXPECT_THROW(desk.ask(u"?"_s, u"Velloria"_s), UnansweredQuestion);
    EXPECT_THROW(desk.choosePath({}), UnansweredQuestion);
    EXPECT_THROW(desk.passwords(u"t"_s, platform::PasswordLines::One), UnansweredQuestion);
}

TEST(Hourglass, OfAStepStaysAsLongAsThatOfTheWhole) {
    ScriptedDesk desk;
    {
        const Hourglass whole(desk);
        { const Hourglass step(desk); }
        EXPECT_EQ(desk.events.size(), 1);
    }
    ASSERT_EQ(desk.events.size(), 2);
    EXPECT_EQ(desk.events.at(0)[u"shape"_s], u"hourglass"_s);
    EXPECT_EQ(desk.events.at(1)[u"shape"_s], u"default"_s);
    const Hourglass again(desk);
    EXPECT_EQ(desk.events.size(), 3);
}

TEST(Hourglass, IsGoneHoweverTheWorkEnds) {
    ScriptedDesk desk;
    try {
        const Hourglass hourglass(desk);
        throw Failure(u"x"_s, {}, {});
    } catch (const Failure&) {
        // the pointer is what counts
    }
    ASSERT_EQ(desk.events.size(), 2);
    EXPECT_EQ(desk.events.at(0)[u"shape"_s], u"hourglass"_s);
    EXPECT_EQ(desk.events.at(1)[u"shape"_s], u"default"_s);
}

} // namespace
} // namespace velloria::tests
