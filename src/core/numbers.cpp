#include "core/numbers.h"

#include "platform/failure.h"
#include "platform/text_fold.h"

#include <QRegularExpression>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace velloria::core {
namespace {

/// Of digits behind "&H" or "&O": the bit pattern of a number with sign.
std::optional<double> numberOfBits(const QString& digits, int base) {
    bool fits = false;
    const quint32 bits = digits.toUInt(&fits, base);
    if (!fits)
        return std::nullopt;
    return bits <= 0xFFFF ? qint16(bits) : qint32(bits);
}

std::optional<double> numberOfDecimal(const QRegularExpressionMatch& match) {
    const bool isInParentheses = match.hasCaptured(u"open");
    const QString signs = match.captured(u"sign") + match.captured(u"signBehind");
    if (isInParentheses != match.hasCaptured(u"close") || signs.size() + isInParentheses > 1)
        return std::nullopt;
    const QString digits = match.captured(u"digits").remove(u',');
    bool isNumber = false;
    const double number =
        (digits + u'e' + (match.hasCaptured(u"exponent") ? match.captured(u"exponent") : u"0"_s)).toDouble(&isNumber);
    if (!isNumber)
        return std::nullopt;
    return isInParentheses || signs == u"-" ? -number : number;
}

platform::Failure notANumber(QStringView text) {
    return {u"数値に変換できません。"_s, QString(), u"「%1」は数値ではありません。"_s.arg(text),
            u"数字を入力してください。"_s};
}

platform::Failure beyond16Bits(const QString& number) {
    return {u"数値に変換できません。"_s, QString(),
            u"「%1」は -32768 から 32767 までの範囲にありません。"_s.arg(number),
            u"範囲にある数値を入力してください。"_s};
}

/// Rounded by the decimal digits that a person sees: in binary 12.35 is a little less, and so may be a sum.
QString rounded(double number, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double seen = QString::number(number * scale, 'g', 15).toDouble();
    return QString::number(std::round(seen) / scale, 'f', decimals);
}

} // namespace

std::optional<double> numericValue(QStringView text) {
    static const QRegularExpression bits(uR"(^\s*&(?:h(?<hex>[0-9a-f]+)|o(?<octal>[0-7]+))\s*$)"_s);
    // Possessive, so that a long run of blanks or digits is tried in one way only.
    static const QRegularExpression decimal(
        uR"(^\s*+(?<open>\()?\s*+(?<sign>[+-])?\s*+\\?\s*+(?<digits>\d[\d,]*+(?:\.\d*+)?|\.\d++))"
        uR"((?:[ed](?<exponent>[+-]?\d++))?\s*+(?<signBehind>[+-])?\s*+(?<close>\))?\s*+$)"_s);
    const QString folded = platform::fold(text); // also to lower case
    if (const QRegularExpressionMatch match = bits.match(folded); match.hasMatch())
        return match.hasCaptured(u"hex") ? numberOfBits(match.captured(u"hex"), 16)
                                         : numberOfBits(match.captured(u"octal"), 8);
    if (const QRegularExpressionMatch match = decimal.match(folded); match.hasMatch())
        return numberOfDecimal(match);
    return std::nullopt;
}

qint16 cint(double number) {
    using Limits = std::numeric_limits<qint16>;
    const double whole = std::nearbyint(number);
    if (!(whole >= Limits::min() && whole <= Limits::max()))
        throw beyond16Bits(QString::number(number, 'g', 15));
    return qint16(whole);
}

qint16 cint(QStringView text) {
    const std::optional<double> number = numericValue(text);
    if (!number)
        throw notANumber(text);
    return cint(*number);
}

QString formatNumber(double number, NumberForm form) {
    switch (form) {
    case NumberForm::Whole:
        return rounded(number, 0);
    case NumberForm::OneDecimal:
        return rounded(number, 1);
    case NumberForm::TwoDigits: {
        const QString digits = rounded(std::abs(number), 0).rightJustified(2, u'0');
        return number < 0 && digits != u"00" ? u'-' + digits : digits;
    }
    }
    Q_UNREACHABLE();
}

QString twoDigits(int number) {
    const QString digits = QString::number(std::abs(qint64(number))).rightJustified(2, u'0');
    return number < 0 ? u'-' + digits : digits;
}

QString twoDigits(const QString& text) {
    const std::optional<double> number = numericValue(text);
    return number ? formatNumber(*number, NumberForm::TwoDigits) : text;
}

QString singleText(float number) {
    return QString::number(number, 'G', 7);
}

} // namespace velloria::core
