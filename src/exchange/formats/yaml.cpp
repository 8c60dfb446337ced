#include "exchange/formats/yaml.h"

#include "exchange/formats/source_files.h"
#include "platform/failure.h"
#include "platform/utf8.h"

#include <QHash>

#include <new>
#include <yaml.h>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

constexpr int kDeepest = 64;
constexpr qsizetype kMostNodes = 500'000;

[[noreturn]] void refuse(const QString& file, std::size_t line, const QString& reason) {
    throw platform::Failure(u"日記を読み込めません。"_s, file, u"%1行目: %2"_s.arg(line + 1).arg(reason),
                            u"何もインポートしていません。ファイルを直してから、もう一度実行してください。"_s);
}

struct Event {
    Event() = default;
    ~Event() { yaml_event_delete(&event); }
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    yaml_event_t event{};
};

/// Builds the tree from one event after the other: what is too deep or too large ends it at once.
class Reader {
public:
    Reader(QByteArrayView utf8, const QString& file)
        : m_file(file) {
        if (!yaml_parser_initialize(&m_parser))
            throw std::bad_alloc();
        yaml_parser_set_input_string(&m_parser, reinterpret_cast<const unsigned char*>(utf8.data()),
                                     std::size_t(utf8.size()));
        yaml_parser_set_encoding(&m_parser, YAML_UTF8_ENCODING);
    }
    ~Reader() { yaml_parser_delete(&m_parser); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    YamlNode document() {
        for (;;) {
            Event event;
            next(event);
            if (event.event.type == YAML_STREAM_END_EVENT)
                return {.kind = YamlNode::Kind::Map};
            if (event.event.type == YAML_DOCUMENT_START_EVENT)
                break;
        }
        Event first;
        next(first);
        YamlNode root = node(first.event, 1);
        Event end;
        next(end); // what stands behind the tree is a fault of it
        return root;
    }

private:
    struct Size {
        qsizetype nodes = 0;
        qint64 bytes = 0;
    };
    struct Anchored {
        YamlNode node;
        Size size;
    };

    void next(Event& event) {
        if (yaml_parser_parse(&m_parser, &event.event))
            return;
        if (m_parser.error == YAML_READER_ERROR)
            refuse(m_file, m_parser.mark.line, u"UTF-8の文字ではありません"_s);
        refuse(m_file, m_parser.problem_mark.line,
               u"YAMLとして読めません (%1)"_s.arg(QLatin1StringView(m_parser.problem)));
    }

    YamlNode node(const yaml_event_t& event, int depth) {
        const std::size_t line = event.start_mark.line;
        if (depth > kDeepest)
            refuse(m_file, line, u"入れ子が深すぎます"_s);
        if (event.type == YAML_ALIAS_EVENT)
            return alias(event);
        const Size before = m_size;
        grow({1, 0}, line);
        YamlNode node;
        QByteArray anchor;
        if (event.type == YAML_SCALAR_EVENT) {
            const auto& scalar = event.data.scalar;
            anchor = nameOf(scalar.anchor);
            grow({0, qint64(scalar.length)}, line);
            node.text = platform::fromUtf8(
                QByteArrayView(reinterpret_cast<const char*>(scalar.value), qsizetype(scalar.length)));
            node.isPlain = scalar.style == YAML_PLAIN_SCALAR_STYLE;
        } else if (event.type == YAML_SEQUENCE_START_EVENT) {
            anchor = nameOf(event.data.sequence_start.anchor);
            node.kind = YamlNode::Kind::Sequence;
            for (Event item; isMore(item, YAML_SEQUENCE_END_EVENT); renew(item))
                node.items.push_back(this->node(item.event, depth + 1));
        } else {
            anchor = nameOf(event.data.mapping_start.anchor);
            node.kind = YamlNode::Kind::Map;
            for (Event key; isMore(key, YAML_MAPPING_END_EVENT); renew(key)) {
                const YamlNode name = this->node(key.event, depth + 1);
                if (name.kind != YamlNode::Kind::Scalar)
                    refuse(m_file, key.event.start_mark.line, u"項目の名前が文字列ではありません"_s);
                Event value;
                next(value);
                node.members.emplace_back(name.text, this->node(value.event, depth + 1));
            }
        }
        if (!anchor.isEmpty())
            m_anchors.insert(anchor, {node, {m_size.nodes - before.nodes, m_size.bytes - before.bytes}});
        return node;
    }

    YamlNode alias(const yaml_event_t& event) {
        const auto anchored = m_anchors.constFind(nameOf(event.data.alias.anchor));
        if (anchored == m_anchors.cend())
            refuse(m_file, event.start_mark.line, u"YAMLとして読めません (参照先がありません)"_s);
        grow(anchored->size, event.start_mark.line);
        return anchored->node;
    }

    bool isMore(Event& event, yaml_event_type_t end) {
        next(event);
        return event.event.type != end;
    }

    static void renew(Event& event) {
        yaml_event_delete(&event.event);
        event.event = {};
    }

    void grow(const Size& size, std::size_t line) {
        m_size.nodes += size.nodes;
        m_size.bytes += size.bytes;
        if (m_size.nodes > kMostNodes || m_size.bytes > kLargestSource)
            refuse(m_file, line, u"展開すると大きすぎます"_s);
    }

    static QByteArray nameOf(const yaml_char_t* anchor) { return {reinterpret_cast<const char*>(anchor)}; }

    QString m_file;
    yaml_parser_t m_parser{};
    Size m_size;
    QHash<QByteArray, Anchored> m_anchors;
};

} // namespace

bool YamlNode::isNull() const {
    return kind == Kind::Scalar && isPlain &&
           (text.isEmpty() || text == u"~"_s || text.compare(u"null"_s, Qt::CaseInsensitive) == 0);
}

const YamlNode* YamlNode::member(QStringView name) const {
    for (const auto& [key, value] : members) {
        if (key == name)
            return &value;
    }
    return nullptr;
}

YamlNode parseYaml(QByteArrayView utf8, const QString& file) {
    return Reader(platform::withoutSignature(utf8), file).document();
}

} // namespace velloria::exchange
