// Pictures that the texts of an entry show and that lie beside it.
#pragma once

#include "exchange/formats/foreign_diary.h"

#include <functional>
#include <optional>

namespace velloria::exchange {

/// The file that an address in a text means, which lies in `root` or below it and is a picture by its name: `address`
/// is taken from `folder`. Nothing for any other, so that no diary brings a file from elsewhere on the disk.
std::optional<QString> pictureFile(const QString& root, const QString& folder, const QString& address);

/// Where a text of the program's own leads to "DiaryParts".
struct PartAddress {
    qsizetype begin; ///< in the text, without what a query adds
    qsizetype size;
    QString name; ///< of the file
};

std::vector<PartAddress> partAddresses(const QString& html);

/// Gives the files of "DiaryParts" below `root` that a text of the program's own leads to, pictures or not, to the
/// entry, as withPictures does.
QString withParts(const QString& html, const QString& root, ForeignEntry& entry, Losses& losses);

/// Which file an address means. Nothing when there is none.
using PictureOf = std::function<std::optional<QString>(const QString& address)>;

/// Gives the pictures of `html` to the entry: a placeholder takes the place of the address of each. Other pictures stay
/// as they are; those that should lie beside the entry and do not are counted under their names.
QString withPictures(const QString& html, const PictureOf& pictureOf, ForeignEntry& entry, Losses& losses);

} // namespace velloria::exchange
