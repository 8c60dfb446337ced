#include "exchange/formats/front_matter.h"

#include "exchange/formats/yaml.h"
#include "platform/failure.h"
#include "platform/utf8.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <toml++/toml.h>

#include <sstream>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

using Kind = FrontValue::Kind;

[[noreturn]] void refuse(const QString& reason) {
    throw platform::Failure(u"ファイルの先頭の項目を読み取れません。"_s, {}, reason);
}

/// The lists and maps of all three languages; `read` tells of one value whether it is a text, and gives it.
template <typename List, typename Read>
FrontValue listOf(const List& list, Read read) {
    FrontValue value{.kind = Kind::List};
    for (const auto& item : list) {
        const std::optional<QString> text = read(item);
        if (!text)
            return {};
        if (!text->isNull())
            value.texts += *text;
    }
    return value;
}

/// One of the makers of sites takes keys in any case.
void add(const QString& key, const FrontValue& value, FrontMatter& matter) {
    const QString name = key.toLower();
    if (key == name || !matter.values.contains(name))
        matter.values.insert(name, value);
}

/// Null for nothing.
std::optional<QString> yamlText(const YamlNode& node) {
    if (node.isNull())
        return QString();
    if (node.kind != YamlNode::Kind::Scalar)
        return std::nullopt;
    return node.text;
}

FrontValue yamlValue(const YamlNode& node) {
    if (node.isNull())
        return {};
    if (node.kind == YamlNode::Kind::Scalar)
        return {.kind = Kind::Text, .texts = {node.text}};
    if (node.kind == YamlNode::Kind::Sequence)
        return listOf(node.items, yamlText);
    FrontValue value;
    for (const auto& [key, member] : node.members) {
        const std::optional<QString> text = yamlText(member);
        if (!text)
            return {};
        value.map.insert(key, *text);
    }
    value.kind = Kind::Map;
    return value;
}

YamlNode parsedYaml(const QString& block) {
    try {
        return parseYaml(block.toUtf8(), {});
    } catch (const platform::Failure& failure) {
        refuse(failure.reason());
    }
}

/// False when the block is no map: then it is no head, but a text between two rules.
bool readYaml(const QString& block, FrontMatter& matter) {
    const YamlNode root = parsedYaml(block);
    if (root.isNull())
        return true;
    if (root.kind != YamlNode::Kind::Map)
        return false;
    for (const auto& [key, member] : root.members)
        add(key, yamlValue(member), matter);
    return true;
}

std::optional<QString> tomlText(const toml::node& node) {
    if (const auto* text = node.as_string())
        return platform::fromUtf8(text->get());
    if (node.is_array() || node.is_table())
        return std::nullopt;
    std::ostringstream text;
    node.visit([&](const auto& value) {
        if constexpr (toml::is_boolean<decltype(value)>)
            text << (value.get() ? "true" : "false");
        else if constexpr (toml::is_value<decltype(value)>)
            text << value.get();
    });
    return QString::fromStdString(text.str());
}

