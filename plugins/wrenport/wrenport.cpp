// "Wrenport.dll": import and export of the diary XML of Hatena.
#include "common/calls.h"
#include "common/dates.h"
#include "common/diary_file.h"
#include "common/input_file.h"
#include "common/output_file.h"
#include "common/settings.h"
#include "wrenport/hatena_export.h"
#include "wrenport/hatena_import.h"
#include "wrenport/import_notes.h"

#include <sys/stat.h>
#include <unistd.h>

#include <memory>

namespace velloria::plugins::wrenport {
namespace {

constexpr char kName[] = "Wrenport";
constexpr char kSettingsFile[] = "Wrenport.ini";
constexpr char kSection[] = "Import";

bool isReadable(const char* path) {
    struct stat status;
    return ::stat(path, &status) == 0 && S_ISREG(status.st_mode) && ::access(path, R_OK) == 0;
}

bool isDay(const std::string& day) {
    const auto time = dateTimeOf(day);
    return time && time->dayKey() == day;
}

/// One run of an import or export.
class Exchange {
public:
    explicit Exchange(const velloria_host* host)
        : m_host(host) {}

    void connect(const char* database) {
        m_diary.emplace(database, m_host);
        m_database = database;
    }

    void prepareImport() {
        const Settings settings(m_database, kSettingsFile);
        m_choices.notation = settings.choice(kSection, "Notation", {"html", "keep"}) == 0
                                 ? ImportChoices::Notation::Html
                                 : ImportChoices::Notation::AsTyped;
        m_choices.comments = settings.choice(kSection, "Comments", {"drop", "keep"}) == 0
                                 ? ImportChoices::Comments::Dropped
                                 : ImportChoices::Comments::Kept;
    }

    bool openFile(const char* path, bool isExport) {
        m_path = path;
        m_output.reset();
        if (!isExport)
            return isReadable(path);
        try {
            m_output = std::make_unique<OutputFile>(path);
        } catch (const Error&) {
            return false;
        }
        return true;
    }

    bool writeEntries() {
        if (diary().count() == 0)
            throw Error("書き出す日記がありません。");
        HatenaWriter writer([&](std::string_view text) { m_output->write(text); });
        int64_t skipped = 0;
        Examples days;
        diary().read([&](const Entry& entry) {
            if (isDay(entry.day)) {
                writer.add(entry);
            } else {
                ++skipped;
                days.add(entry.day.empty() ? "日付なし" : entry.day);
            }
        });
        if (writer.written() == 0)
            throw Error("書き出せる日記がありません。どの日記も日付が正しくありません。");
        writer.finish();
        m_report = std::to_string(writer.written()) + "件の日記を書き出しました。";
        m_leftOut.clear();
        if (skipped > 0)
            m_leftOut = "日付が正しくない" + std::to_string(skipped) +
                        "件は書き出していません。\n日付: " + days.text() + "\n日記では、そのまま残っています。";
        return true;
    }

    bool finish() {
        if (!m_output)
            return import();
        m_output->commit();
        m_output.reset();
        m_host.status(m_report);
        if (!m_leftOut.empty())
            m_host.warns(m_path + "\n" + m_report + "\n" + m_leftOut, kName);
        return true;
    }

private:
    bool import() {
        const ImportedDiary imported = read();
        std::vector<const char*> days;
        days.reserve(imported.entries.size());
        for (const Entry& entry : imported.entries)
            days.push_back(entry.day.c_str());
        const velloria_import_plan plan{sizeof plan, kName, uint32_t(days.size()), days.data(), imported.notes.c_str()};
        const char* mark = m_host.beginImport(plan);
        if (!mark)
            return false;
        diary().append(imported.entries, mark);
        return true;
    }

    DiaryFile& diary() {
        if (!m_diary)
            throw Error("日記データベースが開かれていません。");
        return *m_diary;
    }

    ImportedDiary read() const {
        std::string bytes = readFile(m_path);
        try {
            return importedDiary(std::move(bytes), m_choices, [this] { m_host.pump(); });
        } catch (const Error& error) {
            throw Error("はてな形式の日記を読み込めません。\n" + m_path + "\n" + error.what() +
                        "\n日記は変更されていません。");
        }
    }

    Host m_host;
    std::optional<DiaryFile> m_diary;
    std::string m_database;
    std::string m_path;
    ImportChoices m_choices;
    std::unique_ptr<OutputFile> m_output;
    std::string m_report;
    std::string m_leftOut; ///< what an export could not write
};

Exchange& exchangeOf(void* object) {
    return *static_cast<Exchange*>(object);
}

constexpr velloria_hatena_exchange kExchange{
    sizeof kExchange,
    [](const velloria_host* host) { return makes([&]() -> void* { return new Exchange(host); }); },
    [](void* object) { delete static_cast<Exchange*>(object); },
    [](void* object, const char* database) { return does([&] { exchangeOf(object).connect(database); }); },
    [](void* object) { return does([&] { exchangeOf(object).prepareImport(); }); },
    [](void*) { return does([] {}); },
    [](void* object) { return answers([&] { return exchangeOf(object).writeEntries(); }); },
    [](void* object, const char* path, int32_t* isAccepted, int32_t isExport) {
        *isAccepted = 0;
        return does([&] { *isAccepted = exchangeOf(object).openFile(path, isExport != 0) ? 1 : 0; });
    },
    [](void* object) { return answers([&] { return exchangeOf(object).finish(); }); }};

constexpr velloria_plugin kPlugin{sizeof kPlugin, &kInformation, nullptr, nullptr, nullptr, &kExchange, lastError};

} // namespace
} // namespace velloria::plugins::wrenport

VELLORIA_PLUGIN_EXPORT const velloria_plugin* velloria_plugin_get(uint32_t interfaceVersion) {
    return interfaceVersion == VELLORIA_PLUGIN_INTERFACE ? &velloria::plugins::wrenport::kPlugin : nullptr;
}
