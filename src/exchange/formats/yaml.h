// YAML as diaries use it: one document as a tree of texts. What a text means, a number or a date, is for its reader.
#pragma once

#include <QByteArray>
#include <QString>

#include <utility>
#include <vector>

namespace velloria::exchange {

struct YamlNode {
    enum class Kind { Scalar, Sequence, Map };

    Kind kind = Kind::Scalar;
    QString text = {};                ///< of a scalar
    bool isPlain = false;             ///< a scalar without quotes: may be a null, a number, a date
    std::vector<YamlNode> items = {}; ///< of a sequence
    std::vector<std::pair<QString, YamlNode>> members = {}; ///< of a map, in the order of the file

    /// "", "~" or "null" without quotes: nothing was given.
    bool isNull() const;
    /// The first member of this name; null when there is none.
    const YamlNode* member(QStringView name) const;
};

/// The first document of a file in UTF-8; an empty map for a file without one. Aliases are copies. Throws
/// platform::Failure with the line for what is no YAML, nests deeper or, by its aliases, grows larger than any diary,
/// and for a map whose key is no scalar. `file` is how the message names it.
YamlNode parseYaml(QByteArrayView utf8, const QString& file);

} // namespace velloria::exchange