/// The library looks at the depth of values only, and each part of a dotted key is a table in a table.
bool hasAbsurdKey(const QString& block) {
    static const QRegularExpression key(
        uR"re((?<![\w-])(?:(?:[\w-]++|"[^"\n]*+"|'[^'\n]*+')[ \t]*+\.[ \t]*+){64})re"_s);
    return key.match(block).hasMatch();
}

void readToml(const QString& block, FrontMatter& matter) {
    if (hasAbsurdKey(block))
        refuse(u"TOMLの項目の名前が深すぎます"_s);
    try {
        const toml::table root = toml::parse(block.toStdString());
        for (const auto& [key, node] : root) {
            FrontValue value;
            if (const std::optional<QString> text = tomlText(node)) {
                value = {.kind = Kind::Text, .texts = {*text}};
            } else if (const toml::array* list = node.as_array()) {
                value = listOf(*list, tomlText);
            }
            add(platform::fromUtf8(std::string_view(key.str())), value, matter);
        }
    } catch (const toml::parse_error& error) {
        refuse(u"TOMLではありません (%1)"_s.arg(QString::fromUtf8(error.what())));
    }
}

std::optional<QString> jsonText(const QJsonValue& value) {
    if (value.isArray() || value.isObject())
        return std::nullopt;
    return value.isNull() ? QString() : value.toVariant().toString();
}

void readJson(const QString& block, FrontMatter& matter) {
    QJsonParseError error;
    const QJsonObject root = platform::parseJson(block.toUtf8(), &error, &matter.halves).object();
    if (error.error != QJsonParseError::NoError)
        refuse(u"JSONではありません (%1)"_s.arg(error.errorString()));
    for (auto member = root.begin(); member != root.end(); ++member) {
        FrontValue value;
        if (member.value().isArray())
            value = listOf(member.value().toArray(), jsonText);
        else if (const std::optional<QString> text = jsonText(member.value()); text && !text->isNull())
            value = {.kind = Kind::Text, .texts = {*text}};
        add(member.key(), value, matter);
    }
}

/// Behind the closing brace, -1 when there is none.
qsizetype endOfJson(QStringView text) {
    int depth = 0;
    bool isText = false;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar character = text[at];
        if (isText) {
            if (character == u'\\')
                ++at;
            else if (character == u'"')
                isText = false;
        } else if (character == u'"') {
            isText = true;
        } else if (character == u'{') {
            ++depth;
        } else if (character == u'}' && --depth == 0) {
            return at + 1;
        }
    }
    return -1;
}

struct Block {
    QString head;
    qsizetype end; ///< of its last line
};

/// Whether a document of YAML ends in the line, and the head with it: the head's own end may follow.
bool endsYaml(QStringView line, QStringView rest) {
    return line.startsWith(u"...") && line.trimmed() == u"..." && !rest.startsWith(u"---");
}

/// The lines between the first, which is `fence`, and the next one that is.
std::optional<Block> fenced(const QString& text, QStringView fence) {
    const qsizetype first = text.indexOf(u'\n');
    if (first < 0 || QStringView(text).first(first).trimmed() != fence || !text.startsWith(fence))
        return std::nullopt;
    for (qsizetype begin = first + 1; begin < text.size();) {
        qsizetype end = text.indexOf(u'\n', begin);
        if (end < 0)
            end = text.size();
        const QStringView line = QStringView(text).sliced(begin, end - begin);
        const bool isEnd = fence == u"---" && endsYaml(line, QStringView(text).sliced(std::min(end + 1, text.size())));
        if (isEnd || (line.startsWith(fence) && line.trimmed() == fence))
            return Block{text.sliced(first + 1, begin - first - 1), std::min(end + 1, text.size())};
        begin = end + 1;
    }
    return std::nullopt;
}

} // namespace

bool FrontMatter::isHidden() const {
    static const QStringList yes{u"true"_s, u"yes"_s, u"on"_s, u"y"_s, u"1"_s};
    static const QStringList no{u"false"_s, u"no"_s, u"off"_s, u"n"_s, u"0"_s};
    return yes.contains(values.value(u"draft"_s).text().toLower()) ||
           no.contains(values.value(u"published"_s).text().toLower());
}

FrontMatter readFrontMatter(const QString& text) {
    FrontMatter matter;
    matter.body = text;
    const auto takeHead = [&](qsizetype end) {
        matter.isThere = true;
        matter.body = text.sliced(end);
    };
    if (const std::optional<Block> yaml = fenced(text, u"---")) {
        if (readYaml(yaml->head, matter))
            takeHead(yaml->end);
    } else if (const std::optional<Block> toml = fenced(text, u"+++")) {
        readToml(toml->head, matter);
        takeHead(toml->end);
    } else if (text.startsWith(u'{') && !text.startsWith(u"{{") && !text.startsWith(u"{%")) {
        const qsizetype end = endOfJson(text);
        if (end > 0) {
            readJson(text.first(end), matter);
            takeHead(end);
            if (matter.body.startsWith(u'\n'))
                matter.body.remove(0, 1);
        }
    }
    return matter;
}

} // namespace velloria::exchange
