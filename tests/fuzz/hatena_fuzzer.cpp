// Reads bytes as a diary of Hatena, and what comes of it a second time from an export of it.
#include "wrenport/hatena_export.h"
#include "wrenport/hatena_import.h"

#include <cstdlib>

namespace {

using namespace velloria::plugins;
using namespace velloria::plugins::wrenport;

void tryBytes(const std::string& bytes, const ImportChoices& choices) {
    ImportedDiary diary;
    try {
        diary = importedDiary(bytes, choices, [] {});
    } catch (const Error&) {
        return; // refused with a reason
    }
    std::string xml;
    HatenaWriter writer([&](std::string_view text) { xml += text; });
    for (const Entry& entry : diary.entries)
        writer.add(entry);
    writer.finish();
    if (importedDiary(xml, choices, [] {}).entries != diary.entries)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    tryBytes(bytes, {ImportChoices::Notation::Html, ImportChoices::Comments::Kept});
    tryBytes(bytes, {ImportChoices::Notation::AsTyped, ImportChoices::Comments::Dropped});
    return 0;
}
