#include "wrenport/hatena_xml.h"

#include "common/calls.h"
#include "wrenport/text_marks.h"
#include "wrenport/xml_cleaner.h"

#include <expat.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <memory>

namespace velloria::plugins::wrenport {
namespace {

constexpr XML_Index kLongestTag = 4 << 20; // a tag is held as a whole, all else is not
constexpr std::size_t kDeepest = 64;
constexpr std::string_view kWithoutEnd[] = {"br",   "hr",  "img",   "input", "wbr",
                                            "area", "col", "embed", "param", "source"};

class Reader {
public:
    explicit Reader(const std::function<void(HatenaDay&&)>& take)
        : m_parser(XML_ParserCreate("UTF-8"), XML_ParserFree) // whatever the file declares, it has been decoded
        , m_take(take) {
        if (!m_parser)
            throw std::bad_alloc();
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(m_parser.get(), opened, closed);
        XML_SetCharacterDataHandler(m_parser.get(), said);
        XML_SetStartDoctypeDeclHandler(m_parser.get(), declared);
    }

    XmlReading read(std::string_view utf8) {
        XmlReading reading;
        const std::size_t begin = utf8.find_first_not_of(" \t\r\n");
        if (begin == std::string_view::npos)
            throw Error("ファイルに何も書かれていません。");
        reading.removed = cleanXml(utf8.substr(begin), [&](std::string_view piece) {
            m_fed += XML_Index(piece.size());
            return isFine(XML_Parse(m_parser.get(), piece.data(), int(piece.size()), XML_FALSE));
        });
        if (!isFine(XML_Parse(m_parser.get(), "", 0, XML_TRUE)))
            settleCut(reading);
        reading.leftOut = m_leftOut;
        reading.stray = m_stray;
        return reading;
    }

private:
    /// The elements that mean something.
    enum class Place {
        Nowhere,
        Diary,
        Day,
        Body,
        Kept,
        Field,
        Comments,
        Comment,
        CommentName,
        CommentText,
        CommentTime
    };

    bool isFine(XML_Status status) {
        if (m_thrown)
            std::rethrow_exception(m_thrown);
        if (status == XML_STATUS_OK) {
            if (m_fed - XML_GetCurrentByteIndex(m_parser.get()) > kLongestTag)
                throw Error(line() + "タグが大きすぎます。");
            return true;
        }
        switch (XML_GetErrorCode(m_parser.get())) {
        case XML_ERROR_NO_ELEMENTS:
        case XML_ERROR_UNCLOSED_TOKEN:
        case XML_ERROR_PARTIAL_CHAR:
        case XML_ERROR_UNCLOSED_CDATA_SECTION:
            if (m_hasRoot)
                return false;
            break;
        case XML_ERROR_NO_MEMORY:
            throw std::bad_alloc();
        default:
            break;
        }
        throw Error(line() + "XMLとして読めません。\n" + XML_ErrorString(XML_GetErrorCode(m_parser.get())));
    }

    /// The file ends within an element: what has come of a day is taken as well.
    void settleCut(XmlReading& reading) {
        reading.isCut = true;
        if (m_isInDay && !m_day.date.empty()) {
            reading.cutDay = m_day.date;
            handOver();
        }
    }

    std::string line() const { return std::to_string(XML_GetCurrentLineNumber(m_parser.get())) + "行目: "; }

    template <typename Work>
    static void guarded(void* self, const Work& work) noexcept {
        Reader& reader = *static_cast<Reader*>(self);
        if (reader.m_thrown)
            return;
        try {
            work(reader);
        } catch (...) {
            reader.m_thrown = std::current_exception();
            XML_StopParser(reader.m_parser.get(), XML_FALSE);
        }
    }

    static void XMLCALL opened(void* self, const XML_Char* name, const XML_Char** attributes) {
        guarded(self, [&](Reader& reader) { reader.open(name, attributes); });
    }
    static void XMLCALL closed(void* self, const XML_Char* name) {
        guarded(self, [&](Reader& reader) { reader.close(name); });
    }
    static void XMLCALL said(void* self, const XML_Char* text, int size) {
        guarded(self, [&](Reader& reader) { reader.take(std::string_view(text, std::size_t(size))); });
    }
    static void XMLCALL declared(void* self, const XML_Char*, const XML_Char*, const XML_Char*, int) {
        guarded(self, [](Reader& reader) {
            throw Error(reader.line() + "DOCTYPE宣言のあるファイルは、安全のため読み込みません。"
                                        "宣言を消してから、もう一度実行してください。");
        });
    }

    void take(std::string_view text) {
        if (std::string* known = target()) {
            *known += text;
        } else if (!m_isStray && !m_places.empty() && m_places.back() != Place::Nowhere &&
                   text.find_first_not_of(" \t\n") != text.npos) {
            m_isStray = true; // up to the next tag
            ++m_stray;
        }
    }

