// Files under tests/data that a result must equal byte for byte.
#pragma once

#include <QByteArray>
#include <QString>

namespace velloria::tests {

/// Fails the test, which goes on, unless `bytes` is the file tests/data/`name`; tells the first line that differs.
void expectGolden(const QString& name, const QByteArray& bytes);

} // namespace velloria::tests
