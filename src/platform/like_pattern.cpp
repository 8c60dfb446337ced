#include "platform/like_pattern.h"

#include "platform/failure.h"
#include "platform/text_fold.h"

#include <QVarLengthArray>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

constexpr char32_t kAnyRun = QChar::LastValidCodePoint + 1;
constexpr char32_t kAnyOne = kAnyRun + 1;
constexpr char32_t kFirstList = kAnyOne + 1;

bool isCharacter(char32_t step) {
    return step <= QChar::LastValidCodePoint;
}

/// Whether `character` is read exactly where the bytes of a character stand that folds to it.
bool canStartSearch(char32_t character) {
    const bool isSoundMark = character == 0x309B || character == 0x309C; // may join with half-width kana before it
    return !isSoundMark && character != QChar::ReplacementCharacter;
}

/// The place `count` characters in front of `at`; nothing when the text has not as many there.
const char* charactersBefore(const char* at, const char* begin, std::size_t count) {
    for (; count > 0; --count) {
        do {
            if (at == begin)
                return nullptr;
            --at;
        } while ((*at & 0xC0) == 0x80);
    }
    return at;
}

} // namespace

LikePattern::LikePattern(QStringView pattern) {
    FoldReader reader{Utf16Characters(pattern)};
    while (!reader.atEnd()) {
        // The sign is taken as typed: a full-width one folds to the same character and is none.
        const char16_t sign = reader.rest().front().unicode();
        if (sign == u'[') {
            const qsizetype length = addList(reader.rest());
            reader = FoldReader(Utf16Characters(reader.rest().sliced(length)));
            continue;
        }
        const char32_t character = reader.next();
        if (sign == u'_')
            m_steps.push_back(kAnyOne);
        else if (sign != u'%')
            m_steps.push_back(character);
        else if (m_steps.empty() || m_steps.back() != kAnyRun)
            m_steps.push_back(kAnyRun);
    }
    chooseWord();
    findStarts();
}

/// Adds the list at the front of `pattern` and returns its length with both brackets.
qsizetype LikePattern::addList(QStringView pattern) {
    const qsizetype end = pattern.indexOf(u']');
    if (end < 0)
        throw Failure(u"検索の条件が正しくありません。"_s, {}, u"「[」に対応する「]」がありません。"_s,
                      u"「[」という文字を探すときは「[[]」と入力してください。"_s);
    const QStringView body = pattern.first(end).sliced(1);
    if (body.isEmpty())
        return end + 1;
    List list;
    list.isNegated = body.size() > 1 && body.front() == u'!';
    FoldReader reader{Utf16Characters(body.sliced(list.isNegated ? 1 : 0))};
    while (!reader.atEnd()) {
        const char32_t first = reader.next();
        char32_t last = first;
        if (reader.rest().size() > 1 && reader.rest().front() == u'-') {
            reader.next();
            last = reader.next();
        }
        list.ranges.emplace_back(first, last);
    }
    m_steps.push_back(kFirstList + char32_t(m_lists.size()));
    m_lists.push_back(std::move(list));
    return end + 1;
}

/// The longest run of characters. A text without it is refused before anything else is looked at.
void LikePattern::chooseWord() {
    std::u32string word;
    for (const char32_t step : m_steps) {
        if (isCharacter(step))
            word += step;
        else
            word.clear();
        if (word.size() > m_word.size())
            m_word = word;
    }
    m_isWord = m_steps.size() == m_word.size() + 2 && m_steps.front() == kAnyRun && m_steps.back() == kAnyRun;
}

/// Which character of the word is searched for: the first one, or in a word that begins in ASCII the one of that
/// beginning which texts with tags hold most rarely. Only ASCII is one character in every spelling.
std::size_t LikePattern::chooseAnchor() const {
    const QByteArrayView rarestFirst = "zqjxkvyf9u7g86w5b4l3mdc2o10nphisaret";
    std::size_t best = 0;
    qsizetype bestRank = rarestFirst.size();
    for (std::size_t i = 0; i < m_word.size() && m_word[i] < 0x80; ++i) {
        const qsizetype rank = rarestFirst.indexOf(char(m_word[i]));
        if (rank >= 0 && rank < bestRank) {
            best = i;
            bestRank = rank;
        }
    }
    return best;
}

