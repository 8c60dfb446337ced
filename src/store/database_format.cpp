#include "store/database_format.h"

#include "platform/failure.h"
#include "platform/file_read.h"
#include "store/sqlite/connection.h"

using namespace Qt::StringLiterals;

namespace velloria::store {

using platform::Failure;

namespace {

QByteArray headOf(const QString& path) {
    constexpr qint64 kHeadBytes = 32;
    try {
        return platform::readFile(path, kHeadBytes);
    } catch (const Failure& failure) {
        throw Failure(u"日記データベースを開けません。"_s, path, failure.reason(),
                      u"ファイルの場所を確認してください。"_s);
    }
}

} // namespace

DatabaseFormat formatOf(const QString& path) {
    platform::refuseLostLink(path);
    const QByteArray head = headOf(path);
    if (head.startsWith(QByteArrayView("SQLite format 3\0", 16)))
        return DatabaseFormat::Sqlite;
    if (head.startsWith(QByteArrayView("\0\1\0\0Standard Jet DB", 19)))
        return DatabaseFormat::Jet;
    return DatabaseFormat::None;
}

void requireDiaryFormat(const QString& path) {
    if (formatOf(path) == DatabaseFormat::None)
        refuseForeignFile(path);
}

void refuseForeignFile(const QString& path) {
    throw Failure(u"日記データベースではありません。"_s, path, {}, unchangedAndRestore());
}

QString unchangedAndRestore() {
    return u"ファイルは変更されていません。"_s + sqlite::restoreAdvice();
}

} // namespace velloria::store
