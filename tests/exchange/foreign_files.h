// A folder of another program's files for one test.
#pragma once

#include "exchange/formats/foreign_diary.h"
#include "platform/failure.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace velloria::tests {

class ForeignFiles : public ::testing::Test {
protected:
    QString path(const QString& name = {}) const { return name.isEmpty() ? folder.path() : folder.filePath(name); }

    QString write(const QString& name, const QByteArray& bytes) const {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(name);
        file.write(bytes);
        return path(name);
    }

    static QString sample(const QString& name) { return QStringLiteral(VELLORIA_TEST_DATA "/exchange/") + name; }

    /// What a reader says when it throws, "" when it does not.
    static QString failureOf(const std::function<void()>& read) {
        try {
            read();
            return {};
        } catch (const platform::Failure& failure) {
            return failure.line();
        }
    }

    QTemporaryDir folder;
};

/// "yyyy/mm/dd hh:nn:ss|title|genre|weather|private" of each.
inline QStringList headsOf(const exchange::ForeignDiary& diary) {
    QStringList heads;
    for (const exchange::ForeignEntry& foreign : diary.entries) {
        const store::Entry& entry = foreign.entry;
        heads += QStringList{entry.day,   entry.publishTime, entry.title,
                             entry.genre, entry.weather,     entry.isPrivate ? QStringLiteral("private") : QString()}
                     .join(u'|');
    }
    return heads;
}

} // namespace velloria::tests
