// The head of a Markdown file, in any of its three languages, and the text behind it.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace velloria::exchange {

/// What stands behind a key.
struct FrontValue {
    enum class Kind { Text, List, Map, Other };
    Kind kind = Kind::Other;         ///< Other: nothing, or something deeper than any of the others
    QStringList texts = {};          ///< one of Text, any number of List
    QMap<QString, QString> map = {}; ///< of Map; a null text for nothing

    /// The text, or the first of the list.
    QString text() const { return texts.value(0); }
};

struct FrontMatter {
    QMap<QString, FrontValue>
        values; ///< by key in small letters; a number, true and false are text as they are written
    QString body;
    bool isThere = false; ///< a file may do without
    qsizetype halves = 0; ///< characters of which the head has one half; they read as U+FFFD

    /// Whether a site that is made of it leaves it out, in any of the words that one of the languages has for yes and
    /// no.
    bool isHidden() const;
};

/// `text` is a whole file with LF between lines. YAML stands between lines "---", or ends in "...", TOML between lines
/// "+++", JSON in braces. Throws platform::Failure, without a file, for a head that is none of its language.
FrontMatter readFrontMatter(const QString& text);

} // namespace velloria::exchange
