#include "chimer/address.h"

#include <curl/curl.h>

#include <algorithm>
#include <memory>

namespace velloria::plugins {
namespace {

constexpr const char* kHidden = "***";

/// What the transfer library takes an address for.
class Parts {
public:
    explicit Parts(const std::string& address)
        : m_parts(curl_url(), curl_url_cleanup) {
        m_isGood = m_parts &&
                   curl_url_set(m_parts.get(), CURLUPART_URL, address.c_str(), CURLU_NON_SUPPORT_SCHEME) == CURLUE_OK;
    }

    bool isGood() const { return m_isGood; }
    std::string text(CURLUPart part, unsigned flags = 0) const {
        char* found = nullptr;
        if (!m_isGood || curl_url_get(m_parts.get(), part, &found, flags) != CURLUE_OK)
            return {};
        const std::unique_ptr<char, void (*)(void*)> owner(found, curl_free);
        return found;
    }
    void set(CURLUPart part, const char* text) { curl_url_set(m_parts.get(), part, text, 0); }

private:
    std::unique_ptr<CURLU, void (*)(CURLU*)> m_parts;
    bool m_isGood = false;
};

/// Of an address that nobody understands: what may be a login goes.
std::string withoutLogin(const std::string& address) {
    const std::size_t at = address.rfind('@');
    if (at == std::string::npos)
        return address;
    const std::size_t slashes = address.find("://");
    const std::size_t begin = slashes == std::string::npos || slashes > at ? 0 : slashes + 3;
    return address.substr(0, begin) + kHidden + address.substr(at);
}

void hide(std::string& text, const std::string& secret) {
    if (secret.empty())
        return;
    const std::string hidden(kHidden);
    for (std::size_t at = 0; (at = text.find(secret, at)) != std::string::npos; at += hidden.size())
        text.replace(at, secret.size(), hidden);
}

std::string lower(std::string text) {
    std::ranges::transform(text, text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
    });
    return text;
}

} // namespace

Address::Address(const std::string& typed)
    : m_typed(typed)
    , m_same(typed)
    , m_shown(typed) {
    Parts parts(typed);
    const std::string scheme = parts.text(CURLUPART_SCHEME);
    if (!parts.isGood() || (scheme != "http" && scheme != "https")) {
        m_shown = withoutLogin(typed);
        m_problem = "アドレスが正しくありません。「http://」か「https://」で始まるものを書いてください。";
        return;
    }
    m_typedPassword = parts.text(CURLUPART_PASSWORD);
    m_password = parts.text(CURLUPART_PASSWORD, CURLU_URLDECODE);
    parts.set(CURLUPART_HOST, lower(parts.text(CURLUPART_HOST)).c_str());
    parts.set(CURLUPART_FRAGMENT, nullptr);
    m_same = parts.text(CURLUPART_URL, CURLU_NO_DEFAULT_PORT);
    if (!m_typedPassword.empty() || !parts.text(CURLUPART_USER).empty()) {
        parts.set(CURLUPART_USER, nullptr);
        parts.set(CURLUPART_PASSWORD, nullptr);
        m_shown = parts.text(CURLUPART_URL);
    }
}

std::string Address::withoutPassword(std::string text) const {
    hide(text, m_password);
    if (m_typedPassword != m_password)
        hide(text, m_typedPassword);
    return text;
}

} // namespace velloria::plugins
