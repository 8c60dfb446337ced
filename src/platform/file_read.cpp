#include "platform/file_read.h"

#include "platform/descriptor.h"
#include "platform/failure.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

const QString kCantOpen = u"ファイルを開けません。"_s;

/// Where a chain of links ends that leads nowhere; "" for any other name.
QString lostEnd(const QString& file) {
    constexpr int kMostLinks = 40;
    struct stat status;
    const QByteArray name = QFile::encodeName(file);
    const bool isLost = ::stat(name.constData(), &status) != 0 &&
                        (errno == ENOENT || errno == ENOTDIR || errno == ELOOP) &&
                        ::lstat(name.constData(), &status) == 0 && S_ISLNK(status.st_mode);
    QString end = isLost ? QFileInfo(file).symLinkTarget() : QString();
    for (int i = 0; isLost && i < kMostLinks && QFileInfo(end).isSymLink(); ++i)
        end = QFileInfo(end).symLinkTarget();
    return end;
}

[[noreturn]] void refuseReading(const QString& file, int errorNumber) {
    throw Failure(u"ファイルを読み込めません。"_s, file, systemReason(errorNumber),
                  u"ファイルは元のままです。ディスクを確認してください。"_s);
}

/// A link that leads nowhere is no missing file.
bool isMissing(const QString& file) {
    struct stat status;
    refuseLostLink(file);
    return ::stat(QFile::encodeName(file).constData(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

/// The first `mostBytes` from where it stands, or all.
QByteArray bytesOf(const QString& file, const Descriptor& source, const struct stat& status, qint64 mostBytes) {
    // One byte of room more shows the end without growing.
    const qint64 expected = S_ISREG(status.st_mode) ? qint64(status.st_size) + 1 : 1 << 16;
    QByteArray bytes(mostBytes == kWholeFile ? expected : qMin(expected, mostBytes), Qt::Uninitialized);
    qsizetype used = 0;
    while (mostBytes == kWholeFile || used < mostBytes) {
        if (used == bytes.size())
            bytes.resize(mostBytes == kWholeFile ? used * 2 : qMin(used * 2, qsizetype(mostBytes)));
        const ssize_t count = ::read(source.value(), bytes.data() + used, std::size_t(bytes.size() - used));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            refuseReading(file, errno);
        if (count == 0)
            break;
        used += count;
    }
    bytes.truncate(used);
    return bytes;
}

} // namespace

void refuseLostLink(const QString& file) {
    if (const QString end = lostEnd(file); !end.isEmpty())
        throw Failure(u"リンクの先がありません。"_s, file + u" → "_s + end, systemReason(ENOENT),
                      u"リンクは元のままです。リンクの先のディスクをつなぐか、リンクを直してください。"_s);
}

void requireRegular(const QString& file, const QString& what, const struct stat& status) {
    if (S_ISREG(status.st_mode))
        return;
    throw Failure(what, file, S_ISDIR(status.st_mode) ? systemReason(EISDIR) : u"通常のファイルではありません"_s,
                  u"ファイルの場所と名前を確認してください。"_s);
}

Descriptor openRegularFile(const QString& file, const QString& what, struct stat& status) {
    const QByteArray name = QFile::encodeName(file);
    refuseLostLink(file);
    // Asked first: even an opening that does not wait may move a device.
    if (::stat(name.constData(), &status) != 0)
        throw Failure(what, file, systemReason(errno));
    requireRegular(file, what, status);
    Descriptor source(::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (source.value() < 0 || ::fstat(source.value(), &status) != 0)
        throw Failure(what, file, systemReason(errno));
    requireRegular(file, what, status);
    return source;
}

QByteArray readFile(const QString& file, qint64 mostBytes) {
    struct stat status;
    const Descriptor source = openRegularFile(file, kCantOpen, status);
    return bytesOf(file, source, status, mostBytes);
}

std::optional<QByteArray> readFileIfThere(const QString& file, qint64 mostBytes) {
    return isMissing(file) ? std::nullopt : std::optional(readFile(file, mostBytes));
}

std::optional<QByteArray> readEndIfThere(const QString& file, qint64 mostBytes) {
    if (isMissing(file))
        return std::nullopt;
    struct stat status;
    const Descriptor source = openRegularFile(file, kCantOpen, status);
    if (::lseek(source.value(), std::max<off_t>(0, status.st_size - mostBytes), SEEK_SET) < 0)
        refuseReading(file, errno);
    return bytesOf(file, source, status, mostBytes);
}

bool haveSameBytes(const QString& left, const QString& right, qint64 begin) {
    constexpr qint64 kPiece = 1 << 18;
    struct stat leftStatus;
    struct stat rightStatus;
    const Descriptor one = openRegularFile(left, kCantOpen, leftStatus);
    const Descriptor other = openRegularFile(right, kCantOpen, rightStatus);
    if (leftStatus.st_size != rightStatus.st_size)
        return false;
    for (const auto& [file, source] : {std::pair(&left, &one), std::pair(&right, &other)}) {
        if (::lseek(source->value(), begin, SEEK_SET) < 0)
            refuseReading(*file, errno);
    }
    for (;;) {
        const QByteArray piece = bytesOf(left, one, leftStatus, kPiece);
        if (piece != bytesOf(right, other, rightStatus, kPiece))
            return false;
        if (piece.isEmpty())
            return true;
    }
}

QByteArray readAnything(const QString& file) {
    const Descriptor source(::open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC));
    struct stat status;
    if (source.value() < 0 || ::fstat(source.value(), &status) != 0)
        throw Failure(kCantOpen, file, systemReason(errno));
    return bytesOf(file, source, status, kWholeFile);
}

} // namespace velloria::platform
