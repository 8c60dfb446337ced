// Numbers and their texts, as people type them and as settings and pages hold them. Always with a decimal point,
// whatever the machine's language.
#pragma once

#include <QString>

#include <optional>

namespace velloria::core {

/// The number that a text means, nothing when it means none.
///
/// White space around it, one sign in front or behind, parentheses for a negative one, "\" for yen, commas between the
/// digits, an exponent with "E" or "D"; "&H" hexadecimal and "&O" octal, of 16 bits with sign when it fits in 16, else
/// of 32. Width makes no difference.
std::optional<double> numericValue(QStringView text);

/// To 16 bits, halves to even. Throws Failure beyond -32768 to 32767.
qint16 cint(double number);

/// The same for a text. Throws Failure also for a text that is no number, the empty one included.
qint16 cint(QStringView text);

enum class NumberForm {
    Whole,      ///< 0
    OneDecimal, ///< 0.0
    TwoDigits,  ///< 00
};

/// Halves go away from zero, by the number's first 15 decimal digits: 12.35 gives "12.4".
QString formatNumber(double number, NumberForm form);

/// The form "00": at least two digits behind the sign.
QString twoDigits(int number);

/// A text that is a number in the form "00", any other as it stands.
QString twoDigits(const QString& text);

/// A single-precision number by its first seven digits: "120.25", "-60", "1.234568E+07".
QString singleText(float number);

} // namespace velloria::core
