#include "editor/image_preview.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

/// What one picture may take while it is read: 130 million pixels, more than cameras have. The usual limit is below
/// that.
constexpr int kMostMegabytes = 520;

/// The limit is one of the whole program.
class AllocationLimit {
public:
    AllocationLimit()
        : m_usual(QImageReader::allocationLimit()) {
        QImageReader::setAllocationLimit(kMostMegabytes);
    }
    ~AllocationLimit() { QImageReader::setAllocationLimit(m_usual); }
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;

private:
    int m_usual;
};

bool isTooLarge(const QSize& size) {
    constexpr qint64 kBytesPerPixel = 4;
    constexpr qint64 kMegabyte = 1 << 20;
    return qint64(size.width()) * size.height() * kBytesPerPixel > kMostMegabytes * kMegabyte;
}

/// A side in device pixels: of a picture as thin as a thread there is a thread to be seen.
int inDevice(int side, double pixelRatio) {
    return std::max(1, qRound(side * pixelRatio));
}

} // namespace

ImagePreview drawPreview(const QString& path, double pixelRatio) {
    const auto failed = [](PreviewFailure failure) { return ImagePreview{failure, {}, {}}; };
    const QFileInfo file(path);
    if (path.isEmpty() || !file.exists())
        return failed(PreviewFailure::Path);
    if (!file.isFile()) // a pipe would keep its reader waiting for ever
        return failed(PreviewFailure::Load);
    const AllocationLimit limit;
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(false);
    if (!reader.canRead())
        return failed(PreviewFailure::Load);

    QSize size = reader.size();
    QImage image;
    if (!size.isValid()) { // a format that tells its size with the picture alone
        image = reader.read();
        size = image.size();
        if (image.isNull())
            return failed(PreviewFailure::Load);
    }
    if (size.height() < 1)
        return failed(PreviewFailure::Height);
    if (size.width() < 1)
        return failed(PreviewFailure::Width);

    QImage square(QSize(1, 1) * inDevice(kPreviewSide, pixelRatio), QImage::Format_RGB32);
    if (square.isNull())
        return failed(PreviewFailure::Area);
    square.fill(Qt::white);
    const QSize drawn = previewNumbers(size).drawn;
    const QSize target(inDevice(drawn.width(), pixelRatio), inDevice(drawn.height(), pixelRatio));
    if (image.isNull()) {
        if (target.width() <= size.width() && target.height() <= size.height())
            reader.setScaledSize(target);
        image = reader.read();
    }
    if (image.isNull())
        return failed(isTooLarge(size) ? PreviewFailure::Draw : PreviewFailure::Load);
    QPainter painter(&square);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect(QPoint(0, 0), target), image);
    return {std::nullopt, size, square};
}

} // namespace velloria::editor
