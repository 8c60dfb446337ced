// How often words come, in a bounded room, and the cutting of texts into words.
#pragma once

#include "vellinfo/characters.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins::vellinfo {

enum class WordKind : std::uint8_t { Kanji, Katakana, Latin };

inline constexpr std::size_t kShortestWord = 2; ///< in characters
inline constexpr std::size_t kLongestWord = 40;

struct Word {
    std::string text;
    std::uint64_t count = 0;
};

/// Counts words. Of more different ones than it has room for the rarest are forgotten.
class WordCounts {
public:
    /// `room` is the most different words that are kept.
    explicit WordCounts(std::size_t room = 1'000'000);

    void add(WordKind kind, std::string_view word);

    /// The most frequent ones first, those that come alike in the order of their bytes; without the words of
    /// `left_out`.
    std::vector<Word> top(WordKind kind, std::size_t count, const std::vector<std::string_view>& leftOut) const;

    /// By how much a count may be too low, because the word had been forgotten meanwhile.
    std::uint64_t greatestLoss() const { return m_loss; }

private:
    struct Slot {
        std::uint64_t count = 0; ///< 0 for a free one
        std::uint32_t hash = 0;
        std::uint32_t begin = 0; ///< in the texts
        std::uint16_t size = 0;
        WordKind kind = WordKind::Kanji;
    };

    Slot& slotOf(WordKind kind, std::string_view word, std::uint32_t hash);
    std::string_view textOf(const Slot& slot) const { return {m_texts.data() + slot.begin, slot.size}; }
    void grow();
    void forgetRareOnes();
    void takeFrom(const std::vector<Slot>& slots, const std::string& texts, std::uint64_t least);

    const std::size_t m_room;
    std::vector<Slot> m_slots; ///< a power of two of them, at most half of them taken
    std::string m_texts;
    std::size_t m_taken = 0;
    std::uint64_t m_loss = 0;
};

/// Cuts a text into words: runs of kanji, of katakana, and of Latin letters with digits and apostrophes within.
class WordCutter {
public:
    explicit WordCutter(WordCounts& counts)
        : m_counts(counts) {}

    void add(char32_t character, Kind kind);
    /// The word that was begun is whole.
    void end();

private:
    void begin(WordKind kind);
    void put(char32_t character);

    WordCounts& m_counts;
    std::string m_word;
    std::size_t m_length = 0; ///< in characters; 0 between words
    std::size_t m_whole = 0;  ///< bytes up to the last character that is no apostrophe
    WordKind m_kind = WordKind::Kanji;
};

} // namespace velloria::plugins::vellinfo
