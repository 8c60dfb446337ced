#include "exchange/foreign_import.h"

#include "core/long_text.h"
#include "exchange/import_preview.h"
#include "exchange/picture_copies.h"
#include "platform/failure.h"
#include "registers/file_register.h"
#include "store/diary_store.h"
#include "store/genre_list.h"
#include "store/saving.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

const QString kFailed = u"日記を読み込めません。"_s;
const QString kNothingDone = u"何もインポートしていません。"_s;

void requirePlace(const ForeignFormat& format, const QString& path) {
    const QFileInfo place(path);
    const auto refuse = [&](const QString& reason) { throw platform::Failure(kFailed, path, reason, kNothingDone); };
    if (!place.exists())
        refuse(u"見つかりません"_s);
    if (format.place == ForeignFormat::Place::Folder && !place.isDir())
        refuse(u"フォルダではありません。%1の日記のフォルダを指定してください"_s.arg(format.program));
    if (format.place == ForeignFormat::Place::File && place.isDir())
        refuse(u"フォルダです。%1の日記のファイルを指定してください"_s.arg(format.program));
    if (!place.isDir() && !place.isFile())
        refuse(u"ファイルではありません"_s);
}

/// No text of the diary holds what the database or a page would take for its end.
QString tidied(const QString& text) {
    return core::withCrLf(QString(text).replace(QChar::Null, QChar::ReplacementCharacter));
}

/// As an untouched editor would have saved it.
void complete(store::Entry& entry) {
    const auto fill = [](QString& text, const QString& whenEmpty) { text = text.isEmpty() ? whenEmpty : tidied(text); };
    entry.title = QString(entry.title).replace(u"\r\n"_s, u" "_s).replace(u'\n', u' ').replace(u'\r', u' ').trimmed();
    fill(entry.title, u"無題"_s);
    fill(entry.contents, u""_s);
    fill(entry.extend, u""_s);
    fill(entry.excerpt, u""_s);
    fill(entry.weather, u"-"_s);
    fill(entry.genre, u"一般"_s);
    fill(entry.publishTime, entry.day + u" 00:00:00"_s);
}

/// What nobody could see yet is not to be seen by an import.
void hideFuture(ForeignDiary& diary, const QString& now) {
    for (ForeignEntry& foreign : diary.entries) {
        store::Entry& entry = foreign.entry;
        if (foreign.isOwn || entry.isPrivate || entry.publishTime <= now)
            continue;
        entry.isPrivate = true;
        diary.losses.countNamed(u"先の日付での公開予約（非公開にする日記）"_s, entry.day);
    }
}

ForeignDiary readDiary(const core::Run& run, const ForeignFormat& format, const QString& path) {
    const platform::Hourglass hourglass(run.desk);
    requirePlace(format, path);
    ForeignDiary diary = format.read(path);
    if (diary.entries.empty()) {
        const QString losses = diary.losses.text().replace(u"\r\n"_s, u"。"_s);
        throw platform::Failure(u"インポートする日記がありません。"_s, path,
                                losses.isEmpty() ? u"%1の日記が見つかりません"_s.arg(format.program) : losses,
                                kNothingDone + u"形式と場所を確認してください。"_s);
    }
    for (ForeignEntry& entry : diary.entries) {
        if (!entry.isOwn)
            complete(entry.entry);
    }
    if (format.hidesFuture)
        hideFuture(diary, run.clock.now().toString(u"yyyy/MM/dd hh:mm:ss"_s));
    return diary;
}

platform::ImportPlan planOf(const ForeignFormat& format, const ForeignDiary& diary) {
    platform::ImportPlan plan{format.program, {}, diary.losses.text()};
    for (const ForeignEntry& entry : diary.entries)
        plan.days += entry.entry.day;
    return plan;
}

/// The entry with the addresses of its pictures, and their names.
store::Addition additionOf(ForeignEntry& foreign, PictureCopies& copies) {
    store::Addition addition{std::move(foreign.entry)};
    QSet<QString> files;
    QStringList addresses;
    for (const ForeignPicture& picture : foreign.pictures) {
        const QString name = copies.place(picture.file);
        const bool isKept = !picture.address.isNull() && name == QFileInfo(picture.file).fileName();
        addresses += isKept ? picture.address : registers::pageAddress(name);
        if (!files.contains(name))
            addition.files += name;
        files.insert(name);
    }
    for (QString* text : {&addition.entry.contents, &addition.entry.extend, &addition.entry.excerpt})
        *text = withoutPlaceholders(*text, addresses);
    return addition;
}

void add(const core::Run& run, ForeignDiary& diary, const QString& mark) {
    const platform::Hourglass hourglass(run.desk);
    const bool hasPictures =
        std::ranges::any_of(diary.entries, [](const ForeignEntry& entry) { return !entry.pictures.empty(); });
    std::vector<store::Addition> additions;
    additions.reserve(diary.entries.size());
    std::optional<PictureCopies> copies;
    if (hasPictures)
        copies.emplace(run);
    for (ForeignEntry& foreign : diary.entries) {
        foreign.entry.importMark = mark;
        additions.push_back(foreign.pictures.empty() ? store::Addition{std::move(foreign.entry)}
                                                     : additionOf(foreign, *copies));
    }
    store::DiaryStore(run).addEntries(std::move(additions));
    if (copies)
        copies->keep();
}

} // namespace

const ForeignFormat* foreignFormat(const QString& name) {
    const std::span<const ForeignFormat> formats = foreignFormats();
    const auto found = std::ranges::find(formats, name, &ForeignFormat::name);
    return found == formats.end() ? nullptr : &*found;
}

platform::Outcome importForeignDiary(const core::Run& run, const ForeignFormat& format, const QString& path,
                                     const std::function<void(const QStringList& days)>& written) {
    ForeignDiary diary = readDiary(run, format, path);
    const platform::ImportPlan plan = planOf(format, diary);
    const std::optional<QString> mark = beginImport(run, plan);
    if (!mark)
        return platform::Outcome::Refused;
    add(run, diary, *mark);
    QStringList days = plan.days;
    days.sort();
    days.removeDuplicates();
    run.desk.status(u"%1から%2件の日記をインポートしました。"_s.arg(format.program).arg(plan.days.size()));
    written(days);
    store::runAfterSave([&] { store::MakeGenretxt(run); });
    return platform::Outcome::Done;
}

} // namespace velloria::exchange
