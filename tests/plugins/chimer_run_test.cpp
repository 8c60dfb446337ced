#include "chimer/ping_run.h"

#include "support/http_server.h"
#include "support/patience.h"
#include "support/silent_server.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace plugins;
using namespace std::chrono_literals;

const QByteArray kThanks = "<methodResponse><params><param><value><struct><member><name>flerror</name>"
                           "<value><boolean>0</boolean></value></member></struct></value></param></params>"
                           "</methodResponse>";

QByteArray answerOf(const QByteArray& body) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

/// Leaves a run.
struct Enough {};

class PingRun : public ::testing::Test {
protected:
    /// Asks the addresses; gives how long that took.
    std::chrono::milliseconds run(const std::vector<std::string>& addresses) {
        std::vector<Server> servers;
        for (const std::string& address : addresses)
            servers.push_back({Address(address), {}});
        answers.assign(addresses.size(), {});
        const PingCalls calls{[&](std::size_t place, const Answer& answer) {
                                  answers[place] = answer;
                                  order.push_back(place);
                                  if (order.size() == enough)
                                      throw Enough();
                              },
                              [&] { ++waits; }};
        const auto started = std::chrono::steady_clock::now();
        sendPings(servers, "<methodCall/>", calls, limits);
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - started);
    }
    std::string web() const { return "http://127.0.0.1:" + std::to_string(server.port()) + "/"; }

    HttpServer server;
    SilentServer silent;
    PingLimits limits{.each = 300ms};
    std::vector<Answer> answers;
    std::vector<std::size_t> order;
    std::size_t enough = 0; ///< that many answers are waited for, then the run is left; 0: all
    int waits = 0;
};

TEST_F(PingRun, WaitsTenSecondsUnlessItIsToldOtherwise) {
    EXPECT_EQ(PingLimits().each, 10s);
    EXPECT_EQ(PingLimits().atOnce, 16U);
}

TEST_F(PingRun, ASilentServerIsGivenUpAndTheWindowsPaintMeanwhile) {
    limits.each = 1s;
    const std::string address = silent.address().toStdString();
    const auto taken = run({address, address + "2", address + "3"});
    EXPECT_GE(taken, 990ms);
    EXPECT_LT(taken, kPatience);
    EXPECT_GE(waits, 4);
    for (const Answer& answer : answers)
        EXPECT_FALSE(answer.isDone);
}

TEST_F(PingRun, ASilentServerHoldsNoOtherUp) {
    server.answerWith({answerOf(kThanks)});
    limits.each = kPatience;
    enough = 1;
    EXPECT_THROW(run({silent.address().toStdString(), web()}), Enough);
    EXPECT_EQ(order, std::vector<std::size_t>{1});
    EXPECT_TRUE(answers[1].isDone);
}

TEST_F(PingRun, NoMoreAreAskedAtOnceThanAllowed) {
    limits.atOnce = 2;
    const std::string address = silent.address().toStdString();
    EXPECT_GE(run({address, address + "2", address + "3", address + "4"}), 580ms);
    EXPECT_EQ(answers.size(), 4U);
}

TEST_F(PingRun, AnAnswerMayBeAsLongAsAllowed) {
    limits.largestAnswer = std::size_t(kThanks.size());
    limits.each = kPatience;
    server.answerWith({answerOf(kThanks)});
    run({web()});
    EXPECT_TRUE(answers[0].isDone) << answers[0].message;
    --limits.largestAnswer;
    run({web()});
    EXPECT_FALSE(answers[0].isDone);
    EXPECT_EQ(answers[0].message, "返事が大きすぎます。");
}

TEST_F(PingRun, WhatCanNotBeAskedIsAnsweredAtOnce) {
    server.answerWith({answerOf(kThanks)});
    limits.each = kPatience;
    run({"nothing", web(), "ftp://127.0.0.1/"});
    EXPECT_FALSE(answers[0].isDone);
    EXPECT_TRUE(answers[1].isDone);
    EXPECT_EQ(answers[2].message, Address("ftp://127.0.0.1/").problem());
    EXPECT_EQ(order.size(), 3U);
    run({});
}

} // namespace
} // namespace velloria::tests
