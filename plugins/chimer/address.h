// The address of a ping server, which may hold a login that nobody else is to read.
#pragma once

#include <string>

namespace velloria::plugins {

class Address {
public:
    explicit Address(const std::string& typed);

    /// As it stands in the list.
    const std::string& typed() const { return m_typed; }
    /// Why it can't be asked, for the person; "" when it can.
    const std::string& problem() const { return m_problem; }
    /// The same text for all addresses that lead to the same place.
    const std::string& same() const { return m_same; }
    /// Without its login.
    const std::string& shown() const { return m_shown; }
    /// A text without the password, which a server may have sent back.
    std::string withoutPassword(std::string text) const;

private:
    std::string m_typed;
    std::string m_problem;
    std::string m_same;
    std::string m_shown;
    std::string m_typedPassword;
    std::string m_password;
};

} // namespace velloria::plugins
