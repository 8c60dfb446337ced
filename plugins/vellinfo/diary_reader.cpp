#include "vellinfo/diary_reader.h"

#include "common/diary_file.h"
#include "vellinfo/visible_text.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <map>

namespace velloria::plugins::vellinfo {
namespace {

constexpr std::size_t kNamedNotes = 5;
constexpr std::size_t kTitleCharacters = 60;
constexpr std::size_t kNameCharacters = 100; ///< of genres and weathers
constexpr std::string_view kNoGenre = "一般";
constexpr std::string_view kNoWeather = "-";

/// Gives each name a number.
class Names {
public:
    Names(std::vector<std::string>& names, std::string_view missing)
        : m_names(names)
        , m_missing(missing) {}

    std::uint32_t placeOf(std::string_view name) {
        const std::string text = shortened(name.empty() ? m_missing : name, kNameCharacters);
        const auto [at, isNew] = m_places.try_emplace(text, static_cast<std::uint32_t>(m_names.size()));
        if (isNew)
            m_names.push_back(text);
        return at->second;
    }

private:
    std::vector<std::string>& m_names;
    const std::string_view m_missing;
    std::map<std::string, std::uint32_t> m_places;
};

/// The first ones of all by an order; the earlier entry comes first of two that are alike.
class Ranking {
public:
    Ranking(std::vector<NamedNote>& notes, bool isLongestFirst)
        : m_notes(notes)
        , m_isLongestFirst(isLongestFirst) {}

    void offer(std::string_view day, std::int64_t number, std::uint32_t characters, std::string_view title,
               bool isPrivate) {
        if (m_notes.size() == kNamedNotes && isAhead(m_notes.back(), day, number, characters))
            return;
        const auto place = std::find_if(m_notes.begin(), m_notes.end(),
                                        [&](const NamedNote& note) { return !isAhead(note, day, number, characters); });
        m_notes.insert(place, {shortened(day, kTitleCharacters), number, characters, shortened(title, kTitleCharacters),
                               isPrivate});
        if (m_notes.size() > kNamedNotes)
            m_notes.pop_back();
    }

private:
    bool isAhead(const NamedNote& note, std::string_view day, std::int64_t number, std::uint32_t characters) const {
        if (note.characters != characters)
            return (note.characters > characters) == m_isLongestFirst;
        return note.day != day ? note.day < day : note.number <= number;
    }

    std::vector<NamedNote>& m_notes;
    const bool m_isLongestFirst;
};

void readEntries(const DiaryFile& file, Diary& diary) {
    Names genres(diary.genres, kNoGenre);
    Names weathers(diary.weathers, kNoWeather);
    Ranking longest(diary.longest, true);
    Ranking shortest(diary.shortest, false);
    enum Column { DayText, Number, Title, Contents, Extend, Weather, Genre, Time, Private };
    const char* query =
        "SELECT Day, Number, Title, Contents, Extend, Weather, Genre, PublishTime, Private FROM Contents";
    file.query(query, [&](const Row& row) {
        Seen seen = look(row.text(Contents), diary.words);
        seen += look(row.text(Extend), diary.words);
        const std::string_view day = row.text(DayText);
        const Note note{dayOf(day),
                        seen.characters,
                        seen.pictures,
                        genres.placeOf(row.text(Genre)),
                        weathers.placeOf(row.text(Weather)),
                        static_cast<std::uint8_t>(hourOf(row.text(Time))),
                        row.number(Private) != 0};
        diary.notes.push_back(note);
        if (note.characters == 0)
            return;
        const std::int64_t number = row.number(Number);
        longest.offer(day, number, note.characters, row.text(Title), note.isPrivate);
        shortest.offer(day, number, note.characters, row.text(Title), note.isPrivate);
    });
    std::stable_sort(diary.notes.begin(), diary.notes.end(),
                     [](const Note& left, const Note& right) { return left.day < right.day; });
}

bool isPicture(std::string_view name) {
    constexpr std::array<std::string_view, 9> kEndings{"jpg",  "jpeg", "gif", "png", "bmp",
                                                       "webp", "svg",  "ico", "avif"};
    const std::size_t dot = name.rfind('.');
    std::string ending(dot == name.npos ? std::string_view() : name.substr(dot + 1));
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte; });
    return std::find(kEndings.begin(), kEndings.end(), ending) != kEndings.end();
}

void readFiles(const DiaryFile& file, Files& files) {
    const char* query = "SELECT FileName, MAX(Day <> 'ALL') FROM FileDB WHERE FileName <> '' GROUP BY FileName";
    file.query(query, [&](const Row& row) {
        ++files.names;
        files.pictures += isPicture(row.text(0));
        files.ofEntries += row.number(1) != 0;
    });
}

} // namespace

bool isDatabase(const std::string& file) {
    constexpr std::string_view kMark("SQLite format 3", 16); // with the zero behind it
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return false;
    std::string begin(kMark.size(), ' ');
    std::ifstream stream(file, std::ios::binary);
    return stream.read(begin.data(), std::streamsize(begin.size())) && begin == kMark;
}

Diary readDiary(const std::string& file, const Host& host) {
    const DiaryFile database(file, host);
    Diary diary;
    readEntries(database, diary);
    readFiles(database, diary.files);
    return diary;
}

} // namespace velloria::plugins::vellinfo
