// A text as the value of a search query, percent-encoded in the character set that the search site expects.
//
// In all three a blank becomes "+"; digits, letters and "@*-._" stand as they are; every other byte becomes "%" and two
// upper-case digits. An empty text gives an empty text.
#pragma once

#include <QByteArray>
#include <QString>

namespace velloria::convert {

/// Shift_JIS. What code page 932 lacks counts as "?" (two for a surrogate pair). Lead bytes F0 to FC are not taken for
/// lead bytes: they and their trail bytes are encoded one by one, so a trail byte may stand as it is.
QString ModURLEncode(const QString& text);

/// EUC-JP, worked out from the Shift_JIS bytes; half-width kana get "%8E" in front. What code page 932 lacks counts
/// as "?". Rows that EUC-JP does not have (lead bytes F0 to FC) give bytes that wrap at 256.
QString ModURLEncodeEUC(const QString& text);

/// UTF-8 of each 16-bit unit by itself: a character above U+FFFF becomes two three-byte forms.
QString ModURLEncodeUTF8(const QString& text);

/// ModURLEncode of a text's code page 932 bytes. A lead byte at the very end stands alone.
QString encodeCodePageBytes(QByteArrayView bytes);

/// ModURLEncodeEUC of a text's code page 932 bytes.
QString encodeCodePageBytesAsEuc(QByteArrayView bytes);

} // namespace velloria::convert
