#include "cli/command.h"
#include "store/genre_list.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void list(Invocation& invocation) {
    const QStringList genres = store::readGenres(invocation);
    std::vector<QStringList> rows;
    for (const QString& genre : genres)
        rows.push_back({genre});
    invocation.print(QJsonArray::fromStringList(genres), rows);
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
