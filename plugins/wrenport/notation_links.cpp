#include "wrenport/notation_links.h"

#include "wrenport/text_marks.h"

#include <algorithm>
#include <vector>

namespace velloria::plugins::wrenport {
namespace {

constexpr std::string_view kSchemes[] = {"http://", "https://", "ftp://"};
constexpr std::string_view kOptions[] = {"title", "image", "detail", "barcode", "movie", "sound", "bookmark"};
constexpr std::size_t kStampDigits = 14; // of a picture: "20240309102030"
constexpr std::size_t kDateDigits = 8;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t schemeLength(std::string_view text) {
    for (const std::string_view scheme : kSchemes)
        if (text.starts_with(scheme))
            return scheme.size();
    return 0;
}

bool isOfAddress(char c) {
    return isLetterOrDigit(c) ||
           (c != '\0' && std::string_view("-_.!~*';/?:@&=+$,%#").find(c) != std::string_view::npos);
}

/// As an attribute holds it. An ampersand that begins a reference already stays.
std::string attribute(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '"')
            result += "&quot;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else if (c == '&' && !text.substr(at).starts_with("&amp;") && !text.substr(at).starts_with("&#"))
            result += "&amp;";
        else
            result += c;
    }
    return result;
}

std::string percentEncoded(std::string_view text) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (isLetterOrDigit(c) || c == '-' || c == '_' || c == '.')
            result += c;
        else
            result += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return result;
}

std::string link(std::string_view address, std::string_view words) {
    return "<a href=\"" + attribute(address) + "\">" + std::string(words) + "</a>";
}

std::vector<std::string_view> partsAtColons(std::string_view text) {
    std::vector<std::string_view> parts;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(':', at), text.size());
        parts.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

/// "w100" or "h100" as an attribute, "" for anything else.
std::string sizeOf(std::string_view option) {
    if (option.size() < 2 || option.size() > 6 || (option[0] != 'w' && option[0] != 'h') ||
        !std::ranges::all_of(option.substr(1), isDigit))
        return {};
    return std::string(option[0] == 'w' ? " width=\"" : " height=\"") + std::string(option.substr(1)) + "\"";
}

std::string sizesOf(const std::vector<std::string_view>& options) {
    std::string sizes;
    for (const std::string_view option : options)
        sizes += sizeOf(option);
    return sizes;
}

/// Where the options of an address begin, at a colon; its size when there are none.
std::size_t optionsAt(std::string_view text, std::size_t from) {
    for (std::size_t at = text.find(':', from); at != std::string_view::npos; at = text.find(':', at + 1)) {
        const std::string_view rest = text.substr(at + 1);
        for (const std::string_view option : kOptions) {
            if (!rest.starts_with(option))
                continue;
            const std::string_view behind = rest.substr(option.size());
            if (behind.empty() || behind.front() == ':' || (behind.front() == '=' && option == "title"))
                return at;
        }
    }
    return text.size();
}

std::optional<std::string> addressLink(std::string_view inside, std::size_t scheme) {
    const std::size_t end = std::min(inside.find_first_of(" \t\"<>[", scheme), inside.size());
    const std::size_t at = optionsAt(inside.substr(0, end), scheme);
    if (at == scheme || (at == end && end < inside.size()))
        return std::nullopt;
    const std::string_view address = inside.substr(0, at);
    const std::string_view options = inside.substr(std::min(at + 1, inside.size()));
    if (options.starts_with("title=")) {
        std::string_view words = options.substr(6);
        if (words.ends_with(":bookmark"))
            words.remove_suffix(9);
        return link(address, words.empty() ? address : words);
    }
    if (options.starts_with("image"))
        return link(address, "<img src=\"" + attribute(address) + "\" alt=\"" + attribute(address) +
                                 "\" class=\"hatena-http-image\"" + sizesOf(partsAtColons(options)) + ">");
    return link(address, address);
}

std::size_t nameLength(std::string_view text) {
    if (text.empty() || !isLetterOrDigit(text.front()) || isDigit(text.front()))
        return 0;
    std::size_t length = 1;
    while (length < text.size() && (isLetterOrDigit(text[length]) || text[length] == '_' || text[length] == '-'))
        ++length;
    return length;
}

std::size_t digitsAt(std::string_view text) {
    return std::min(text.find_first_not_of("0123456789"), text.size());
}

/// "f:id:NAME:20240309102030j:image:w200", a picture of the photo service.
std::optional<std::string> pictureLink(std::string_view inside) {
    const std::string name(inside.substr(5, nameLength(inside.substr(5))));
    const std::string_view behind = inside.substr(5 + name.size());
    if (name.empty() || (!behind.empty() && behind.front() != ':'))
        return std::nullopt;
    const std::vector<std::string_view> parts = partsAtColons(inside.substr(5));
    const std::string home = "http://f.hatena.ne.jp/" + name + "/";
    if (parts.size() < 2 || digitsAt(parts[1]) != kStampDigits || parts[1].size() > kStampDigits + 1)
        return link(home, inside);
    const std::string stamp(parts[1].substr(0, kStampDigits));
    const char kind = parts[1].size() > kStampDigits ? parts[1].back() : 'j';
    const std::vector<std::string_view> options(parts.begin() + 2, parts.end());
    const auto has = [&](std::string_view option) { return std::ranges::find(options, option) != options.end(); };
    if (!has("image"))
        return link(home + stamp, inside);
    const std::string file = "http://f.hatena.ne.jp/images/fotolife/" + name.substr(0, 1) + "/" + name + "/" +
                             stamp.substr(0, kDateDigits) + "/" + stamp + (has("small") ? "_m" : "") +
                             (kind == 'p'   ? ".png"
                              : kind == 'g' ? ".gif"
                                            : ".jpg");
    const std::string text = "[" + attribute(inside) + "]";
    const std::string side = has("left") ? " align=\"left\"" : has("right") ? " align=\"right\"" : "";
    const std::string image =
        "<img src=\"" + file + "\" alt=\"" + text + "\" title=\"" + text + "\"" + sizesOf(options) + side + ">";
    return has("plain") ? image : link(home + stamp, image);
}