    void open(std::string_view name, const XML_Char** attributes) {
        m_isStray = false;
        if (m_places.size() >= kDeepest)
            throw Error(line() + "要素の入れ子が深すぎます。");
        const Place outer = m_places.empty() ? Place::Nowhere : m_places.back();
        Place place = Place::Nowhere;
        if (m_places.empty()) {
            m_hasRoot = true;
            if (name != "diary")
                throw Error("はてなダイアリーの日記ではありません (最初の要素は「" + std::string(name.substr(0, 40)) +
                            "」です)。");
            place = Place::Diary;
        } else if (outer == Place::Diary && name == "day") {
            place = Place::Day;
            beginDay(attributes);
        } else if (outer == Place::Day && name == "body") {
            place = Place::Body;
        } else if (outer == Place::Day && name == "velloria-entry") {
            place = Place::Kept;
            beginKept(attributes);
        } else if (outer == Place::Kept && name == "velloria-field") {
            place = Place::Field;
            m_field = &m_day.kept.back().fields[valueOf(attributes, "name")];
        } else if (outer == Place::Day && name == "comments") {
            place = Place::Comments;
        } else if (outer == Place::Comments && name == "comment") {
            place = Place::Comment;
            m_day.comments.emplace_back();
        } else if (outer == Place::Comment) {
            place = name == "username"    ? Place::CommentName
                    : name == "body"      ? Place::CommentText
                    : name == "timestamp" ? Place::CommentTime
                                          : Place::Nowhere;
        } else if (outer == Place::Body || outer == Place::CommentText) {
            place = outer; // a tag that somebody forgot to escape
            repeatTag(name, attributes);
        }
        if (place == Place::Nowhere && outer != Place::Nowhere)
            ++m_leftOut;
        m_places.push_back(place);
    }

    void close(std::string_view name) {
        const Place place = m_places.back();
        m_places.pop_back();
        m_isStray = false;
        if (place == Place::Day)
            handOver();
        else if ((place == Place::Body || place == Place::CommentText) && m_places.back() == place)
            closeTag(name);
    }

    void beginDay(const XML_Char** attributes) {
        m_day = {};
        m_isInDay = true;
        m_day.date = valueOf(attributes, "date");
        m_day.title = valueOf(attributes, "title");
    }

    void beginKept(const XML_Char** attributes) {
        KeptEntry& kept = m_day.kept.emplace_back();
        kept.check = valueOf(attributes, "check");
        kept.isPrivate = valueOf(attributes, "private") == "1";
        const std::string missing = valueOf(attributes, "missing");
        for (std::size_t at = 0; at < missing.size();) {
            const std::size_t end = std::min(missing.find(' ', at), missing.size());
            kept.missing.insert(missing.substr(at, end - at));
            at = end + 1;
        }
    }

    void repeatTag(std::string_view name, const XML_Char** attributes) {
        std::string& text = *target();
        text += "<" + std::string(name);
        for (; *attributes; attributes += 2)
            text += std::string(" ") + attributes[0] + "=\"" + escaped(attributes[1]) + "\"";
        text += ">";
    }

    void closeTag(std::string_view name) {
        if (std::ranges::find(kWithoutEnd, name) == std::end(kWithoutEnd))
            *target() += "</" + std::string(name) + ">";
    }

    static std::string valueOf(const XML_Char** attributes, std::string_view name) {
        for (; *attributes; attributes += 2)
            if (*attributes == name)
                return attributes[1];
        return {};
    }

    /// Where text goes at the moment.
    std::string* target() {
        switch (m_places.empty() ? Place::Nowhere : m_places.back()) {
        case Place::Body:
            return &m_day.body;
        case Place::Field:
            return m_field;
        case Place::CommentName:
            return &m_day.comments.back().name;
        case Place::CommentText:
            return &m_day.comments.back().text;
        case Place::CommentTime:
            return &m_day.comments.back().seconds;
        default:
            return nullptr;
        }
    }

    void handOver() {
        m_isInDay = false;
        std::string& body = m_day.body; // one line break was added at each end
        if (body.starts_with('\n'))
            body.erase(0, 1);
        if (body.ends_with('\n'))
            body.pop_back();
        m_take(std::move(m_day));
        m_day = {};
    }

    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_parser;
    const std::function<void(HatenaDay&&)>& m_take;
    std::exception_ptr m_thrown; ///< nothing may fly through the parser
    std::vector<Place> m_places;
    HatenaDay m_day;
    std::string* m_field = nullptr;
    XML_Index m_fed = 0;
    int64_t m_leftOut = 0;
    int64_t m_stray = 0;
    bool m_isStray = false; ///< text outside all known elements has come since the last tag
    bool m_hasRoot = false;
    bool m_isInDay = false;
};

} // namespace

XmlReading readHatenaXml(std::string_view utf8, const std::function<void(HatenaDay&&)>& take) {
    return Reader(take).read(utf8);
}

} // namespace velloria::plugins::wrenport
