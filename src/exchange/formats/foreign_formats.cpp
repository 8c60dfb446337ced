#include "exchange/formats/dated_texts.h"
#include "exchange/formats/dayone.h"
#include "exchange/formats/foreign_diary.h"
#include "exchange/formats/joplin.h"
#include "exchange/formats/jrnl.h"
#include "exchange/formats/markdown_diary.h"
#include "exchange/formats/rednotebook.h"
#include "exchange/formats/tdiary.h"

using namespace Qt::StringLiterals;

namespace velloria::exchange {

using Place = ForeignFormat::Place;

std::span<const ForeignFormat> foreignFormats() {
    static const std::vector<ForeignFormat> formats{
        {u"rednotebook"_s, u"RedNotebook"_s, Place::Folder, {}, readRedNotebook},
        {u"dayone"_s, u"Day One"_s, Place::Either, u"Day One JSON|*.json"_s, readDayOne},
        {u"joplin"_s, u"Joplin"_s, Place::Either, u"Joplin JEX|*.jex"_s, readJoplin},
        {u"tdiary"_s, u"tDiary"_s, Place::Either, u"tDiary|*.td2"_s, readTDiary},
        {u"markdown"_s, u"Markdown"_s, Place::Either, u"Markdown|*.md;*.markdown"_s, readMarkdownDiary, true},
        {u"jrnl"_s, u"jrnl"_s, Place::File, u"jrnl|*.txt;*.json|すべてのファイル|*"_s, readJrnl},
        {u"text"_s, u"テキスト"_s, Place::Either, u"テキスト|*.txt;*.text;*.md"_s, readDatedTexts},
    };
    return formats;
}

} // namespace velloria::exchange
