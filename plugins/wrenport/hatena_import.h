// Entries of our diary out of a diary of Hatena.
#pragma once

#include "common/diary_file.h"

#include <functional>
#include <string>
#include <vector>

namespace velloria::plugins::wrenport {

struct ImportChoices {
    enum class Notation { Html, AsTyped };
    enum class Comments { Dropped, Kept };

    Notation notation = Notation::Html;
    Comments comments = Comments::Dropped;
};

struct ImportedDiary {
    std::vector<Entry> entries; ///< oldest day first
    std::string notes;          ///< for the person, before anything is written; LF between the lines
};

/// Reads the bytes of a file; `pump` is called now and then. Throws Error, which does not name the file, for what is no
/// such diary or holds no entry.
ImportedDiary importedDiary(std::string bytes, const ImportChoices& choices, const std::function<void()>& pump);

} // namespace velloria::plugins::wrenport
