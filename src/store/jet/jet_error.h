// Why the reading of a file ends.
#pragma once

#include "store/jet_record.h"

#include <QString>

#include <exception>

namespace velloria::store::jet {

class JetError : public std::exception {
public:
    JetError(Fault fault, QString reason)
        : m_fault(fault)
        , m_reason(std::move(reason)) {}

    Fault fault() const { return m_fault; }
    const QString& reason() const { return m_reason; } ///< in Japanese

    /// Rows that could be read, and how many there should be.
    qint64 read = 0;
    qint64 expected = -1;

private:
    Fault m_fault;
    QString m_reason;
};

/// A file that says what can't be.
inline JetError damaged(const QString& reason) {
    return {Fault::Damaged, reason};
}

} // namespace velloria::store::jet
