// The month page as a plain program would make it: the same queries through the C interface of SQLite, the same bytes.
#pragma once

#include <string>

namespace velloria::bench {

/// The settings under which the page is the same, a customize set.
extern const char kPlainSettings[];

struct PlainMonth {
    std::string database;
    std::string year;         ///< "2091"
    std::string month;        ///< "03"
    std::string folder;       ///< of the page, without its last separator
    std::string name;         ///< of the page
    std::string uploadList{}; ///< file that takes the page's row; "" for none
    bool withPrivate = false;
};

/// Writes the page and, when there is an upload list, what else belongs to Save HTML. Throws std::runtime_error. Knows
/// the diary of the measurements alone: no missing values but the postscript's, no character that code page 932 lacks.
void writePlainMonth(const PlainMonth& month);

} // namespace velloria::bench
