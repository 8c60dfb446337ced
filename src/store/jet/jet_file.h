// A Jet file as pages.
#pragma once

#include "store/jet/mdb.h"

#include <QByteArray>
#include <QString>

namespace velloria::store::jet {

/// A row on a page.
struct Place {
    quint32 page = 0;
    quint16 slot = 0;
};

/// Where the bytes of a row lie on the page that was read last.
struct RowBytes {
    int start;
    int length;
};

/// Opens a file of version 3 or 4 of the format, checked by its head and length. All here throw JetError.
class JetFile {
public:
    explicit JetFile(const QString& file);
    ~JetFile();
    JetFile(const JetFile&) = delete;
    JetFile& operator=(const JetFile&) = delete;

    MdbHandle* handle() const { return m_handle; }
    bool isJet3() const { return m_isJet3; }
    quint32 pageCount() const { return m_pageCount; }
    qint64 size() const { return m_size; }
    int pageSize() const { return m_pageSize; }
    /// Of the texts of version 3.
    int codePage() const { return m_handle->f->code_page; }

    /// Reads a page, and says whether it holds rows of the table that `owner` defines.
    bool readRows(quint32 page, quint32 owner) const;
    /// How many slots the page that was read last has, with the deleted ones.
    int slotCount() const;
    /// What stands in the slot: where the row begins, with its flags.
    int slotAt(int slot) const;
    /// The row in the slot; throws when it leads out of the page.
    RowBytes rowAt(int slot) const;

    static constexpr int kNotLive = 0x8000; ///< of a slot: deleted, or reached by a pointer only
    static constexpr int kPointer = 0x4000; ///< of a slot: the row says where the row lies

private:
    MdbHandle* m_handle = nullptr;
    bool m_isJet3 = false;
    qint64 m_size = 0;
    int m_pageSize = 0;
    quint32 m_pageCount = 0;
};

} // namespace velloria::store::jet
