// What the diary service wrote is not always XML: control characters and references to what XML forbids stand in it.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace velloria::plugins::wrenport {

/// Hands over a text as XML may hold it, piece by piece. What XML forbids is left out, and an ampersand that begins no
/// reference of XML becomes one to itself. Gives how much was left out. Stops when `take` says no.
int64_t cleanXml(std::string_view utf8, const std::function<bool(std::string_view)>& take);

/// Whether XML can hold a character.
bool isXmlCharacter(uint32_t character);

} // namespace velloria::plugins::wrenport
