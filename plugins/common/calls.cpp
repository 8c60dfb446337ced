#include "common/calls.h"

#include <cstddef>
#include <ctime>
#include <exception>
#include <new>

namespace velloria::plugins {
namespace {

std::string g_error; // all calls come from one thread

void keep(const char* reason) noexcept {
    try {
        g_error = reason;
    } catch (...) {
        g_error.clear();
    }
}

/// The reason of what is being handled.
void keepReason() noexcept {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        keep("メモリが足りません。");
    } catch (const std::exception& thrown) {
        keep(thrown.what());
    } catch (...) {
        keep("");
    }
}

int32_t one() {
    return 1;
}

int32_t zero() {
    return 0;
}

std::string today() {
    const std::time_t now = std::time(nullptr);
    char text[16] = "";
    if (const std::tm* local = std::localtime(&now))
        std::strftime(text, sizeof text, "%Y/%m/%d", local);
    return text;
}

} // namespace

const velloria_information kInformation = {sizeof kInformation, one, zero, zero};

int32_t answers(const std::function<bool()>& call) noexcept {
    try {
        g_error.clear();
        return call() ? 1 : 0;
    } catch (...) {
        keepReason();
        return -1;
    }
}

int32_t does(const std::function<void()>& call) noexcept {
    return answers([&] {
        call();
        return true;
    });
}

void* makes(const std::function<void*()>& create) noexcept {
    try {
        g_error.clear();
        return create();
    } catch (...) {
        keepReason();
        return nullptr;
    }
}

const char* lastError() {
    return g_error.c_str();
}

void Host::pump() const {
    if (knows(offsetof(velloria_host, message)) && m_table->pump)
        m_table->pump(m_table->context);
}

void Host::status(const std::string& text) const {
    if (knows(offsetof(velloria_host, begin_import)) && m_table->status)
        m_table->status(m_table->context, text.c_str());
}

void Host::warns(const std::string& text, const std::string& title) const {
    if (knows(offsetof(velloria_host, status)) && m_table->message)
        m_table->message(m_table->context, VELLORIA_MESSAGE_EXCLAMATION, title.c_str(), text.c_str(), 0);
}

bool Host::asks(const std::string& text, const std::string& title) const {
    return knows(offsetof(velloria_host, status)) && m_table->message &&
           m_table->message(m_table->context, VELLORIA_MESSAGE_PLAIN, title.c_str(), text.c_str(), 1) > 0;
}

const char* Host::beginImport(const velloria_import_plan& plan) {
    if (knows(sizeof(velloria_host)) && m_table->begin_import)
        return m_table->begin_import(m_table->context, &plan);
    const std::string question = std::to_string(plan.count) + "件の日記をインポートしますか？\n" + plan.notes;
    m_mark = today() + " " + plan.program;
    return asks(question, plan.program) ? m_mark.c_str() : nullptr;
}

} // namespace velloria::plugins