/// "id:NAME" and what may stand around it: "d:id:NAME:20240309", "g:group:id:NAME".
std::optional<BareLink> personLink(std::string_view text) {
    std::size_t at = 0;
    std::string home = "http://d.hatena.ne.jp/";
    if (text.size() > 2 && text[1] == ':' && std::string_view("abdfg").find(text[0]) != std::string_view::npos) {
        at = 2;
        home[7] = text[0];
        if (text[0] == 'g') {
            const std::size_t group = nameLength(text.substr(at));
            if (group == 0)
                return std::nullopt;
            home = "http://" + std::string(text.substr(at, group)) + ".g.hatena.ne.jp/";
            at += group;
            if (!text.substr(at).starts_with(":id:"))
                return BareLink{link(home, text.substr(0, at)), at};
            ++at;
        }
    }
    if (!text.substr(at).starts_with("id:"))
        return std::nullopt;
    at += 3;
    const std::size_t name = nameLength(text.substr(at));
    if (name == 0)
        return std::nullopt;
    std::string address = home + std::string(text.substr(at, name)) + "/";
    at += name;
    if (text.substr(at).starts_with(':')) {
        const std::size_t digits = digitsAt(text.substr(at + 1));
        if (digits == kDateDigits || digits == 6) {
            address += text.substr(at + 1, digits);
            at += 1 + digits;
        }
    }
    return BareLink{link(address, text.substr(0, at)), at};
}

/// "isbn:4873112281" or "asin:B00005N7P0".
struct Book {
    std::string address;
    std::size_t length = 0; ///< of what names it
};

std::optional<Book> bookOf(std::string_view text) {
    const bool isBook = text.starts_with("isbn:") || text.starts_with("ISBN:");
    if (!isBook && !text.starts_with("asin:") && !text.starts_with("ASIN:"))
        return std::nullopt;
    std::string number;
    std::size_t at = 5;
    for (; at < text.size() && (isLetterOrDigit(text[at]) || (isBook && text[at] == '-')); ++at)
        if (text[at] != '-')
            number += text[at];
    if (number.size() < 9 || number.size() > 13)
        return std::nullopt;
    return Book{"http://www.amazon.co.jp/dp/" + number, at};
}

/// Whether what stands behind a link in its brackets says no more than how the service showed it.
bool isShape(std::string_view behind) {
    return behind.empty() || behind.front() == ':';
}

std::string twitterLink(std::string_view inside) {
    const std::string_view rest = inside.substr(8);
    if (rest.starts_with('@'))
        return link("https://twitter.com/" + percentEncoded(rest.substr(1)), rest);
    const std::size_t digits = digitsAt(rest);
    return digits ? link("https://twitter.com/i/web/status/" + std::string(rest.substr(0, digits)), inside)
                  : std::string(inside);
}

} // namespace

std::string keywordLink(std::string_view word) {
    return "<a class=\"keyword\" href=\"http://d.hatena.ne.jp/keyword/" + percentEncoded(word) + "\">" +
           std::string(word) + "</a>";
}

std::optional<std::string> bracketLink(std::string_view inside) {
    if (const std::size_t scheme = schemeLength(inside))
        return addressLink(inside, scheme);
    if (inside.starts_with("f:id:"))
        return pictureLink(inside);
    if (inside.starts_with("keyword:"))
        return keywordLink(inside.substr(8));
    if (inside.starts_with("google:"))
        return link("http://www.google.com/search?q=" + percentEncoded(inside.substr(7)) + "&ie=utf-8&oe=utf-8",
                    inside);
    if (inside.starts_with("amazon:"))
        return link("http://www.amazon.co.jp/s?k=" + percentEncoded(inside.substr(7)), inside);
    if (inside.starts_with("mailto:"))
        return link(inside, inside.substr(7));
    if (inside.starts_with("tex:"))
        return "<span class=\"tex\">" + escaped(inside.substr(4)) + "</span>";
    if (inside.starts_with("twitter:"))
        return twitterLink(inside);
    if (const auto book = bookOf(inside)) {
        const std::string_view behind = inside.substr(book->length);
        if (behind.starts_with(":title="))
            return link(book->address, behind.substr(7));
        if (isShape(behind))
            return link(book->address, inside.substr(0, book->length));
    }
    if (const auto person = personLink(inside); person && isShape(inside.substr(person->length)))
        return person->html;
    return std::nullopt;
}

std::optional<BareLink> bareLink(std::string_view text) {
    if (const std::size_t scheme = schemeLength(text)) {
        std::size_t length = scheme;
        while (length < text.size() && isOfAddress(text[length]))
            ++length;
        if (length == scheme)
            return std::nullopt;
        return BareLink{link(text.substr(0, length), text.substr(0, length)), length};
    }
    if (const auto book = bookOf(text))
        return BareLink{link(book->address, text.substr(0, book->length)), book->length};
    if (text.starts_with("id:") || text.substr(1).starts_with(":id:") || text.starts_with("g:"))
        return personLink(text);
    return std::nullopt;
}

} // namespace velloria::plugins::wrenport
