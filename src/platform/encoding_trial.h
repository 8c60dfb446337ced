// Text files of unknown encoding: which of the usual Japanese ones they are in is found by trying.
#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace velloria::platform {

struct TriedText {
    QString text;     ///< without a signature in front
    QString encoding; ///< "UTF-8", "UTF-16", "EUC-JP" or "CP932"
};

/// The text in the first encoding that every byte of it fits: UTF-16 by its signature alone, UTF-8, EUC-JP, code page
/// 932. Nothing for what fits none, or holds a byte of 0, which no text does. Throws Failure on a system that lacks an
/// encoding.
std::optional<TriedText> textByTrial(QByteArrayView bytes);

} // namespace velloria::platform
