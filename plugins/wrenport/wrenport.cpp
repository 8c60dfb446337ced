// "Wrenport.dll": import and export of the diary XML of Hatena.
#include "common/calls.h"
#include "common/diary_file.h"
#include "common/input_file.h"
#include "common/output_file.h"
#include "common/settings.h"
#include "wrenport/hatena_export.h"
#include "wrenport/hatena_import.h"

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
        m_isExport = isExport;
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
        m_host.status("はてな形式で書き出しています");
        HatenaWriter writer([&](std::string_view text) { m_output->write(text); });
        m_diary->read([&](const Entry& entry) { writer.add(entry); });
        writer.finish();
        return true;
    }

    bool finish() {
        if (!m_isExport)
            return import();
        m_output->commit();
        return true;
    }

private:
    bool import() {
        m_host.status("はてな形式の日記を読んでいます");
        const ImportedDiary diary = read();
        std::vector<const char*> days;
        days.reserve(diary.entries.size());
        for (const Entry& entry : diary.entries)
            days.push_back(entry.day.c_str());
        const velloria_import_plan plan{sizeof plan, kName, uint32_t(days.size()), days.data(), diary.notes.c_str()};
        const char* mark = m_host.beginImport(plan);
        if (!mark)
            return false;
        m_diary->append(diary.entries, mark);
        return true;
    }

    ImportedDiary read() const {
        const std::string bytes = readFile(m_path);
        try {
            return importedDiary(bytes, m_choices);
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
    bool m_isExport = false;
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
        return does([&] { *isAccepted = exchangeOf(object).openFile(path, isExport != 0) ? 1 : 0; });
    },
    [](void* object) { return answers([&] { return exchangeOf(object).finish(); }); }};

constexpr velloria_plugin kPlugin{sizeof kPlugin, &kInformation, nullptr, nullptr, nullptr, &kExchange, lastError};

} // namespace
} // namespace velloria::plugins::wrenport

VELLORIA_PLUGIN_EXPORT const velloria_plugin* velloria_plugin_get(uint32_t interfaceVersion) {
    return interfaceVersion == VELLORIA_PLUGIN_INTERFACE ? &velloria::plugins::wrenport::kPlugin : nullptr;
}
