#include "chimer/xml_rpc.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace velloria::plugins {
namespace {

std::string sample(const std::string& name) {
    std::ifstream file(VELLORIA_TEST_DATA "/plugins/ping/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// An answer whose structure holds these members.
std::string answerOf(const std::string& members) {
    return "<?xml version=\"1.0\"?><methodResponse><params><param><value><struct>" + members +
           "</struct></value></param></params></methodResponse>";
}

std::string member(const std::string& name, const std::string& value) {
    return "<member><name>" + name + "</name><value>" + value + "</value></member>";
}

void expectDone(const std::string& body, const std::string& message) {
    const Answer answer = readAnswer(body);
    EXPECT_TRUE(answer.isDone) << body;
    EXPECT_EQ(answer.message, message) << body;
}

void expectRefused(const std::string& body, const std::string& message) {
    const Answer answer = readAnswer(body);
    EXPECT_FALSE(answer.isDone) << body;
    EXPECT_EQ(answer.message, message) << body;
}

const std::string kNoXml = "返事がXML-RPCの形ではありません。";
const std::string kNoWord = "返事に、受け付けたかどうかがありません。";

TEST(PingCall, HasTheShapeOfTheSample) {
    std::string expected = sample("ping-wordpress.xml");
    const std::string declaration = "<?xml version=\"1.0\"?>";
    ASSERT_TRUE(expected.starts_with(declaration));
    expected.replace(0, declaration.size(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    // That program escapes a name which it has escaped already.
    EXPECT_EQ(pingCall("テスト日記 &amp; &lt;A&gt;", "http://127.0.0.1:8089/"), expected);
}

TEST(PingCall, IsEscapedOnce) {
    const std::string call = pingCall("<a> & \"b\" ]]> '😀'", "http://a.example/?a=1&b=2");
    EXPECT_NE(call.find("<string>&lt;a&gt; &amp; \"b\" ]]&gt; '😀'</string>"), std::string::npos) << call;
    EXPECT_NE(call.find("<string>http://a.example/?a=1&amp;b=2</string>"), std::string::npos) << call;
    EXPECT_NE(pingCall("", "").find("<string></string>"), std::string::npos);
}

TEST(PingCall, LacksWhatXmlForbids) {
    const std::string call = pingCall("a\x01\x08\x1F\xEF\xBF\xBE\xEF\xBF\xBF"
                                      "b\tc\nd\re\xFF"
                                      "f",
                                      "");
    EXPECT_NE(call.find("<string>ab\tc\nd&#13;e\xEF\xBF\xBD"
                        "f</string>"),
              std::string::npos)
        << call;
}

TEST(PingAnswer, ReadsTheSamples) {
    expectDone(sample("response-ok.xml"), "Thanks for the ping.");
    expectRefused(sample("response-flerror.xml"), "The URL is not known & was not read.");
    expectRefused(sample("response-fault.xml"), "server error. requested method not found (-32601)");
}

TEST(PingAnswer, TellsAnErrorInManyWays) {
    for (const char* value : {"<boolean>0</boolean>", "<int>0</int>", "<i4>0</i4>", "0", "<string>0</string>",
                              "<boolean>false</boolean>", " <boolean> 0 </boolean>\n"}) {
        for (const char* name : {"flerror", "flError", "FLERROR"}) {
            expectDone(answerOf(member(name, value) + member("message", "ok")), "ok");
            expectDone(answerOf(member("message", "<string>ok</string>") + member(name, value)), "ok");
        }
    }
    for (const char* value :
         {"<boolean>1</boolean>", "<int>1</int>", "<i4>2</i4>", "1", "-1", "<boolean>true</boolean>", "10"})
        expectRefused(answerOf(member("message", "no") + member("flerror", value)), "no");
    for (const char* value : {"", "<boolean></boolean>", "maybe", "<nil/>", "0x1"})
        expectRefused(answerOf(member("message", "no") + member("flerror", value)), kNoWord);
}

TEST(PingAnswer, OtherMembersDoNotMatter) {
    expectDone(answerOf(member("legal", "x") + member("flerror", "<boolean>0</boolean>") +
                        member("more", "<struct>" + member("flerror", "<boolean>1</boolean>") + "</struct>") +
                        member("list", "<array><data><value><boolean>1</boolean></value></data></array>") +
                        member("message", "thanks")),
               "thanks");
    expectDone(answerOf(member("flerror", "0")), "");
    expectRefused(answerOf(member("message", "thanks")), kNoWord);
    expectRefused(answerOf(""), kNoWord);
}

TEST(PingAnswer, AFaultIsARefusalWhateverElseThereIs) {
    const auto fault = [](const std::string& members) {
        return "<methodResponse><fault><value><struct>" + members + "</struct></value></fault></methodResponse>";
    };
    expectRefused(fault(member("faultString", "no") + member("faultCode", "<int>4</int>")), "no (4)");
    expectRefused(fault(member("faultString", "no")), "no");
    expectRefused(fault(""), "理由は知らされていません。");
    expectRefused(fault(member("flerror", "0") + member("message", "ok")), "理由は知らされていません。");
}

TEST(PingAnswer, WhatIsNoAnswerIsARefusal) {
    expectRefused("", "返事が空です。");
    expectRefused(" \r\n\t", "返事が空です。");
    for (const char* body : {"OK", "<html><body>flerror 0</body></html>", "<!DOCTYPE html><html></html>", "<a/>",
                             "<methodResponse>", "<methodCall></methodCall>", "\xFF\xFE<\0", "{\"flerror\":0}",
                             "<methodResponse></methodResponse>trailing", "<x><methodResponse/></x>"})
        expectRefused(body, kNoXml);
    expectRefused("<methodResponse/>", kNoWord);
    expectRefused("<methodResponse><params><param><value>ok</value></param></params></methodResponse>", kNoWord);
    expectRefused(sample("response-ok.xml").substr(0, 250), kNoXml);
    expectRefused(answerOf(member("flerror", "0") + member("message", "\x08")), kNoXml);
}

TEST(PingAnswer, BlanksAndAMarkAheadOfItDoNotMatter) {
    expectDone("\r\n\n  " + sample("response-ok.xml"), "Thanks for the ping.");
    expectDone("\xEF\xBB\xBF" + sample("response-ok.xml"), "Thanks for the ping.");
    expectDone("\xEF\xBB\xBF\n" + sample("response-ok.xml") + "\n\n", "Thanks for the ping.");
}

TEST(PingAnswer, IsReadInWhateverEncodingItComes) {
    const std::string shiftJis = answerOf(member("flerror", "0") + member("message", "\x93\xFA\x8BL\x82\xCC"));
    expectDone(shiftJis, "日記の");
    expectDone("<?xml version='1.0' encoding='Shift_JIS'?>" + shiftJis.substr(21), "日記の");
    expectDone("<?xml version='1.0' encoding='UTF-8'?>" + shiftJis.substr(21), "日記の");
    expectDone(answerOf(member("flerror", "0") + member("message", "\xC6\xFC\xB5\xAD\xA4\xCE")), "日記の");
    expectDone("<?xml version='1.0' encoding='x-nothing'?>" +
                   answerOf(member("flerror", "0") + member("message", "日記の")).substr(21),
               "日記の");
    for (const char* body : {"<?xml encoding=", "<?xml encoding='", "<?xml encoding='x"})
        expectRefused(body, kNoXml);
}

TEST(PingAnswer, EntitiesAreRefused) {
    const std::string rest = answerOf(member("flerror", "0") + member("message", "&x;")).substr(21);
    expectRefused("<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>" + rest, kNoXml);
    expectRefused("<?xml version=\"1.0\"?><!DOCTYPE a SYSTEM \"http://127.0.0.1:1/a.dtd\">" + rest, kNoXml);
    std::string bomb = "<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY a0 \"aaaaaaaaaa\">";
    for (int i = 1; i < 12; ++i) {
        std::string tenfold;
        for (int j = 0; j < 10; ++j)
            tenfold += "&a" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY a" + std::to_string(i) + " \"" + tenfold + "\">";
    }
    expectRefused(bomb + "]>" + answerOf(member("flerror", "0") + member("message", "&a11;")).substr(21), kNoXml);
    expectRefused(answerOf(member("flerror", "0") + member("message", "&unknown;")), kNoXml);
    expectDone(answerOf(member("flerror", "0") + member("message", "&lt;&#26085;&#x8A18;<![CDATA[<]]>")), "<日記<");
}

TEST(PingAnswer, DepthAndLengthEndNothing) {
    std::string deep;
    for (int i = 0; i < 200'000; ++i)
        deep += "<a>";
    expectRefused(deep, kNoXml);
    expectRefused("<" + std::string(900'000, 'a') + "/>", kNoXml);
    expectDone(answerOf(member("flerror", "0") + member("message", std::string(900'000, 'a'))),
               std::string(900'000, 'a'));
}

} // namespace
} // namespace velloria::plugins
