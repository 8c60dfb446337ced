#include "store/jet/jet_value.h"

#include "store/jet/jet_error.h"
#include "store/jet/jet_memo.h"
#include "store/jet/jet_text.h"

#include <QDate>
#include <QtEndian>
#include <QTime>

#include <bit>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velloria::store::jet {
namespace {

[[noreturn]] void refuse(const Column& column) {
    throw damaged(u"列「%1」の値を読めません"_s.arg(column.name));
}

template <typename Number>
Number numberOf(const Column& column, const Field& field) {
    if (field.bytes.size() != sizeof(Number))
        refuse(column);
    return qFromLittleEndian<Number>(field.bytes.data());
}

QByteArray utf8Of(const JetFile& file, QByteArrayView bytes) {
    const QString text = file.isJet3() ? textOfCodePage(bytes, file.codePage()) : textOfUnits(bytes);
    const QByteArray utf8 = text.toUtf8();
    return utf8.isNull() ? QByteArray("") : utf8;
}

/// Bytes that a value of the kind takes in the row; 0 where that differs from row to row, nothing for another kind.
std::optional<int> sizeOf(int type) {
    switch (type) {
    case MDB_BOOL:
    case MDB_BYTE:
        return 1;
    case MDB_INT:
        return 2;
    case MDB_LONGINT:
        return 4;
    case MDB_DATETIME:
        return 8;
    case MDB_TEXT:
    case MDB_MEMO:
        return 0;
    default:
        return {};
    }
}

} // namespace

void requireKnownKind(const Column& column) {
    const std::optional<int> size = sizeOf(column.type);
    // Jet 4 gives Booleans a size of one byte, other writers none.
    const bool fits = size && (column.type == MDB_BOOL ? column.size <= 1 : *size == 0 || column.size == *size);
    if (!fits || (*size != 0 && !column.isFixed) || (column.type == MDB_MEMO && column.isFixed))
        throw damaged(u"列「%1」の種類%2は日記にはありません"_s.arg(column.name).arg(column.type));
}

OldValue valueOf(const JetFile& file, const Column& column, const Field& field) {
    if (column.type == MDB_BOOL)
        return qint64(field.isNull ? 0 : 1);
    if (field.isNull)
        return {};
    switch (column.type) {
    case MDB_BYTE:
        return qint64(numberOf<quint8>(column, field));
    case MDB_INT:
        return qint64(numberOf<qint16>(column, field));
    case MDB_LONGINT:
        return qint64(numberOf<qint32>(column, field));
    case MDB_DATETIME:
        return dateOf(std::bit_cast<double>(numberOf<quint64>(column, field))).toUtf8();
    case MDB_TEXT:
        return utf8Of(file, field.bytes);
    case MDB_MEMO:
        return utf8Of(file, memoBytes(file, field.bytes));
    default:
        refuse(column);
    }
}

QString dateOf(double days) {
    constexpr double kFirst = -657434; // 0100/01/01
    constexpr double kBehindLast = 2958466;
    constexpr int kSecondsOfDay = 24 * 60 * 60;
    if (!(days > kFirst - 1 && days < kBehindLast))
        throw damaged(u"日付を読めません"_s);
    double day = std::trunc(days);
    // The time of day counts forward, in days before the first one as well.
    int seconds = int(std::lround(std::abs(days - day) * kSecondsOfDay));
    if (seconds == kSecondsOfDay) {
        seconds = 0;
        ++day;
    }
    const QString text = QDate(1899, 12, 30).addDays(qint64(day)).toString(u"yyyy/MM/dd"_s);
    return seconds == 0 ? text : text + QTime(0, 0).addSecs(seconds).toString(u" HH:mm:ss"_s);
}

} // namespace velloria::store::jet
