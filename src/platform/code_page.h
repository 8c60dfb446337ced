// Windows code page 932, the text form of pages, settings, lists and CSV files.
//
// The mapping is that of iconv's CP932 without any best fit: a character that would come back as another one counts as
// missing, with seven exceptions. U+2014, U+2016, U+2212 and U+301C, which Japanese input methods outside Windows type,
// are written as U+2015, U+2225, U+FF0D and U+FF5E, and U+00A2, U+00A3 and U+00AC as U+FFE0, U+FFE1 and U+FFE2.
#pragma once

#include <QByteArray>
#include <QString>

namespace velloria::platform {

/// What becomes of a character that the code page lacks.
enum class Missing {
    Reference, ///< a decimal character reference, `&#233;`: nothing is lost on a page or in a settings file
    Question,  ///< "?", as the platform does: two for a surrogate pair
};

/// Text to code page bytes. A lone surrogate is no character and becomes "?". Throws Failure, as all here does at first
/// use, on a system without the code page.
QByteArray toCodePage(QStringView text, Missing missing = Missing::Reference);

/// Code page bytes to text. Never fails: an undefined pair or a lone lead byte reads as U+30FB.
QString fromCodePage(QByteArrayView bytes);

/// Whether every character of `text` has a code of its own (the seven exceptions included).
bool inCodePage(QStringView text);

/// Turns a decimal reference back into its character exactly when the code page lacks that character, so that what
/// Missing::Reference wrote reads as it was and every other reference stays as typed.
QString decodeReferences(QString text);

/// Bytes of the character that starts at `bytes[at]`: 2 behind a lead byte that has a successor, else 1.
int characterLength(QByteArrayView bytes, qsizetype at);

/// Whether `code` (one byte below 0x100, else lead byte times 0x100 plus trail byte) is a character of the code page.
bool isCode(unsigned code);

/// The character of a code for which isCode holds.
char16_t characterOf(unsigned code);

/// The code of a character, 0 when the code page lacks it (and for U+0000 itself).
unsigned codeOf(char16_t character);

} // namespace velloria::platform
