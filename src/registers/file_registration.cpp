#include "registers/file_registration.h"

#include "core/files.h"
#include "core/ini.h"
#include "core/path_names.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "registers/register_source.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::registers {
namespace {

const QString kTitle = u"Resist Files"_s;

QString upload(const std::vector<store::FileRow>& known) {
    const bool hasGoneUp =
        std::any_of(known.begin(), known.end(), [](const store::FileRow& row) { return row.isUploaded; });
    return hasGoneUp ? u"次のFTPでもう一度アップロードされます。"_s : u"次のFTPでアップロードされます。"_s;
}

bool isOfEntry(const std::vector<store::FileRow>& known, const store::FileRow& row) {
    return std::any_of(known.begin(), known.end(),
                       [&](const store::FileRow& other) { return other.day == row.day && other.number == row.number; });
}

/// A name that differs from a registered one in case alone means that one's copy, and the row says so: under its own
/// spelling there may be a file that nobody has registered.
QString knownSpelling(const std::vector<store::FileRow>& known, const QString& name) {
    QString spelling = name;
    for (const store::FileRow& row : known) {
        if (row.name == name)
            return name;
        if (spelling == name && row.name.compare(name, Qt::CaseInsensitive) == 0)
            spelling = row.name;
    }
    return spelling;
}

} // namespace

QString shownFile(const store::FileRow& row) {
    return row.day + u" : "_s + QString::number(row.number) + u" : "_s + row.name;
}

QString shownKey(const store::EntryKey& key) {
    return key.day == registers::kAllDays ? key.day : key.day + u" : "_s + QString::number(key.number);
}

FileRegistration::FileRegistration(const core::Run& run)
    : m_session(run.session)
    , m_desk(run.desk)
    , m_files(run.session.databaseFile()) {}

platform::Outcome FileRegistration::ResistFile(const QString& path, const QString& day, qint16 number) {
    return ResistFile2(path, core::GetFileName(core::TrimNull(path)), day, number);
}

platform::Outcome FileRegistration::ResistFile2(const QString& path, const QString& name, const QString& day,
                                                qint16 number) {
    if (path.isEmpty())
        return platform::Outcome::Done;
    const RegisterSource source = registerSource(path);
    requireRegisterName(name);
    const store::FileRow row{0, name, day, number, false, false};
    // Asked outside of the lock: nobody has to wait for an answer.
    if (add(source, row))
        return platform::Outcome::Done;
    return m_desk.ask(u"すでに登録済みのファイルです。\r\n上書きしますか？"_s, kTitle) ? replace(source, row)
                                                                                       : platform::Outcome::Refused;
}

/// False when the entry has the row already. What is known of the name holds until the row is there: another program
/// may register a file of this name at the same time.
bool FileRegistration::add(const RegisterSource& source, store::FileRow row) {
    platform::makeFolder(partsFolder());
    const platform::FolderLock lock(partsFolder());
    const std::vector<store::FileRow> known = m_files.FindFile(row.name);
    row.name = knownSpelling(known, row.name);
    if (known.empty())
        addNew(source, row);
    else if (!isOfEntry(known, row))
        addKnown(source, row, known);
    else
        return false;
    return true;
}

QString FileRegistration::partsFolder() const {
    return platform::existingPath(core::files::kParts.in(m_session));
}

/// Where the one copy of a registered name lies or will lie: a folder from a Windows disk may spell it in another case.
QString FileRegistration::partPath(const QString& name) const {
    return platform::existingPath(partsFolder() + core::nativeSeparator() + name);
}

/// The copy bears the exact name: what nobody has registered and differs from it in case is another file.
void FileRegistration::addNew(const RegisterSource& source, const store::FileRow& row) {
    const QString part = partsFolder() + core::nativeSeparator() + row.name;
    const bool isCopied = !isSameFolder(source.folder, partsFolder()) && !platform::isInPlace(source.path, part);
    const bool isReplaced = isCopied && QFileInfo(part).isFile();
    if (isCopied)
        platform::placeFile(source.path, part);
    addRow(row, isCopied);
    m_desk.notice(u"「%1」を登録しました。%2"_s.arg(
        row.name, isReplaced ? u"DiaryPartsにあった登録のない同じ名前のファイルは置き換えました。"_s : QString()));
}

