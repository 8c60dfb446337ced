#include "store/genre_list.h"

#include "core/files.h"
#include "core/text_file.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/file_write.h"
#include "platform/text_fold.h"
#include "store/diary_store.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

QString listFile(const core::Session& session) {
    return platform::existingPath(core::files::kGenres.in(session));
}

/// A genre as it compares once it has been a line of the file.
QString listForm(QString genre) {
    genre.replace(u'\r', u' ').replace(u'\n', u' ');
    return platform::fold(platform::decodeReferences(platform::fromCodePage(platform::toCodePage(genre))));
}

void makeList(const core::Run& run) {
    core::writeLines(listFile(run.session), QStringList{u"一般"_s} + DiaryStore(run).ListGenres());
}

} // namespace

QStringList readGenres(const core::Run& run) {
    if (!platform::fileExists(listFile(run.session)))
        MakeGenretxt(run);
    return core::readLines(listFile(run.session));
}

void addGenres(const core::Run& run, const QStringList& genres) {
    // Two programs may add to the list at once.
    const platform::FolderLock lock(run.session.DataPath);
    if (!platform::fileExists(listFile(run.session)))
        makeList(run);
    QStringList known = core::readLines(listFile(run.session));
    const qsizetype before = known.size();
    QSet<QString> folds;
    for (const QString& genre : known)
        folds.insert(listForm(genre));
    for (const QString& genre : genres) {
        const QString form = listForm(genre);
        if (genre.isEmpty() || folds.contains(form))
            continue;
        known += genre;
        folds.insert(form);
    }
    if (known.size() > before)
        core::writeLines(listFile(run.session), known);
}

void MakeGenretxt(const core::Run& run) {
    const platform::FolderLock lock(run.session.DataPath);
    makeList(run);
}

void genreCommand(platform::Desk& desk, const std::function<void()>& makeGenres) {
    makeGenres();
    desk.status(u"ジャンルの再構成が完了しました。"_s);
    desk.message(platform::MessageKind::Information, u"完了！"_s);
}

} // namespace velloria::store
