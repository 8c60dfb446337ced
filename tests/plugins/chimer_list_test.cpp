#include "chimer/ping_list.h"

#include "common/calls.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace velloria::plugins {
namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

Rows rowsOf(const std::vector<Server>& servers) {
    Rows rows;
    for (const Server& server : servers)
        rows.emplace_back(server.address.typed(), server.name);
    return rows;
}

Rows parsed(std::string_view text) {
    return rowsOf(parsePingList(text));
}

TEST(PingList, HasOneServerALine) {
    EXPECT_EQ(parsed("http://a.example/,甲\r\nhttps://b.example/RPC2\r\n"),
              (Rows{{"http://a.example/", "甲"}, {"https://b.example/RPC2", ""}}));
    EXPECT_EQ(parsed("http://a.example/\nhttp://b.example/\rhttp://c.example/"),
              (Rows{{"http://a.example/", ""}, {"http://b.example/", ""}, {"http://c.example/", ""}}));
}

TEST(PingList, SkipsCommentsAndBlankLines) {
    EXPECT_EQ(
        parsed("# 更新通知の送り先\r\n\r\n  \t\r\n,,\r\n #http://a.example/\r\n\"# a, b\",c\r\nhttp://b.example/\r\n"),
        (Rows{{"http://b.example/", ""}}));
    EXPECT_EQ(parsed(""), Rows());
    EXPECT_EQ(parsed("\r\n\n\r"), Rows());
}

TEST(PingList, ReadsTheQuotesOfCsv) {
    const struct {
        const char* line;
        const char* name;
    } cases[] = {
        {"http://a.example/,\"先のサーバー, 甲\"", "先のサーバー, 甲"},
        {"http://a.example/,\"甲\"\"乙\"\"\"", "甲\"乙\""},
        {"\"http://a.example/\" , 甲 乙 ,丙", "甲 乙"},
        {"http://a.example/,\"\"", ""},
        {"http://a.example/,\"甲, 乙", "甲, 乙"},
        {"http://a.example/,甲\"乙\"", "甲\"乙\""},
        {"  http://a.example/\t,\t甲\t", "甲"},
    };
    for (const auto& [line, name] : cases)
        EXPECT_EQ(parsed(line), (Rows{{"http://a.example/", name}})) << line;
    EXPECT_EQ(parsed("http://a.example/,\"甲\nhttp://b.example/"),
              (Rows{{"http://a.example/", "甲"}, {"http://b.example/", ""}}))
        << "a quote that is not closed ends with its line";
    EXPECT_EQ(parsed("\"http://a.example/?x,y\""), (Rows{{"http://a.example/?x,y", ""}}));
}

TEST(PingList, AsksAnAddressOnce) {
    EXPECT_EQ(parsed("http://a.example/,甲\nHTTP://A.EXAMPLE,乙\nhttp://b.example/\nhttp://a.example/,丙\n"),
              (Rows{{"http://a.example/", "甲"}, {"http://b.example/", ""}}));
    EXPECT_EQ(parsed("アドレス,名前\nアドレス,名前\n"), (Rows{{"アドレス", "名前"}}));
}

TEST(PingList, KeepsWhatCanNotBeAskedWithItsProblem) {
    const std::vector<Server> servers = parsePingList("アドレス,名前\nhttp://a.example/\n,甲\n");
    ASSERT_EQ(rowsOf(servers), (Rows{{"アドレス", "名前"}, {"http://a.example/", ""}, {"", "甲"}}));
    EXPECT_NE(servers[0].address.problem(), "");
    EXPECT_EQ(servers[1].address.problem(), "");
    EXPECT_NE(servers[2].address.problem(), "");
}

TEST(PingList, ReadsTenThousandLines) {
    std::string text;
    for (int i = 0; i < 10000; ++i)
        text += "http://host" + std::to_string(i) + ".example/RPC2,\"名前\"\r\n";
    EXPECT_EQ(parsePingList(text).size(), 10000U);
}

class PingListFile : public ::testing::Test {
protected:
    void SetUp() override {
        folder = std::filesystem::temp_directory_path() / ("ping-list-" + std::to_string(getpid()));
        std::filesystem::create_directory(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::string path() const { return folder / "PINGList.csv"; }
    void write(const std::string& bytes) const { std::ofstream(path(), std::ios::binary) << bytes; }
    std::string refusal() const {
        try {
            readPingList(path());
        } catch (const Error& error) {
            return error.what();
        }
        return {};
    }

    std::filesystem::path folder;
};

TEST_F(PingListFile, IsInCodePage932OrInUtf8) {
    const Rows expected{{"http://a.example/", "日記①"}};
    for (const char* bytes : {"http://a.example/,\x93\xFA\x8BL\x87\x40\r\n", "http://a.example/,日記①\n",
                              "\xEF\xBB\xBFhttp://a.example/,\"日記①\"\r\n"}) {
        write(bytes);
        EXPECT_EQ(rowsOf(readPingList(path())), expected);
    }
    write("http://a.example/,\x93\xFA\x8B\r\nhttp://b.example/");
    EXPECT_EQ(rowsOf(readPingList(path())), (Rows{{"http://a.example/", "日\xEF\xBF\xBD"}, {"http://b.example/", ""}}))
        << "half a character spoils its name alone";
    write("http://a.example/,\xB1\xB2"); // two kana, and a character of another encoding
    EXPECT_EQ(rowsOf(readPingList(path())), (Rows{{"http://a.example/", "ｱｲ"}}));
    write("");
    EXPECT_EQ(rowsOf(readPingList(path())), Rows());
}

TEST_F(PingListFile, ReadsTheSample) {
    EXPECT_EQ(rowsOf(readPingList(VELLORIA_TEST_DATA "/plugins/ping/PINGList.csv")),
              (Rows{{"http://127.0.0.1:9099/RPC2", "先のサーバー, 甲"}, {"http://127.0.0.1:9098/rpc/ping", ""}}));
}

TEST_F(PingListFile, SaysWhatToWriteWhereWhenItIsMissing) {
    const std::string words = refusal();
    for (const std::string& part : {path(), std::string("ありません"), std::string("http://")})
        EXPECT_NE(words.find(part), std::string::npos) << words;
}

TEST_F(PingListFile, IsRefusedWhenItIsNoText) {
    write(std::string("\xFF\xFEh\0t\0", 6));
    EXPECT_NE(refusal().find("Shift_JIS"), std::string::npos);
    write(std::string((4 << 20) + 1, '#'));
    EXPECT_NE(refusal().find("4MB"), std::string::npos);
    write(std::string(4 << 20, '#'));
    EXPECT_EQ(refusal(), "");
}

TEST_F(PingListFile, HoldsNobodyUpWhenItIsNoFile) {
    std::filesystem::create_directory(path());
    EXPECT_NE(refusal(), "");
    std::filesystem::remove(path());
    ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);
    EXPECT_NE(refusal().find("通常のファイルではありません"), std::string::npos);
    std::filesystem::remove(path());
    std::filesystem::create_symlink("/dev/zero", path());
    EXPECT_NE(refusal().find("通常のファイルではありません"), std::string::npos);
}

} // namespace
} // namespace velloria::plugins
