// "Larkport.dll": the text format of Movable Type, in and out.
#include "common/calls.h"
#include "common/diary_file.h"
#include "common/input_file.h"
#include "common/output_file.h"
#include "common/settings.h"
#include "larkport/entry_writer.h"
#include "larkport/movable_type_reader.h"

#include <memory>

namespace velloria::plugins::larkport {
namespace {

constexpr char kName[] = "Larkport";
constexpr char kSettings[] = "Larkport.ini";

class Exchange {
public:
    explicit Exchange(const velloria_host* host)
        : m_host(host) {}

    void connect(const char* database) {
        m_database = database;
        m_diary = std::make_unique<DiaryFile>(m_database, m_host);
    }

    void setUserId(const char* userId) { m_userId = userId; }

    bool openInput(const char* path) {
        m_path = path;
        m_output.reset();
        if (!fileExists(m_path))
            return false;
        m_bytes = readFile(m_path);
        return true;
    }

    bool openOutput(const char* path) {
        m_path = path;
        m_output.reset();
        try {
            m_output = std::make_unique<OutputFile>(m_path);
        } catch (const Error&) {
            return false;
        }
        return true;
    }

    bool readEntries() {
        const Settings settings(m_database, kSettings);
        const std::vector<std::string_view> words = {"drop", "keep"};
        const ReadingOptions options{settings.choice("Import", "Comments", words) == 1,
                                     settings.choice("Import", "Pings", words) == 1};
        try {
            m_read = readMovableType(m_bytes, options, [this] { m_host.pump(); });
        } catch (const Error& error) {
            throw Error("インポートできません。\n" + m_path + "\n" + error.what() + "\n日記は変更されていません。");
        }
        m_bytes = {};
        std::vector<const char*> days;
        for (const Entry& entry : m_read.entries)
            days.push_back(entry.day.c_str());
        const velloria_import_plan plan{sizeof plan, kName, uint32_t(days.size()), days.data(), m_read.notes.c_str()};
        const char* mark = m_host.beginImport(plan);
        m_mark = mark ? mark : "";
        return mark != nullptr;
    }

    bool writeEntries() {
        DiaryFile& diary = connected();
        if (!m_output)
            throw Error("書き出すファイルが開かれていません。");
        if (diary.count() == 0)
            throw Error("書き出す日記がありません。");
        EntryWriter writer(m_userId);
        diary.read([&](const Entry& entry) { m_output->write(writer.text(entry)); });
        if (writer.written() == 0)
            throw Error("書き出せる日記がありません。どの日記も日付が正しくありません。");
        m_report = std::to_string(writer.written()) + "件の日記を書き出しました。";
        m_isIncomplete = writer.skipped() > 0 || writer.replaced() > 0;
        if (writer.skipped() > 0)
            m_report += "日付が正しくない" + std::to_string(writer.skipped()) + "件は書き出していません。";
        if (writer.replaced() > 0)
            m_report += "読めない文字" + std::to_string(writer.replaced()) + "個は「\uFFFD」にしました。";
        return true;
    }

    bool finish() {
        if (m_output) {
            m_output->commit();
            m_output.reset();
            m_host.status(m_report);
            if (m_isIncomplete)
                m_host.warns(m_path + "\n" + m_report + "\n日記では、そのまま残っています。", kName);
            return true;
        }
        if (m_mark.empty())
            throw Error("インポートする日記が読み込まれていません。");
        connected().append(m_read.entries, m_mark);
        m_read = {};
        m_mark.clear();
        return true;
    }

private:
    DiaryFile& connected() {
        if (!m_diary)
            throw Error("日記データベースが開かれていません。");
        return *m_diary;
    }

    Host m_host;
    std::string m_database;
    std::unique_ptr<DiaryFile> m_diary;
    std::string m_path;
    std::string m_userId;
    std::string m_bytes;
    ReadDiary m_read;
    std::string m_mark;
    std::unique_ptr<OutputFile> m_output;
    std::string m_report;
    bool m_isIncomplete = false; ///< whether an export had to leave something out
};

Exchange& of(void* object) {
    return *static_cast<Exchange*>(object);
}

int32_t openFile(void* object, const char* path, int32_t* isAccepted, int32_t isExport) {
    *isAccepted = 0;
    return does([&] { *isAccepted = isExport ? of(object).openOutput(path) : of(object).openInput(path); });
}

constexpr velloria_movable_type_exchange kExchange = {
    sizeof kExchange,
    [](const velloria_host* host) { return makes([&]() -> void* { return new Exchange(host); }); },
    [](void* object) { delete &of(object); },
    [](void* object, const char* database) { return does([&] { of(object).connect(database); }); },
    [](void*) { return does([] {}); },
    [](void*) { return does([] {}); },
    [](void* object, const char* userId) { return does([&] { of(object).setUserId(userId); }); },
    [](void* object) { return answers([&] { return of(object).writeEntries(); }); },
    openFile,
    [](void* object) { return answers([&] { return of(object).finish(); }); },
    [](void* object) { return answers([&] { return of(object).readEntries(); }); }};

const velloria_plugin kPlugin = {sizeof kPlugin, &kInformation, nullptr, nullptr, &kExchange, nullptr, lastError};

} // namespace
} // namespace velloria::plugins::larkport

VELLORIA_PLUGIN_EXPORT const velloria_plugin* velloria_plugin_get(uint32_t interface_version) {
    return interface_version == VELLORIA_PLUGIN_INTERFACE ? &velloria::plugins::larkport::kPlugin : nullptr;
}
