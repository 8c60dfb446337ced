// The image tag maker without its window: the tag, the name of the picture on the site, and what the preview says.
// Plain functions of their arguments, but for automaticImageName, which reads the register.
#pragma once

#include "registers/file_register.h"

#include <QSize>
#include <QString>

#include <optional>

namespace velloria::editor {

/// A width or height: "%" is written behind its value, "px" is not.
struct ImageLength {
    QString value;
    QString unit;
};

/// What the tag is made of. An attribute that is not there is not written; each value stands as typed.
struct ImageAttributes {
    QString source;
    std::optional<ImageLength> width = {};
    std::optional<ImageLength> height = {};
    std::optional<QString> align = {};
    std::optional<QString> border = {};
    std::optional<QString> hspace = {};
    std::optional<QString> vspace = {};
    std::optional<QString> alt = {};
    std::optional<QString> other = {};    ///< attributes as they stand, quotes and all
    std::optional<QString> division = {}; ///< attributes of a division around the tag
};

/// `<IMG SRC="..." width="50%" ...>`, its attributes always in the order of the struct.
QString imageTag(const ImageAttributes& attributes);

/// The next name for a picture of `day` ("yyyy/mm/dd"): "dimage20040105_01.jpg". It rises with what the register holds,
/// so two pictures in a row share one until the first is registered. The last name by text order counts, so after
/// "_99" it rises no more. Throws platform::Failure.
QString automaticImageName(const registers::FileRegister& files, const QString& day, const QString& extension);

/// A side of the square preview, in device-independent pixels.
inline constexpr int kPreviewSide = 167;

/// What the preview shows of a picture of this size, which is not empty.
struct PreviewNumbers {
    QSize drawn;       ///< the picture in the square: its longer side fills it, also when the picture is smaller
    QString scaleText; ///< "プレビュー[33%]"
    QString sizeText;  ///< "Size : 500 x 100"
};
PreviewNumbers previewNumbers(const QSize& size);

/// The step of a preview that went wrong.
enum class PreviewFailure { Path, Load, Height, Width, Area, Draw };

struct PreviewBox {
    QString text;
    QString title;
};
PreviewBox previewBox(PreviewFailure failure);

} // namespace velloria::editor
