// The picture of the image tag maker's preview, whatever its size on disk.
#pragma once

#include "editor/image_tag.h"

#include <QImage>

namespace velloria::editor {

/// The white square with the picture at its origin, and the picture's own size; or the step that failed.
struct ImagePreview {
    std::optional<PreviewFailure> failure;
    QSize size;     ///< as it is stored: a camera's orientation mark turns nothing
    QImage picture; ///< of kPreviewSide, in device pixels
};

/// A picture that can't be shown is no failure but says so in the result; nothing is thrown. Any thread may call. Reads
/// no more of a picture into memory than its square needs, as far as its format allows; one that would need more
/// than any camera's picture does is refused. `pixelRatio` is the number of device pixels in a device-independent one.
ImagePreview drawPreview(const QString& path, double pixelRatio);

} // namespace velloria::editor
