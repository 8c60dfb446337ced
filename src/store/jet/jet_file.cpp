#include "store/jet/jet_file.h"

#include "platform/failure.h"
#include "platform/file_read.h"
#include "store/jet/jet_error.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::store::jet {
namespace {

constexpr int kVersionAt = 0x14;
constexpr char kJet3 = 0;
constexpr char kJet4 = 1;

QByteArray headOf(const QString& file) {
    try {
        return platform::readFile(file, 24);
    } catch (const platform::Failure& failure) {
        throw JetError(Fault::NotReadable, failure.reason());
    }
}

} // namespace

JetFile::JetFile(const QString& file) {
    const QByteArray head = headOf(file);
    if (head.size() < 24 || !head.startsWith(QByteArrayView("\0\1\0\0Standard Jet DB", 19)))
        throw JetError(Fault::NotReadable, u"旧形式(Jet)のファイルではありません"_s);
    if (head[kVersionAt] != kJet3 && head[kVersionAt] != kJet4)
        throw JetError(Fault::NotReadable, u"新しすぎる形式です"_s);
    m_isJet3 = head[kVersionAt] == kJet3;
    m_pageSize = m_isJet3 ? 2048 : 4096;
    m_size = QFileInfo(file).size();
    m_pageCount = quint32(m_size / m_pageSize);
    if (m_size % m_pageSize != 0 || m_pageCount < 3)
        throw damaged(u"ファイルの終わりが欠けています"_s);
    m_handle = mdb_open(QFile::encodeName(file).constData(), MDB_NOFLAGS);
    if (!m_handle || m_handle->fmt->pg_size != m_pageSize)
        throw damaged(u"ファイルの先頭を読めません"_s);
}

JetFile::~JetFile() {
    if (m_handle)
        mdb_close(m_handle);
}

bool JetFile::readRows(quint32 page, quint32 owner) const {
    // Behind a refused read the library takes the page that it still has for this one.
    if (page >= m_pageCount || mdb_read_pg(m_handle, page) != m_pageSize)
        throw damaged(u"ページ%1を読めません"_s.arg(page));
    return m_handle->pg_buf[0] == MDB_PAGE_DATA && quint32(mdb_get_int32(m_handle->pg_buf, 4)) == owner;
}

int JetFile::slotCount() const {
    const int offset = m_handle->fmt->row_count_offset;
    return qMin(mdb_get_int16(m_handle->pg_buf, offset), (m_pageSize - offset - 2) / 2);
}

int JetFile::slotAt(int slot) const {
    return mdb_get_int16(m_handle->pg_buf, m_handle->fmt->row_count_offset + 2 + 2 * slot);
}

RowBytes JetFile::rowAt(int slot) const {
    int start = 0;
    size_t length = 0;
    const bool isThere = mdb_find_row(m_handle, slot, &start, &length) == 0;
    start &= 0x1fff;
    const int slotsEnd = m_handle->fmt->row_count_offset + 2 + 2 * slotCount();
    if (!isThere || length == 0 || start < slotsEnd || length > size_t(m_pageSize - start))
        throw damaged(u"ページ%1の行%2が壊れています"_s.arg(m_handle->cur_pg).arg(slot));
    return {start, int(length)};
}

} // namespace velloria::store::jet
