// The list of tables that a Jet file has.
#pragma once

#include "store/jet/jet_file.h"

#include <QString>

#include <functional>
#include <vector>

namespace velloria::store::jet {

struct CatalogTable {
    QString name;
    quint32 page; ///< of the definition
};

/// Tables of the user's, not the system's. Throws JetError when the list is damaged.
class JetCatalog {
public:
    JetCatalog(const JetFile& file, const std::function<void()>& progress);

    /// Without regard to case; null when there is none.
    const CatalogTable* find(const QString& name) const;

private:
    void read(const JetFile& file, const std::function<void()>& progress);

    std::vector<CatalogTable> m_tables;
};

} // namespace velloria::store::jet
