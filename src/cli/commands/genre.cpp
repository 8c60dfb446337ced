#include "cli/command.h"
#include "store/genre_list.h"

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void list(Invocation& invocation) {
    invocation.printList(store::readGenres(invocation));
}

void rebuild(Invocation& invocation) {
    store::genreCommand(invocation.desk, [&] { store::MakeGenretxt(invocation); });
}

} // namespace

std::vector<Command> genreCommands() {
    return {{u"genre list"_s, {}, 0, 0, {}, u"ジャンルの一覧"_s, Start::Needed, list},
            {u"genre rebuild"_s, {}, 0, 0, {}, u"日記からジャンルの一覧を作り直す"_s, Start::Needed, rebuild}};
}

} // namespace velloria::cli
