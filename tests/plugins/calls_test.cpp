#include "common/calls.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <string>

namespace velloria::plugins {
namespace {

TEST(PluginCalls, AnswerAndKeepNoReason) {
    EXPECT_EQ(answers([] { return true; }), 1);
    EXPECT_EQ(answers([] { return false; }), 0);
    EXPECT_EQ(does([] {}), 1);
    EXPECT_STREQ(lastError(), "");
}

TEST(PluginCalls, KeepWhyTheyFailedUntilTheNextOne) {
    EXPECT_LT(does([] { throw Error("だめでした。"); }), 0);
    EXPECT_STREQ(lastError(), "だめでした。");
    EXPECT_LT(answers([]() -> bool { throw 7; }), 0);
    EXPECT_STREQ(lastError(), "");
    EXPECT_EQ(makes([]() -> void* { throw std::bad_alloc(); }), nullptr);
    EXPECT_STREQ(lastError(), "メモリが足りません。");
    EXPECT_EQ(does([] {}), 1);
    EXPECT_STREQ(lastError(), "");
}

/// What a program was asked for.
struct Program {
    std::string question;
    std::string plan;
    bool saysYes = true;

    velloria_host table() {
        return {sizeof(velloria_host),
                this,
                nullptr,
                [](void* context, int32_t, const char*, const char* text, int32_t) -> int32_t {
                    static_cast<Program*>(context)->question = text;
                    return static_cast<Program*>(context)->saysYes ? 1 : 0;
                },
                nullptr,
                [](void* context, const velloria_import_plan* shown) {
                    static_cast<Program*>(context)->plan = shown->days[shown->count - 1];
                    return "2026/11/23 Stranger";
                }};
    }
};

constexpr const char* kDays[] = {"2026/11/22", "2026/11/23"};
constexpr velloria_import_plan kPlan{sizeof kPlan, "Stranger", 2, kDays, "タグ 3件"};

TEST(PluginHostTable, ShowsThePlanOfAnImport) {
    Program program;
    const velloria_host table = program.table();
    EXPECT_STREQ(Host(&table).beginImport(kPlan), "2026/11/23 Stranger");
    EXPECT_EQ(program.plan, "2026/11/23");
    EXPECT_EQ(program.question, "");
}

TEST(PluginHostTable, OfAnOlderProgramIsAskedByAQuestion) {
    Program program;
    velloria_host table = program.table();
    table.size = offsetof(velloria_host, begin_import);
    Host host(&table);
    const std::string mark = host.beginImport(kPlan);
    EXPECT_EQ(mark.substr(mark.size() - 9), " Stranger");
    EXPECT_NE(program.question.find("2件"), std::string::npos);
    EXPECT_NE(program.question.find("タグ 3件"), std::string::npos);
    program.saysYes = false;
    EXPECT_EQ(host.beginImport(kPlan), nullptr);
    table.size = 0;
    host.pump();
    host.status("nobody sees it");
    program.question.clear();
    host.warns("nobody sees it", "Stranger");
    EXPECT_EQ(program.question, "");
    EXPECT_EQ(host.beginImport(kPlan), nullptr);
}

} // namespace
} // namespace velloria::plugins
