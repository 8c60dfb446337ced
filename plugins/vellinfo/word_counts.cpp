#include "vellinfo/word_counts.h"

#include <algorithm>
#include <utility>

namespace velloria::plugins::vellinfo {
namespace {

constexpr std::size_t kFirstSlots = 1024;

/// FNV-1a.
std::uint32_t hashOf(WordKind kind, std::string_view word) {
    std::uint32_t hash = 2166136261U ^ static_cast<std::uint32_t>(kind);
    for (const char byte : word)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
    return hash;
}

bool isApostrophe(char32_t character) {
    return character == U'\'' || character == U'\u2019';
}

} // namespace

WordCounts::WordCounts(std::size_t room)
    : m_room(room)
    , m_slots(kFirstSlots) {}

/// That of the word, or the free one that it may take.
WordCounts::Slot& WordCounts::slotOf(WordKind kind, std::string_view word, std::uint32_t hash) {
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
        Slot& slot = m_slots[at];
        if (slot.count == 0 || (slot.hash == hash && slot.kind == kind && textOf(slot) == word))
            return slot;
    }
}

void WordCounts::add(WordKind kind, std::string_view word) {
    const std::uint32_t hash = hashOf(kind, word);
    Slot& slot = slotOf(kind, word, hash);
    if (slot.count++ > 0)
        return;
    slot = {1, hash, static_cast<std::uint32_t>(m_texts.size()), static_cast<std::uint16_t>(word.size()), kind};
    m_texts += word;
    if (++m_taken > m_room)
        forgetRareOnes();
    else if (m_taken > m_slots.size() / 2)
        grow();
}

void WordCounts::takeFrom(const std::vector<Slot>& slots, const std::string& texts, std::uint64_t least) {
    m_taken = 0;
    for (const Slot& old : slots) {
        if (old.count < least)
            continue;
        const std::string_view word(texts.data() + old.begin, old.size);
        Slot& slot = slotOf(old.kind, word, old.hash);
        slot = old;
        slot.begin = static_cast<std::uint32_t>(m_texts.size());
        m_texts += word;
        ++m_taken;
    }
}

void WordCounts::grow() {
    const std::vector<Slot> slots = std::exchange(m_slots, std::vector<Slot>(m_slots.size() * 2));
    const std::string texts = std::exchange(m_texts, {});
    takeFrom(slots, texts, 1);
}

/// At least half of them, so that this happens seldom. A word that comes back begins anew: its count is too low by
/// what it had, over all times that it was forgotten.
void WordCounts::forgetRareOnes() {
    std::vector<std::uint64_t> counts;
    for (const Slot& slot : m_slots) {
        if (slot.count > 0)
            counts.push_back(slot.count);
    }
    const auto middle = counts.begin() + static_cast<std::ptrdiff_t>(counts.size() / 2);
    std::nth_element(counts.begin(), middle, counts.end());
    m_loss += *middle;
    const std::vector<Slot> slots = std::exchange(m_slots, std::vector<Slot>(m_slots.size()));
    const std::string texts = std::exchange(m_texts, {});
    takeFrom(slots, texts, *middle + 1);
}

std::vector<Word> WordCounts::top(WordKind kind, std::size_t count,
                                  const std::vector<std::string_view>& leftOut) const {
    std::vector<const Slot*> found;
    for (const Slot& slot : m_slots) {
        if (slot.count > 0 && slot.kind == kind &&
            std::find(leftOut.begin(), leftOut.end(), textOf(slot)) == leftOut.end())
            found.push_back(&slot);
    }
    const auto isAhead = [this](const Slot* left, const Slot* right) {
        return left->count != right->count ? left->count > right->count : textOf(*left) < textOf(*right);
    };
    const auto end = found.begin() + static_cast<std::ptrdiff_t>(std::min(count, found.size()));
    std::partial_sort(found.begin(), end, found.end(), isAhead);
    std::vector<Word> words;
    for (auto at = found.begin(); at != end; ++at)
        words.push_back({std::string(textOf(**at)), (*at)->count});
    return words;
}

// ---- cutting

void WordCutter::add(char32_t character, Kind kind) {
    switch (kind) {
    case Kind::Kanji:
        begin(WordKind::Kanji);
        return put(character);
    case Kind::Katakana:
        begin(WordKind::Katakana);
        return put(character);
    case Kind::Latin:
        begin(WordKind::Latin);
        return put(foldedLatin(character));
    case Kind::LongMark:
        return m_length > 0 && m_kind == WordKind::Katakana ? put(character) : end();
    case Kind::InLatin:
        return m_length > 0 && m_kind == WordKind::Latin ? put(foldedLatin(character)) : end();
    case Kind::Joined:
        return;
    case Kind::Space:
    case Kind::Other:
        break;
    }
    end();
}

void WordCutter::begin(WordKind kind) {
    if (m_length > 0 && m_kind != kind)
        end();
    m_kind = kind;
}

/// Of a run that is too long to be a word no more is kept than tells so.
void WordCutter::put(char32_t character) {
    if (++m_length > kLongestWord)
        return;
    appendCharacter(m_word, isApostrophe(character) ? U'\'' : character);
    if (!isApostrophe(character))
        m_whole = m_word.size();
}

void WordCutter::end() {
    if (m_length == 0)
        return;
    if (m_length >= kShortestWord && m_length <= kLongestWord) {
        const std::string_view word(m_word.data(), m_whole);
        if (m_kind != WordKind::Latin || m_whole > 1)
            m_counts.add(m_kind, word);
    }
    m_word.clear();
    m_length = 0;
}

} // namespace velloria::plugins::vellinfo
