// What the memo program says, in the language of the menus.
#pragma once

#include "core/menu_language.h"

#include <QString>

namespace velloria::memo {

/// Picks one of two wordings. What the machine refuses reads in Japanese in both, as in the diary.
class Words {
public:
    explicit Words(core::MenuLanguage language)
        : m_isEnglish(language == core::MenuLanguage::English) {}

    bool isEnglish() const { return m_isEnglish; }
    QString operator()(const QString& japanese, const QString& english) const {
        return m_isEnglish ? english : japanese;
    }

private:
    bool m_isEnglish;
};

} // namespace velloria::memo
