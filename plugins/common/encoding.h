// Texts of other programs, in whatever of the usual encodings they come.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velloria::plugins {

enum class Encoding { Utf8, Utf8WithMark, ShiftJis, EucJp };

/// As a person knows it: "Shift_JIS".
const char* nameOf(Encoding encoding);

struct DecodedText {
    std::string utf8; ///< without a mark
    Encoding encoding = Encoding::Utf8;
    std::size_t replaced = 0; ///< how many pieces could not be read; U+FFFD stands in the place of each
};

/// Finds out the encoding by trial and reads the bytes.
DecodedText decoded(std::string_view bytes);

/// Reads bytes that are in code page 932, whatever else they may look like.
DecodedText decodedShiftJis(std::string_view bytes);

/// Whether the bytes are UTF-8 that every reader takes: no overlong forms, no surrogates.
bool isUtf8(std::string_view bytes);

/// The text with U+FFFD for each piece that is no UTF-8; `replaced` grows by their number.
std::string validUtf8(std::string_view bytes, std::size_t& replaced);

} // namespace velloria::plugins
