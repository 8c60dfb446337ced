#include "store/jet_record.h"

#include <QDataStream>
#include <QtEndian>

namespace velloria::store::jet {
namespace {

QDataStream& operator<<(QDataStream& out, const OldValue& value) {
    out << quint8(value.index());
    if (const auto* number = std::get_if<qint64>(&value))
        out << *number;
    else if (const auto* text = std::get_if<QByteArray>(&value))
        out << *text;
    return out;
}

QDataStream& operator>>(QDataStream& in, OldValue& value) {
    quint8 kind = 0;
    in >> kind;
    if (kind == 1)
        in >> value.emplace<qint64>();
    else if (kind == 2)
        in >> value.emplace<QByteArray>();
    else if (kind == 0)
        value.emplace<std::monostate>();
    else
        in.setStatus(QDataStream::ReadCorruptData);
    return in;
}

void put(QDataStream&, const Progress&) {}
void put(QDataStream& out, const Version& version) {
    out << version.number;
}
void put(QDataStream& out, const Begin& begin) {
    out << begin.count;
}
void put(QDataStream& out, const Row& row) {
    out << quint32(row.values.size());
    for (const OldValue& value : row.values)
        out << value;
}
void put(QDataStream& out, const End& end) {
    out << end.sent << end.defined;
}
void put(QDataStream& out, const Error& error) {
    out << quint8(error.fault) << error.reason << error.read << error.expected;
}

Record takeRow(QDataStream& in, qsizetype bytes) {
    quint32 count = 0;
    in >> count;
    if (count > quint64(bytes))
        in.setStatus(QDataStream::ReadCorruptData);
    Row row;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i)
        in >> row.values.emplace_back();
    return row;
}

Record take(QDataStream& in, quint8 kind, qsizetype bytes) {
    switch (kind) {
    case 0:
        return Progress{};
    case 1: {
        Version version{};
        in >> version.number;
        return version;
    }
    case 2: {
        Begin begin{};
        in >> begin.count;
        return begin;
    }
    case 3:
        return takeRow(in, bytes);
    case 4: {
        End end{};
        in >> end.sent >> end.defined;
        return end;
    }
    case 5: {
        quint8 fault = 0;
        Error error{};
        in >> fault >> error.reason >> error.read >> error.expected;
        error.fault = Fault(fault);
        return error;
    }
    default:
        in.setStatus(QDataStream::ReadCorruptData);
        return Progress{};
    }
}

} // namespace

QByteArray toBytes(const Record& record) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODeviceBase::WriteOnly);
    out.setVersion(QDataStream::Qt_6_4);
    out << quint32(0) << quint8(record.index());
    std::visit([&out](const auto& one) { put(out, one); }, record);
    qToLittleEndian(quint32(bytes.size() - kLengthBytes), bytes.data());
    return bytes;
}

quint32 lengthOf(const QByteArray& bytes) {
    return qFromLittleEndian<quint32>(bytes.constData());
}

std::optional<Record> recordOf(const QByteArray& bytes) {
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_6_4);
    quint8 kind = 0;
    in >> kind;
    Record record = take(in, kind, bytes.size());
    if (in.status() != QDataStream::Ok || !in.atEnd())
        return {};
    return record;
}

} // namespace velloria::store::jet
