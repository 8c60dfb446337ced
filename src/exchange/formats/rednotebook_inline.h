// The markup within a line of RedNotebook's texts.
#pragma once

#include <QString>

#include <functional>

namespace velloria::exchange {

/// What a text refers to beside itself, for whoever knows where it lies.
struct RedNotebookLinks {
    /// The value of SRC for the address of a picture.
    std::function<QString(const QString& address)> picture;
    /// The value of HREF for a day "yyyy-mm-dd"; "" for one that no link can lead to.
    std::function<QString(const QString& day)> day;
};

/// One line as HTML: bold, italic, underline, strike, code, raw and HTML pieces, links, addresses, pictures, days,
/// colours and a break at its end. Tags "#x" stay as they are typed, and so does every mark that marks nothing. Takes
/// time in proportion to the line, whatever it holds.
QString redNotebookInline(QStringView line, const RedNotebookLinks& links);

} // namespace velloria::exchange
