#include "convert/colour.h"

#include "core/files.h"
#include "core/numbers.h"
#include "core/text_file.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::convert {
namespace {

platform::Failure unreadable(const QString& file, const QString& reason) {
    return {u"色の一覧を読み取れません。"_s, file, reason,
            u"プログラムに付属する「colorname.csv」を、プログラムのフォルダに戻してください。"_s};
}

QByteArray listBytes(const QString& myPath) {
    const QString file = platform::existingPath(core::files::kColours.below(myPath));
    if (!platform::fileExists(file))
        throw unreadable(file, u"ファイルがありません"_s);
    try {
        return platform::readFile(file);
    } catch (const platform::Failure& failure) {
        throw unreadable(file, failure.reason());
    }
}

} // namespace

std::vector<NamedColour> readColours(const QString& myPath) {
    std::vector<NamedColour> colours;
    for (const QString& line : core::linesOf(platform::fromCodePage(listBytes(myPath)))) {
        const auto [name, number] = core::twoFields(line);
        if (!name.isEmpty() && !number.isEmpty())
            colours.push_back({name, number});
    }
    return colours;
}

QStringList colourNames(const QString& myPath) {
    QStringList names;
    for (const NamedColour& colour : readColours(myPath))
        names += colour.name;
    return names;
}

QString exchangeColour(const QString& myPath, QString& text) {
    text = text.toLower();
    const bool isNumber = text.startsWith(u'#');
    if (isNumber && !core::numericValue(u"&H"_s + text.sliced(1)))
        return kNoColourText.toString();
    for (const NamedColour& colour : readColours(myPath)) {
        if (isNumber ? text == colour.number.toLower() : text == colour.name.toLower())
            return isNumber ? colour.name : colour.number;
    }
    return kNotInList.toString();
}

QString colourDigits(OleColour colour) {
    const auto channel = [=](int shift) {
        return u"%1"_s.arg((colour >> shift) & 0xFF, 2, 16, QLatin1Char('0')).toUpper();
    };
    return channel(0) + channel(8) + channel(16);
}

std::optional<OleColour> colourValue(const QString& digits) {
    static const QRegularExpression sixDigits(uR"(\A[0-9A-Fa-f]{6}\z)"_s);
    if (!sixDigits.match(digits).hasMatch())
        return std::nullopt;
    const auto channel = [&](qsizetype at) { return digits.mid(at, 2).toUInt(nullptr, 16); };
    return channel(0) | channel(2) << 8 | channel(4) << 16;
}

} // namespace velloria::convert
