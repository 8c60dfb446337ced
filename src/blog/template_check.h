// What is wrong with a blog template, told before anybody posts by it.
#pragma once

#include "blog/template_findings.h"

namespace velloria::blog {

/// What a check must know beside the text.
struct TemplateSurroundings {
    QString fileName;      ///< without a folder; "" for a text that is no file yet
    QString programFolder; ///< with its separator: the conversions to text lie there
};

/// All findings: those of the file and its lines first, then those of the keys in the order of the manual. None for a
/// template that can be posted by. At most a hundred of them are of lines. Nothing is asked of any server.
std::vector<TemplateFinding> checkTemplate(const QByteArray& bytes, const TemplateSurroundings& surroundings);

/// Whether a post by the template would stop, ask each time, or do something else than the template says.
bool hasError(const std::vector<TemplateFinding>& findings);

} // namespace velloria::blog
