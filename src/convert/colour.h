// Colours: as people name them, as pages hold them, as the screen has them.
//
// The names are those of "colorname.csv" beside the program, in its order. It is read anew at each use; one that is
// missing or can't be read is a platform::Failure.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace velloria::convert {

/// One record, both fields as they stand in the file. A line without two fields is no record.
struct NamedColour {
    QString name;
    QString number; ///< "#" and six hexadecimal digits, red first
};

/// `myPath` is the program's folder.
std::vector<NamedColour> readColours(const QString& myPath);
QStringList colourNames(const QString& myPath);

/// What exchangeColour answers when it has no other form.
inline constexpr QStringView kNotInList = u"Nothing";
inline constexpr QStringView kNoColourText = u"Error";

/// The number of a name, or the name of a number: "Nothing" when it is not in the list, "Error" when the text starts
/// with "#" and goes on with no hexadecimal number. `text` becomes lower case, for that is how it is compared.
QString exchangeColour(const QString& myPath, QString& text);

/// A colour as a number of 24 bits, red in the lowest eight, blue in the highest.
using OleColour = quint32;

/// Six hexadecimal digits in capitals, red first.
QString colourDigits(OleColour colour);

/// The colour of six such digits in any case; nothing for any other text.
std::optional<OleColour> colourValue(const QString& digits);

} // namespace velloria::convert
