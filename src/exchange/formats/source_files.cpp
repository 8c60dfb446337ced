#include "exchange/formats/source_files.h"

#include "platform/encoding_trial.h"
#include "platform/failure.h"
#include "platform/file_read.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

constexpr int kDeepest = 16;
constexpr qsizetype kMostFiles = 300'000; // more than an export of the largest diary has

const QString kFailed = u"日記を読み込めません。"_s;
const QString kUnreadable = u"読めないファイル"_s;

QString shownSize(qint64 bytes) {
    return QLocale::c().formattedDataSize(bytes, 1);
}

void requireSize(const QString& place, qint64 bytes) {
    if (bytes > kLargestSource)
        throw platform::Failure(
            kFailed, place,
            u"大きすぎます (%1)。読み込めるのは%2までです"_s.arg(shownSize(bytes), shownSize(kLargestSource)),
            u"何もインポートしていません。期間を分けるなどして、いくつかに分けてください。"_s);
}

class Walk {
public:
    explicit Walk(Losses& losses)
        : m_losses(losses) {}

    void into(const QString& folder, int depth) {
        countOddNames(folder);
        const QDir directory(folder);
        for (const QFileInfo& found :
             directory.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
            if (found.isSymLink())
                m_losses.countNamed(u"シンボリックリンク"_s, found.fileName());
            else if (found.isFile())
                take(found);
            else if (depth == kDeepest)
                m_losses.countNamed(u"深すぎるフォルダ"_s, found.fileName());
            else if (!found.isReadable() || !found.isExecutable())
                m_losses.countNamed(u"読めないフォルダ"_s, found.fileName());
            else
                into(found.filePath(), depth + 1);
        }
    }

    QStringList files;

private:
    /// Qt passes over a name that is not in the encoding of the system.
    void countOddNames(const QString& folder) {
        std::error_code error;
        for (std::filesystem::directory_iterator found(QFile::encodeName(folder).toStdString(), error), end;
             !error && found != end; found.increment(error)) {
            const QByteArray name = QByteArray::fromStdString(found->path().filename().string());
            if (!name.isValidUtf8())
                m_losses.countNamed(u"文字コードの違う名前のファイル"_s, QString::fromUtf8(name));
        }
    }

    void take(const QFileInfo& file) {
        files += file.filePath();
        if (files.size() > kMostFiles)
            throw platform::Failure(kFailed, file.path(), u"ファイルが多すぎます (%1個より多い)"_s.arg(kMostFiles),
                                    u"何もインポートしていません。日記のフォルダだけを指定してください。"_s);
    }

    Losses& m_losses;
};

} // namespace

QByteArray readSource(const QString& file) {
    requireSize(file, QFileInfo(file).size());
    return platform::readFile(file, kLargestSource);
}

QString readSourceText(const QString& file, Losses& losses) {
    const std::optional<platform::TriedText> tried = platform::textByTrial(readSource(file));
    if (!tried)
        throw platform::Failure(kFailed, file, u"文字コードがわかりません (テキストではないようです)"_s,
                                u"何もインポートしていません。UTF-8に変換してから、もう一度実行してください。"_s);
    losses.countEncoding(tried->encoding);
    return QString(tried->text).replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
}

std::optional<QString> readOneText(const QString& file, Losses& losses) {
    try {
        return readSourceText(file, losses);
    } catch (const platform::Failure&) {
        losses.countNamed(kUnreadable, QFileInfo(file).fileName());
        return std::nullopt;
    }
}

void requireReadable(const QString& folder) {
    if (!QFileInfo(folder).isReadable())
        throw platform::Failure(kFailed, folder, u"フォルダを開く権限がありません"_s,
                                u"何もインポートしていません。"_s);
}

void requireSize(const QString& folder, const QStringList& files) {
    qint64 bytes = 0;
    for (const QString& file : files)
        bytes += QFileInfo(file).size();
    requireSize(folder, bytes);
}

QStringList filesBelow(const QString& folder, Losses& losses) {
    requireReadable(folder);
    Walk walk(losses);
    walk.into(folder, 1);
    return walk.files;
}

} // namespace velloria::exchange
