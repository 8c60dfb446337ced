#include "chimer/ping_run.h"

#include "common/calls.h"

#include <curl/curl.h>

#include <cstdlib>
#include <map>
#include <memory>

namespace velloria::plugins {
namespace {

constexpr int kLongestPollMs = 50;
constexpr long kMostRedirects = 5;
constexpr const char* kProtocols = "http,https";

using Headers = std::unique_ptr<curl_slist, void (*)(curl_slist*)>;

Error noMeans() {
    return Error("通信の準備ができません。メモリが足りないおそれがあります。");
}

/// One server that is being asked.
class Asked {
public:
    Asked(std::size_t place, const Server& server, const std::string& call, const curl_slist* headers,
          const PingLimits& limits)
        : m_place(place)
        , m_limits(limits)
        , m_easy(curl_easy_init(), curl_easy_cleanup) {
        if (!m_easy)
            throw noMeans();
        set(CURLOPT_URL, server.address.typed().c_str());
        set(CURLOPT_PROTOCOLS_STR, kProtocols);
        set(CURLOPT_REDIR_PROTOCOLS_STR, kProtocols);
        set(CURLOPT_FOLLOWLOCATION, 1L);
        set(CURLOPT_MAXREDIRS, kMostRedirects);
        set(CURLOPT_POSTREDIR, long{CURL_REDIR_POST_ALL}); // the call goes along to where it leads
        set(CURLOPT_CONNECTTIMEOUT_MS, long(limits.each.count()));
        set(CURLOPT_TIMEOUT_MS, long(limits.each.count()));
        // A resolver that still waits must not hold up the end of a server that has been given up.
        set(CURLOPT_QUICK_EXIT, 1L);
        set(CURLOPT_SSL_OPTIONS, long{CURLSSLOPT_NATIVE_CA});
        // Whom to trust is told as to other programs: the library leaves these variables alone.
        if (const char* file = std::getenv("SSL_CERT_FILE"))
            set(CURLOPT_CAINFO, file);
        if (const char* folder = std::getenv("SSL_CERT_DIR"))
            set(CURLOPT_CAPATH, folder);
        set(CURLOPT_USERAGENT, "Velloria Chimer/1.0.0");
        set(CURLOPT_HTTPHEADER, headers);
        set(CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(call.size()));
        set(CURLOPT_POSTFIELDS, call.c_str());
        set(CURLOPT_WRITEFUNCTION, &Asked::received);
        set(CURLOPT_WRITEDATA, this);
        set(CURLOPT_ERRORBUFFER, m_words);
    }
    Asked(const Asked&) = delete;
    Asked& operator=(const Asked&) = delete;

    CURL* easy() const { return m_easy.get(); }
    std::size_t place() const { return m_place; }

    Answer answer(CURLcode result) const {
        if (result != CURLE_OK)
            return {false, reason(result)};
        Answer answer = readAnswer(m_body);
        constexpr long kOk = 200;
        if (status() == kOk)
            return answer;
        const std::string number = "サーバーの返事は HTTP " + std::to_string(status()) + " です。";
        return {false, answer.isXml ? number + " " + answer.message : number};
    }

private:
    template <typename Value>
    void set(CURLoption option, Value value) {
        if (curl_easy_setopt(easy(), option, value) == CURLE_OUT_OF_MEMORY)
            throw noMeans();
    }

    static std::size_t received(const char* data, std::size_t, std::size_t size, void* asked) {
        auto& self = *static_cast<Asked*>(asked);
        if (self.m_body.size() + size > self.m_limits.largestAnswer) {
            self.m_isTooLarge = true;
            return 0;
        }
        try {
            self.m_body.append(data, size);
        } catch (...) { // nothing may fly through the library
            return 0;
        }
        return size;
    }

    /// 0 while no answer has begun.
    long status() const {
        long status = 0;
        curl_easy_getinfo(easy(), CURLINFO_RESPONSE_CODE, &status);
        return status;
    }

