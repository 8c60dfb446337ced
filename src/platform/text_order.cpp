#include "platform/text_order.h"

#include "platform/failure.h"
#include "platform/text_fold.h"

#include <QVarLengthArray>

#include <unicode/ucol.h>

#include <algorithm>
#include <array>
#include <compare>
#include <string>
#include <string_view>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

bool isMark(QChar c) {
    return c == u'-' || c == u'\'';
}

using Text = QVarLengthArray<char16_t, 256>;

/// What the steps of the order compare of one text.
struct Parts {
    explicit Parts(QStringView text) {
        const QString folded = fold(text);
        letters.reserve(folded.size());
        for (qsizetype i = 0; i < folded.size(); ++i) {
            if (!isMark(folded[i]))
                letters.push_back(folded[i].unicode());
            else
                marks.emplace_back(i, folded[i].unicode());
        }
    }
    Text letters;                                      ///< the fold without hyphens and apostrophes
    std::vector<std::pair<qsizetype, char16_t>> marks; ///< these, each with its place in the fold
};

template <typename List>
int compareLists(const List& left, const List& right) {
    const auto order = std::lexicographical_compare_three_way(left.begin(), left.end(), right.begin(), right.end());
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

} // namespace

/// The collator, with its signs exchanged among themselves: each wanted place in the order of the ASCII signs belongs
/// to some sign, and a text in which the signs are replaced by the owners of their places sorts as wanted. A collator
/// made from rules would do the same, but takes several hundred times as long to make.
class TextOrder::Collation {
public:
    Collation() {
        UErrorCode status = U_ZERO_ERROR;
        m_collator.reset(ucol_open("ja", &status));
        if (U_SUCCESS(status))
            ucol_setAttribute(m_collator.get(), UCOL_STRENGTH, UCOL_SECONDARY, &status);
        if (U_FAILURE(status))
            throw Failure(u"日本語の並び順を用意できません。"_s, {}, QString::fromLatin1(u_errorName(status)));
        constexpr std::u16string_view wanted = u"!\"#$%&()*,./:;?@[]^_`{|}~\\+<=>";
        std::u16string owners(wanted);
        std::sort(owners.begin(), owners.end(), [this](char16_t a, char16_t b) { return order({&a, 1}, {&b, 1}) < 0; });
        for (std::size_t i = 0; i < m_owner.size(); ++i)
            m_owner[i] = char16_t(i);
        for (std::size_t i = 0; i < wanted.size(); ++i)
            m_owner[wanted[i]] = owners[i];
    }

    int compare(Text left, Text right) const {
        exchangeSigns(left);
        exchangeSigns(right);
        return order({left.constData(), std::size_t(left.size())}, {right.constData(), std::size_t(right.size())});
    }

private:
    int order(std::u16string_view left, std::u16string_view right) const {
        return ucol_strcoll(m_collator.get(), left.data(), int32_t(left.size()), right.data(), int32_t(right.size()));
    }

    void exchangeSigns(Text& text) const {
        for (char16_t& unit : text)
            unit = unit < m_owner.size() ? m_owner[unit] : unit;
    }

    struct Close {
        void operator()(UCollator* collator) const { ucol_close(collator); }
    };
    std::unique_ptr<UCollator, Close> m_collator;
    std::array<char16_t, 128> m_owner;
};

TextOrder::TextOrder() = default;
TextOrder::~TextOrder() = default;

int TextOrder::compare(QStringView left, QStringView right) const {
    if (equalText(left, right))
        return 0;
    const Parts l(left);
    const Parts r(right);
    if (!m_collation)
        m_collation = std::make_unique<Collation>();
    if (const int order = m_collation->compare(l.letters, r.letters))
        return order;
    if (const int order = compareLists(l.letters, r.letters))
        return order;
    return compareLists(l.marks, r.marks);
}

} // namespace velloria::platform
