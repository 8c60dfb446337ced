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

/// The narrow or wide form under which Unicode knows the same character, else `unit` itself.
char16_t otherWidth(char16_t unit) {
    if (unit == 0xFF9E || unit == 0xFF9F) // Unicode has the combining marks here, which nobody types
        return char16_t(unit - 0xFF9E + 0x309B);
    const QChar::Decomposition tag = QChar(unit).decompositionTag();
    return tag == QChar::Wide || tag == QChar::Narrow ? QChar(unit).decomposition().front().unicode() : unit;
}

/// Four katakana with a sound mark have no hiragana and stay.
char16_t hiragana(char16_t unit) {
    const bool hasHiragana = (unit >= 0x30A1 && unit <= 0x30F6) || unit == 0x30FD || unit == 0x30FE;
    return hasHiragana ? char16_t(unit - 0x60) : unit;
}

/// Written to the code page as another character, as which it comes back.
char16_t comesBackAs(char16_t unit) {
    switch (unit) {
    case 0x2016:
        return 0x2225;
    case 0x2212:
        return u'-';
    case 0x301C:
        return u'~';
    default:
        return unit;
    }
}

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

FoldTable::FoldTable() {
    for (unsigned unit = 0; unit < m_fold.size(); ++unit) {
        const char16_t folded = comesBackAs(hiragana(otherWidth(char16_t(unit))));
        m_fold[unit] = QChar::isSurrogate(unit) ? char16_t(unit) : QChar(folded).toLower().unicode();
    }
}

const FoldTable& FoldTable::instance() {
    static const FoldTable table;
    return table;
}

char16_t FoldTable::composed(char16_t kana, char16_t mark) {
    const bool isHaRow = kana >= 0xFF8A && kana <= 0xFF8E;
    const bool isKaToRow = kana >= 0xFF76 && kana <= 0xFF84;
    if (mark == 0xFF9F)
        return isHaRow ? char16_t(0x306F + (kana - 0xFF8A) * 3 + 2) : char16_t(0);
    if (mark != 0xFF9E)
        return 0;
    if (isHaRow || isKaToRow) // the voiced kana stands behind its plain one
        return char16_t(instance()[kana] + 1);
    switch (kana) {
    case 0xFF73:
        return 0x3094;
    case 0xFF9C:
        return 0x30F7;
    case 0xFF66:
        return 0x30FA;
    default:
        return 0;
    }
}

QString fold(QStringView text) {
    const FoldTable& table = FoldTable::instance();
    QString folded(text.size(), Qt::Uninitialized);
    QChar* out = folded.data();
    const char16_t* const end = text.utf16() + text.size();
    for (const char16_t* unit = text.utf16(); unit != end; ++unit) {
        char16_t both = 0;
        if (FoldTable::takesMark(*unit) && unit + 1 != end)
            both = FoldTable::composed(*unit, unit[1]);
        *out++ = QChar(both ? both : table[*unit]);
        unit += both ? 1 : 0;
    }
    folded.truncate(out - folded.constData());
    return folded;
}

bool equalText(QStringView left, QStringView right) {
    FoldReader l{Utf16Characters(left)};
    FoldReader r{Utf16Characters(right)};
    while (!l.atEnd() && !r.atEnd()) {
        if (l.next() != r.next())
            return false;
    }
    return l.atEnd() && r.atEnd();
}

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
