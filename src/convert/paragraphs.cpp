#include "convert/paragraphs.h"

#include "core/keys.h"
#include "core/long_text.h"
#include "core/settings.h"

using namespace Qt::StringLiterals;

namespace velloria::convert {

QString paragraphOpening(const core::Session& session) {
    const QString attributes = core::Settings(session).text(core::keys::kPTagAdd);
    return attributes.isEmpty() ? u"<P>"_s : u"<P "_s + attributes + u'>';
}

QString addParagraphTags(const QString& text, const QString& opening) {
    QString tagged = core::replaced(text, u"\r\n\r\n"_s, u"</P>"_s + opening);
    tagged = core::replaced(tagged, u"\r\n"_s, u"<BR>\r\n"_s);
    tagged = core::replaced(tagged, u"</P>"_s + opening, u"</P>\r\n"_s + opening);
    return opening + tagged + u"</P>"_s;
}

} // namespace velloria::convert
