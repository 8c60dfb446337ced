// What goes to a ping server and what comes back: calls and answers of XML-RPC.
#pragma once

#include <string>
#include <string_view>

namespace velloria::plugins {

/// The call weblogUpdates.ping. Both texts are UTF-8; characters that XML forbids are left out.
std::string pingCall(std::string_view name, std::string_view url);

/// How a server has taken the ping.
struct Answer {
    bool isDone = false;
    std::string message; ///< the server's words, or why its answer is none
    bool isXml = false;  ///< whether the words are the server's
};

/// Whatever a server may send is an answer.
Answer readAnswer(std::string_view body);

} // namespace velloria::plugins
