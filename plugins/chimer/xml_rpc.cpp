#include "chimer/xml_rpc.h"

#include "common/encoding.h"

#include <expat.h>

#include <algorithm>
#include <map>
#include <memory>
#include <new>
#include <optional>

namespace velloria::plugins {
namespace {

constexpr std::size_t kLongestPath = 300; ///< of the names of elements within one another
constexpr std::string_view kBlanks = " \t\r\n";

using Members = std::map<std::string, std::string>;

std::string escaped(std::string_view text) {
    std::string xml;
    std::size_t replaced = 0;
    for (const char letter : validUtf8(text, replaced)) {
        switch (letter) {
        case '&':
            xml += "&amp;";
            break;
        case '<':
            xml += "&lt;";
            break;
        case '>':
            xml += "&gt;";
            break;
        case '\r':
            xml += "&#13;";
            break;
        default:
            if (static_cast<unsigned char>(letter) >= ' ' || letter == '\t' || letter == '\n')
                xml += letter;
        }
    }
    for (const char* forbidden : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
        for (std::size_t at = 0; (at = xml.find(forbidden, at)) != std::string::npos;)
            xml.erase(at, 3);
    }
    return xml;
}

std::string lower(std::string_view text) {
    std::string lowered(text);
    std::ranges::transform(lowered, lowered.begin(), [](unsigned char letter) {
        return letter < 0x80 ? char(std::tolower(letter)) : char(letter);
    });
    return lowered;
}

/// The first structure of an answer: of its value, or of its fault.
class AnswerReader {
public:
    /// Whether the text is one answer from its begin to its end.
    bool read(std::string_view xml) {
        const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate("UTF-8"), XML_ParserFree);
        if (!parser)
            throw std::bad_alloc();
        m_parser = parser.get();
        XML_SetUserData(m_parser, this);
        XML_SetElementHandler(m_parser, begin, end);
        XML_SetCharacterDataHandler(m_parser, characters);
        // Where there is no document type there are no entities: nothing is fetched and nothing grows.
        XML_SetStartDoctypeDeclHandler(m_parser, refuse);
        return XML_Parse(m_parser, xml.data(), int(xml.size()), XML_TRUE) == XML_STATUS_OK && m_isAnswer;
    }

    bool isFault() const { return m_isFault; }
    /// By name in small letters; nothing when it is missing.
    std::optional<std::string> member(const char* name) const {
        const auto found = m_members.find(name);
        return found == m_members.end() ? std::nullopt : std::optional(found->second);
    }

private:
    static AnswerReader& of(void* reader) { return *static_cast<AnswerReader*>(reader); }

    static void refuse(void* reader, const char*, const char*, const char*, int) {
        XML_StopParser(of(reader).m_parser, XML_FALSE);
    }

    /// Nothing may fly through the parser, which is written in C.
    template <typename Work>
    static void guarded(void* reader, const Work& work) {
        try {
            work(of(reader));
        } catch (...) {
            XML_StopParser(of(reader).m_parser, XML_FALSE);
        }
    }

    static void begin(void* reader, const char* name, const char**) {
        guarded(reader, [&](AnswerReader& self) {
            self.m_path += std::string("/") + name;
            if (self.m_path.size() > kLongestPath)
                XML_StopParser(self.m_parser, XML_FALSE);
            self.begun();
        });
    }

    static void characters(void* reader, const char* text, int length) {
        guarded(reader, [&](AnswerReader& self) {
            if (self.m_taken)
                self.m_taken->append(text, std::size_t(length));
        });
    }

    static void end(void* reader, const char*) {
        guarded(reader, [](AnswerReader& self) {
            const std::string place = self.inMember();
            if (place == "member")
                self.m_members.emplace(lower(self.m_name), self.m_value);
            self.m_taken = nullptr;
            self.m_path.erase(self.m_path.rfind('/'));
        });
    }

    /// Where in a member of the structure we are, from "member" on; "" elsewhere.
    std::string inMember() const {
        for (const std::string_view structure :
             {"/methodResponse/params/param/value/struct/", "/methodResponse/fault/value/struct/"}) {
            if (m_path.starts_with(structure))
                return m_path.substr(structure.size());
        }
        return {};
    }

    void begun() {
        m_isAnswer = m_isAnswer || m_path == "/methodResponse";
        m_isFault = m_isFault || m_path == "/methodResponse/fault";
        m_taken = nullptr;
        const std::string place = inMember();
        if (place == "member") {
            m_name.clear();
            m_value.clear();
        } else if (place == "member/name") {
            m_taken = &m_name;
        } else if (place == "member/value" || isType(place)) {
            m_value.clear(); // the blanks ahead of a type are no text
            m_taken = &m_value;
        }
    }

    /// Within a value there may be one element that tells its type. What lies deeper belongs to other members.
    static bool isType(std::string_view place) {
        constexpr std::string_view kValue = "member/value/";
        return place.starts_with(kValue) && place.substr(kValue.size()).find('/') == std::string_view::npos;
    }

    XML_Parser m_parser = nullptr;
    std::string m_path;
    bool m_isAnswer = false;
    bool m_isFault = false;
    std::string m_name;
    std::string m_value;
    std::string* m_taken = nullptr; ///< where characters go
    Members m_members;
};

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Whether an error is told; nothing when the value tells neither.
std::optional<bool> isError(const std::string& value) {
    const std::string word = lower(trimmed(value));
    if (word == "true" || word == "false")
        return word == "true";
    const bool isNumber = !word.empty() && word.find_first_not_of("+-0123456789") == std::string::npos;
    return isNumber ? std::optional(word.find_first_of("123456789") != std::string::npos) : std::nullopt;
}

Answer faultOf(const AnswerReader& reader) {
    const std::string words = reader.member("faultstring").value_or("");
    const std::optional<std::string> code = reader.member("faultcode");
    return {false, (words.empty() ? "理由は知らされていません。" : words) + (code ? " (" + *code + ")" : ""), true};
}

} // namespace

std::string pingCall(std::string_view name, std::string_view url) {
    const auto parameter = [](std::string_view text) {
        return "<param><value><string>" + escaped(text) + "</string></value></param>\n";
    };
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<methodCall>\n<methodName>weblogUpdates.ping</methodName>\n"
           "<params>\n" +
           parameter(name) + parameter(url) + "</params></methodCall>";
}

Answer readAnswer(std::string_view body) {
    // By trial: what a server calls its encoding is often not what it sends.
    const std::string text = decoded(body).utf8;
    const std::string_view xml = trimmed(text);
    if (xml.empty())
        return {false, "返事が空です。"};
    AnswerReader reader;
    if (!reader.read(xml))
        return {false, "返事がXML-RPCの形ではありません。"};
    if (reader.isFault())
        return faultOf(reader);
    const std::optional<std::string> flag = reader.member("flerror");
    const std::optional<bool> error = flag ? isError(*flag) : std::nullopt;
    if (!error)
        return {false, "返事に、受け付けたかどうかがありません。"};
    return {!*error, reader.member("message").value_or(""), true};
}

} // namespace velloria::plugins