/// What lies in "DiaryParts" is used, whatever the source holds. Only when nothing is there any more does the source
/// come to help: a row without its file would stop the upload.
void FileRegistration::addKnown(const RegisterSource& source, const store::FileRow& row,
                                const std::vector<store::FileRow>& known) {
    const QString part = partPath(row.name);
    const bool isLost = !platform::fileExists(part) && !isSameFolder(source.folder, partsFolder());
    if (isLost)
        platform::placeFile(source.path, part);
    addRow(row, isLost);
    const QString used = isLost ? u"DiaryPartsになかったので、指定したファイルをコピーしました。"_s
                                : u"DiaryPartsにあるファイルを使い、指定したファイルはコピーしていません。"_s;
    m_desk.notice(u"「%1」は登録済みの名前です。%2%3"_s.arg(row.name, used, upload(known)));
}

void FileRegistration::addRow(const store::FileRow& row, bool isCopied) {
    try {
        m_files.addFile(row);
    } catch (platform::Failure& failure) {
        if (isCopied)
            failure.addStage(u"ファイルはDiaryPartsにコピーしました"_s);
        throw;
    }
}

platform::Outcome FileRegistration::replace(const RegisterSource& source, store::FileRow row) {
    platform::makeFolder(partsFolder());
    const platform::FolderLock lock(partsFolder());
    // Whoever was asked may have taken their time.
    const std::vector<store::FileRow> known = m_files.FindFile(row.name);
    row.name = knownSpelling(known, row.name);
    const QString part = partPath(row.name);
    if (platform::isInPlace(source.path, part))
        throw platform::Failure(u"同じフォルダの同じファイルを指定しました。"_s, source.path, u"コピーできません。"_s,
                                u"ファイルも登録も元のままです。"_s);
    platform::placeFile(source.path, part);
    if (!isOfEntry(known, row))
        addRow(row, true);
    const bool goesUp = std::any_of(known.begin(), known.end(),
                                    [](const store::FileRow& other) { return !other.isUploaded && !other.isLogged; });
    m_desk.notice(u"「%1」を指定したファイルで置き換えました。%2"_s.arg(
        row.name, goesUp ? upload(known) : u"アップロードの予定はなく、サーバーのファイルは変わりません。"_s));
    return platform::Outcome::Done;
}

platform::Outcome FileRegistration::deleteFile(const store::FileRow& row) {
    if (!m_desk.ask(u"本当に削除しますか？"_s, kTitle))
        return platform::Outcome::Refused;
    m_files.DeleteFile(row.name, row.day, row.number);
    m_desk.status(u"「%1」の登録を削除しました。"_s.arg(shownFile(row)));
    if (m_files.CountFile(row.name) == 0 &&
        m_desk.ask(u"このファイルは他の日付等で使用されていません。\r\n削除しますか？"_s, kTitle))
        removePart(row.name);
    return platform::Outcome::Done;
}

/// A row of an old diary may hold a path: what it leads to is no file of the register.
void FileRegistration::removePart(const QString& name) {
    const QString part = partPath(name);
    if (!core::isBareName(name) || !platform::fileExists(part)) {
        m_desk.message(platform::MessageKind::Exclamation, u"ファイルがありませんでした。"_s, kTitle);
        return;
    }
    const platform::FolderLock lock(partsFolder());
    // Whoever was asked may have taken their time.
    if (m_files.CountFile(name) > 0) {
        m_desk.notice(u"「%1」は、その間にまた登録されたので残しました。"_s.arg(name));
        return;
    }
    try {
        platform::removeFile(part);
    } catch (const platform::Failure& failure) {
        throw removalFailure({part}, failure.reason());
    }
}

} // namespace velloria::registers
