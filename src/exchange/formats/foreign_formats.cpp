#include "exchange/formats/dated_texts.h"
#include "exchange/formats/foreign_diary.h"

using namespace Qt::StringLiterals;

namespace velloria::exchange {

using Place = ForeignFormat::Place;

std::span<const ForeignFormat> foreignFormats() {
    static const std::vector<ForeignFormat> formats{
        {u"text"_s, u"テキスト"_s, Place::Either, u"テキスト|*.txt;*.text;*.md"_s, readDatedTexts},
    };
    return formats;
}

} // namespace velloria::exchange
