// The reader of Movable Type's text format; what it takes is written and read again.
#include "common/calls.h"
#include "larkport/entry_writer.h"
#include "larkport/movable_type_reader.h"

#include <cstdlib>

using namespace velloria::plugins;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, std::size_t size) {
    try {
        const std::string_view file(reinterpret_cast<const char*>(bytes), size);
        const larkport::ReadDiary diary = larkport::readMovableType(file, {true, true}, [] {});
        larkport::EntryWriter writer("");
        std::string written;
        for (const Entry& entry : diary.entries)
            written += writer.text(entry);
        if (larkport::readMovableType(written, {}, [] {}).entries != diary.entries)
            std::abort();
    } catch (const Error&) {
        return 0;
    }
    return 0;
}
