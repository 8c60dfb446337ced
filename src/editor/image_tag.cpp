#include "editor/image_tag.h"

#include "core/numbers.h"
#include "core/path_names.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

using core::NumberForm;

/// The number behind the last "_" of a name; nothing when there is no number.
std::optional<double> numberOf(const QString& name) {
    const QString base = core::GetBaseName(name);
    const qsizetype at = base.lastIndexOf(u'_');
    return at < 0 ? std::nullopt : core::numericValue(base.sliced(at + 1));
}

} // namespace

QString imageTag(const ImageAttributes& attributes) {
    QStringList pieces;
    const auto add = [&](const QString& name, const std::optional<QString>& value) {
        if (value)
            pieces += name + u"=\""_s + *value + u'"';
    };
    const auto addLength = [&](const QString& name, const std::optional<ImageLength>& length) {
        if (length)
            add(name, length->value + (length->unit == u"%"_s ? u"%"_s : QString()));
    };
    add(u"SRC"_s, attributes.source);
    addLength(u"width"_s, attributes.width);
    addLength(u"height"_s, attributes.height);
    add(u"align"_s, attributes.align);
    add(u"border"_s, attributes.border);
    add(u"hspace"_s, attributes.hspace);
    add(u"vspace"_s, attributes.vspace);
    add(u"alt"_s, attributes.alt);
    if (attributes.other)
        pieces += *attributes.other;
    const QString tag = u"<IMG "_s + pieces.join(u' ') + u'>';
    return attributes.division ? u"<div "_s + *attributes.division + u'>' + tag + u"</div>"_s : tag;
}

QString automaticImageName(const registers::FileRegister& files, const QString& day, const QString& extension) {
    double last = 0;
    // A name that somebody else has made up may end in anything: the next one below it then counts.
    for (const QString& name : files.ImageFilesOfDay(day)) {
        if (const std::optional<double> number = numberOf(name)) {
            last = *number;
            break;
        }
    }
    const QString digits = core::formatNumber(last + 1, NumberForm::TwoDigits);
    return u"dimage"_s + QString(day).remove(u'/') + u'_' + digits + u'.' + extension;
}

PreviewNumbers previewNumbers(const QSize& size) {
    const double width = size.width();
    const double height = size.height();
    const bool isWide = width > height;
    const QSize drawn = isWide ? QSize(kPreviewSide, core::cint(height * kPreviewSide / width))
                               : QSize(core::cint(width * kPreviewSide / height), kPreviewSide);
    const double percent = kPreviewSide / std::max(width, height) * 100;
    return {drawn, u"プレビュー["_s + core::formatNumber(percent, NumberForm::Whole) + u"%]"_s,
            u"Size : %1 x %2"_s.arg(size.width()).arg(size.height())};
}

PreviewBox previewBox(PreviewFailure failure) {
    // The two captions stand side by side as they always have.
    const QString usual = u"Velloria for GDI+"_s;
    const QString ofSizes = u"Velloria by GDI+"_s;
    switch (failure) {
    case PreviewFailure::Path:
        return {u"イメージファイルのパスが不正です。"_s, usual};
    case PreviewFailure::Load:
        return {u"イメージの取得に失敗しました"_s, usual};
    case PreviewFailure::Height:
        return {u"イメージの高さの取得に失敗しました"_s, ofSizes};
    case PreviewFailure::Width:
        return {u"イメージの幅の取得に失敗しました"_s, ofSizes};
    case PreviewFailure::Area:
        return {u"表示領域の初期化に失敗しました"_s, usual};
    case PreviewFailure::Draw:
        break;
    }
    return {u"イメージの描画に失敗しました"_s, usual};
}

} // namespace velloria::editor
