// The customize sets that the program comes with besides the standard one: the homes of the tests are without them.
#pragma once

#include "core/files.h"
#include "shell/filled_folder.h"

#include <gtest/gtest.h>

#include <QDir>

namespace velloria::tests {

/// Their names.
inline const QStringList kFactorySets{QStringLiteral("Dark"),     QStringLiteral("LargePrint"),
                                      QStringLiteral("Light"),    QStringLiteral("Newspaper"),
                                      QStringLiteral("Notebook"), QStringLiteral("Plain")};

/// Brings them into a home. A data folder gets them when it is begun after that.
inline void bringCustomizeSets(const QString& home) {
    const QString name = core::files::kFirstCustomize.name;
    ASSERT_TRUE(QDir(home).mkdir(name));
    shell::copyFilesOf(QStringLiteral(VELLORIA_PROGRAM_FOLDER "/") + name, QDir(home).filePath(name));
}

} // namespace velloria::tests