    std::string reason(CURLcode result) const {
        if (m_isTooLarge)
            return "返事が大きすぎます。";
        const std::string words = m_words[0] ? std::string(" (") + m_words + ")" : "";
        switch (result) {
        case CURLE_OPERATION_TIMEDOUT:
            return std::to_string(m_limits.each.count() / 1000) + "秒以内に返事が終わりません。";
        case CURLE_COULDNT_RESOLVE_HOST:
            return "サーバーの名前が見つかりません。" + words;
        case CURLE_COULDNT_CONNECT:
            return "サーバーに接続できません。" + words;
        case CURLE_SSL_CONNECT_ERROR:
            return "暗号化した通信を始められません。" + words;
        case CURLE_PEER_FAILED_VERIFICATION:
            return "サーバーの証明書を信頼できません。" + words;
        case CURLE_TOO_MANY_REDIRECTS:
            return "転送が多すぎます。";
        case CURLE_UNSUPPORTED_PROTOCOL: // also for an answer without a head
            if (status() == 0)
                return "返事がHTTPの形ではありません。" + words;
            return "「http://」と「https://」のほかへ転送されました。" + words;
        case CURLE_WEIRD_SERVER_REPLY:
            return "返事がHTTPの形ではありません。" + words;
        case CURLE_GOT_NOTHING:
        case CURLE_PARTIAL_FILE:
        case CURLE_RECV_ERROR:
            return "返事が途中で切れました。" + words;
        default:
            return std::string("通信に失敗しました。") + (words.empty() ? curl_easy_strerror(result) : words);
        }
    }

    std::size_t m_place;
    const PingLimits& m_limits;
    std::unique_ptr<CURL, void (*)(CURL*)> m_easy;
    std::string m_body;
    bool m_isTooLarge = false;
    char m_words[CURL_ERROR_SIZE] = "";
};

/// All that are asked at a time.
class Crowd {
public:
    Crowd()
        : m_multi(curl_multi_init(), curl_multi_cleanup) {
        if (!m_multi)
            throw noMeans();
    }
    ~Crowd() {
        for (const auto& [easy, asked] : m_asked)
            curl_multi_remove_handle(m_multi.get(), easy);
    }
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

    std::size_t size() const { return m_asked.size(); }

    void add(std::unique_ptr<Asked> asked) {
        CURL* easy = asked->easy();
        m_asked.emplace(easy, std::move(asked));
        if (curl_multi_add_handle(m_multi.get(), easy) != CURLM_OK)
            throw noMeans();
    }

    /// Goes on with all of them, and waits for a moment when nothing comes.
    void step() {
        int running = 0;
        if (curl_multi_perform(m_multi.get(), &running) != CURLM_OK)
            throw noMeans();
        if (running > 0)
            curl_multi_poll(m_multi.get(), nullptr, 0, kLongestPollMs, nullptr);
    }

    /// The next one that has ended, with its answer; null when there is none.
    std::unique_ptr<Asked> take(Answer& answer) {
        int left = 0;
        while (const CURLMsg* message = curl_multi_info_read(m_multi.get(), &left)) {
            if (message->msg != CURLMSG_DONE)
                continue;
            const CURLcode result = message->data.result;
            const auto found = m_asked.find(message->easy_handle);
            std::unique_ptr<Asked> asked = std::move(found->second);
            m_asked.erase(found);
            answer = asked->answer(result);
            curl_multi_remove_handle(m_multi.get(), asked->easy());
            return asked;
        }
        return nullptr;
    }

private:
    std::unique_ptr<CURLM, CURLMcode (*)(CURLM*)> m_multi;
    std::map<CURL*, std::unique_ptr<Asked>> m_asked;
};

bool hasLibrary() {
    static const bool isThere = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return isThere;
}

} // namespace

void sendPings(const std::vector<Server>& servers, const std::string& call, const PingCalls& calls,
               const PingLimits& limits) {
    if (!hasLibrary())
        throw noMeans();
    const Headers headers(curl_slist_append(nullptr, "Content-Type: text/xml"), curl_slist_free_all);
    Crowd crowd;
    std::size_t next = 0;
    while (next < servers.size() || crowd.size() > 0) {
        for (; next < servers.size() && crowd.size() < limits.atOnce; ++next) {
            const Server& server = servers[next];
            if (server.address.problem().empty())
                crowd.add(std::make_unique<Asked>(next, server, call, headers.get(), limits));
            else
                calls.answered(next, {false, server.address.problem()});
        }
        crowd.step();
        Answer answer;
        while (const std::unique_ptr<Asked> asked = crowd.take(answer))
            calls.answered(asked->place(), answer);
        calls.waiting();
    }
}

} // namespace velloria::plugins
