#include "store/jet/jet_memo.h"

#include "store/jet/jet_error.h"

#include <QSet>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace velloria::store::jet {
namespace {

constexpr qsizetype kHeadBytes = 12;
constexpr qsizetype kNextBytes = 4; ///< in front of each piece of many

quint32 numberAt(QByteArrayView bytes, qsizetype at) {
    return qFromLittleEndian<quint32>(bytes.data() + at);
}

/// The row that a pointer names, on a page of long texts.
QByteArray pieceAt(const JetFile& file, quint32 pointer) {
    const quint32 page = pointer >> 8;
    void* buffer = nullptr;
    int offset = 0;
    size_t length = 0;
    if (page == 0 || page >= file.pageCount() ||
        mdb_find_pg_row(file.handle(), int(pointer), &buffer, &offset, &length) != 0)
        throw damaged(u"長い文章のページ%1を読めません"_s.arg(page));
    const QByteArrayView bytes(static_cast<const char*>(buffer), file.pageSize());
    if (bytes[0] != char(MDB_PAGE_DATA) || bytes.sliced(4, 4) != QByteArrayView("LVAL", 4))
        throw damaged(u"ページ%1は長い文章のページではありません"_s.arg(page));
    if (offset < 0 || length > size_t(bytes.size()) || offset > bytes.size() - qsizetype(length))
        throw damaged(u"ページ%1の長い文章が壊れています"_s.arg(page));
    return bytes.sliced(offset, qsizetype(length)).toByteArray();
}

QByteArray joinedPieces(const JetFile& file, quint32 pointer, qsizetype length) {
    if (length > file.size())
        throw damaged(u"長い文章がファイルより長くなっています"_s);
    QByteArray text;
    QSet<quint32> seen;
    while (text.size() < length) {
        if (pointer == 0)
            throw damaged(u"長い文章の続きがありません"_s);
        if (seen.contains(pointer))
            throw damaged(u"長い文章が終わりません"_s);
        seen.insert(pointer);
        const QByteArray piece = pieceAt(file, pointer);
        if (piece.size() <= kNextBytes)
            throw damaged(u"長い文章の一部が空です"_s);
        pointer = numberAt(piece, 0);
        text += QByteArrayView(piece).sliced(kNextBytes);
    }
    text.truncate(length);
    return text;
}

} // namespace

QByteArray memoBytes(const JetFile& file, QByteArrayView field) {
    if (field.isEmpty())
        return {};
    if (field.size() < kHeadBytes)
        throw damaged(u"長い文章の場所を読めません"_s);
    const quint32 head = numberAt(field, 0);
    const quint32 pointer = numberAt(field, 4);
    const qsizetype length = head & 0x3fffffff;
    switch (head >> 30) {
    case 0b10: {
        const QByteArrayView text = field.sliced(kHeadBytes);
        if (text.size() != length)
            throw damaged(u"文章の長さが合いません"_s);
        return text.toByteArray();
    }
    case 0b01: {
        QByteArray piece = pieceAt(file, pointer);
        if (piece.size() < length)
            throw damaged(u"長い文章が途中で切れています"_s);
        piece.truncate(length);
        return piece;
    }
    case 0b00:
        return joinedPieces(file, pointer, length);
    default:
        throw damaged(u"長い文章の場所を読めません"_s);
    }
}

} // namespace velloria::store::jet