/// All characters that fold to the one that is searched for, or do so with a mark behind them. Not for a pattern that
/// tells how the text begins: the texts of such are day keys, shorter than what this costs.
void LikePattern::findStarts() {
    if (m_word.empty() || m_steps.front() != kAnyRun || !canStartSearch(m_word.front()))
        return;
    m_anchor = chooseAnchor();
    const char32_t sought = m_word[m_anchor];
    if (sought > 0xFFFF)
        return addStart(sought);
    const FoldTable& table = FoldTable::instance();
    for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
        const auto kana = char16_t(unit);
        const bool takesMark = FoldTable::takesMark(unit) && (FoldTable::composed(kana, 0xFF9E) == sought ||
                                                              FoldTable::composed(kana, 0xFF9F) == sought);
        if (takesMark || table[kana] == sought)
            addStart(unit);
    }
}

void LikePattern::addStart(char32_t character) {
    const QByteArray bytes = QStringView(QChar::fromUcs4(character)).toUtf8();
    const qsizetype lastAt = bytes.size() - 1;
    // The first bytes of kana and kanji are few and in all texts; that of full and half-width forms is rare.
    if (bytes.front() == '\xEF')
        m_starts.push_back({bytes.front(), bytes.back(), 0, lastAt});
    else
        m_starts.push_back({bytes.back(), bytes.front(), lastAt, 0});
}

bool LikePattern::matches(QStringView text) const {
    return matchesFold(FoldReader(Utf16Characters(text)), text.size());
}

bool LikePattern::matchesUtf8(QByteArrayView utf8) const {
    if (!m_starts.empty()) {
        if (!holdsWord(utf8))
            return false;
        if (m_isWord)
            return true;
    }
    return matchesFold(FoldReader(Utf8Characters(utf8)), utf8.size());
}

bool LikePattern::holdsWord(QByteArrayView utf8) const {
    const char* const end = utf8.data() + utf8.size();
    for (const Start& start : m_starts) {
        for (const char* at = utf8.data() + std::min(start.soughtAt, utf8.size()); at != end; ++at) {
            at = static_cast<const char*>(std::memchr(at, start.sought, std::size_t(end - at)));
            if (!at)
                break;
            const char* const found = at - start.soughtAt;
            if (start.otherAt >= end - found || found[start.otherAt] != start.other)
                continue;
            const char* const begin = charactersBefore(found, utf8.data(), m_anchor);
            if (begin && wordStartsAt(QByteArrayView(begin, end)))
                return true;
        }
    }
    return false;
}

bool LikePattern::wordStartsAt(QByteArrayView utf8) const {
    FoldReader reader{Utf8Characters(utf8)}; // where no character starts, U+FFFD is read
    return std::all_of(m_word.begin(), m_word.end(),
                       [&](char32_t character) { return !reader.atEnd() && reader.next() == character; });
}

/// Only the last "%" is ever widened: an earlier one can't do better than with the shortest run that fitted, so the
/// time is at most the text's length times the pattern's.
template <typename Reader>
bool LikePattern::matchesFold(Reader reader, qsizetype longest) const {
    QVarLengthArray<char32_t, 2048> text(longest);
    char32_t* out = text.data();
    while (!reader.atEnd())
        *out++ = reader.next();
    const char32_t* const end = out;
    const char32_t* at = text.constData();
    const char32_t* runEnd = end;
    auto step = m_steps.begin();
    auto behindRun = m_steps.end();
    while (at != end) {
        if (step != m_steps.end() && *step == kAnyRun) {
            behindRun = ++step;
            runEnd = at;
            if (step == m_steps.end())
                return true;
        } else if (step != m_steps.end() && isOneOf(*step, *at)) {
            ++step;
            ++at;
        } else if (runEnd != end) {
            at = ++runEnd;
            step = behindRun;
        } else {
            return false;
        }
    }
    return step == m_steps.end() || (*step == kAnyRun && step + 1 == m_steps.end());
}

/// Whether a character of the text is one that the step of the pattern, which is no "%", stands for.
bool LikePattern::isOneOf(char32_t step, char32_t character) const {
    if (step < kFirstList)
        return step == character || step == kAnyOne;
    const List& list = m_lists[step - kFirstList];
    const bool isListed = std::any_of(list.ranges.begin(), list.ranges.end(), [character](const auto& range) {
        return range.first <= character && character <= range.second;
    });
    return isListed != list.isNegated;
}

} // namespace velloria::platform
