// The search of the diary: what is asked, and the page of what was found. The steps of the command, in the thread of
// the desk; a search that finds nothing makes a page as well:
//
//     if (const std::optional<Search> search = checkSearch(run, form))
//         run.desk.status(findStatus(search->word, MakeFindPage(run, path, *search)));
#pragma once

#include "core/run.h"
#include "site/local_page.h"

#include <optional>

namespace velloria::site {

/// What somebody filled in. A missing part was not asked for.
struct SearchForm {
    struct Dates {
        QString start;
        QString end;
    };
    QString word;
    std::optional<Dates> term;
    bool isOfGenre = false;
    std::optional<QString> genre; ///< nothing when none is selected
};

/// What is searched: the word in titles and contents, Like wildcards and all, in a period of days "yyyy/mm/dd" with
/// both its ends, among the entries of a genre.
struct Search {
    QString word;
    std::optional<SearchForm::Dates> period;
    std::optional<QString> genre;
};

/// The form as a search; nothing when it can't be one, which is told. The clock gives the year of a date without one.
std::optional<Search> checkSearch(const core::Run& run, const SearchForm& form);

/// Writes the page of all entries that the search finds, private ones too, and returns their number. Throws
/// platform::Failure.
int MakeFindPage(const core::Run& run, const QString& path, const Search& search);

struct Found {
    QString file; ///< the page of the entries
    int count = 0;
};

/// The command: checks the form, makes "findtmp.htm", shows it, and tells how many entries it holds. Nothing when the
/// form is refused. Throws platform::Failure.
std::optional<Found> findCommand(const core::Run& run, const SearchForm& form, const ShowPage& show);

} // namespace velloria::site
