#include "platform/profile_file.h"

#include "platform/code_page.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/profile_lines.h"

#include <QFileInfo>
#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

constexpr qsizetype kValueBytes = 256 - 1;     // one NUL ends a value
constexpr qsizetype kSectionsBytes = 4096 - 2; // two NULs end the list

/// The beginning of `bytes` that a buffer for `room` bytes holds, without half a character or half a reference.
QByteArrayView cut(QByteArrayView bytes, qsizetype room) {
    if (const qsizetype nul = bytes.indexOf('\0'); nul >= 0)
        bytes = bytes.first(nul);
    if (bytes.size() <= room)
        return bytes;
    qsizetype end = 0;
    while (end + characterLength(bytes, end) <= room)
        end += characterLength(bytes, end);
    const qsizetype ampersand = bytes.first(end).lastIndexOf('&');
    const qsizetype semicolon = ampersand < 0 ? -1 : bytes.indexOf(';', ampersand);
    if (semicolon >= end && !decoded(bytes.sliced(ampersand, semicolon + 1 - ampersand)).startsWith(u'&'))
        end = ampersand; // a reference that reading turns back
    return bytes.first(end);
}

int digitValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = char(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

qint32 leadingNumber(QByteArrayView text) {
    text = withoutBlanks(text);
    const bool isNegative = text.startsWith('-');
    if (isNegative || text.startsWith('+'))
        text = text.sliced(1);
    const quint32 base = text.startsWith("0x") ? 16 : 10;
    if (base == 16)
        text = text.sliced(2);
    quint32 number = 0;
    for (const char c : text) {
        const auto digit = quint32(digitValue(c));
        if (digit >= base)
            break;
        number = number * base + digit;
    }
    return qint32(isNegative ? 0u - number : number);
}

/// Section and key in one. Neither holds a line break.
QByteArray fullName(const QByteArray& section, const QByteArray& key) {
    return section + '\n' + key;
}

unsigned modeOfNewFile(const QString& file) {
    const QString name = QFileInfo(file).fileName();
    const auto isName = [&name](const QString& secret) { return name.compare(secret, Qt::CaseInsensitive) == 0; };
    return isName(u"velluser.ini"_s) || isName(u"diary.ini"_s) || isName(u"BlogUserData.ini"_s) ? 0600 : 0666;
}

} // namespace

ProfileFile::ProfileFile(const QString& file, qint64 mostBytes)
    : m_bytes(readFileIfThere(file, mostBytes).value_or(QByteArray())) {
    readKeys();
}

ProfileFile ProfileFile::fromBytes(const QByteArray& bytes) {
    ProfileFile profile;
    profile.m_bytes = bytes;
    profile.readKeys();
    return profile;
}

void ProfileFile::readKeys() {
    QSet<QByteArray> sections;
    std::optional<QByteArray> section; // nothing in front of the first and in a repeated one
    for (qsizetype at = 0; at < m_bytes.size();) {
        const Line line = lineAt(m_bytes, at);
        at = line.end;
        if (line.kind == LineKind::Header) {
            const QByteArray name = comparable(line.name);
            section = sections.contains(name) ? std::nullopt : std::optional(name);
            sections.insert(name);
        } else if (line.kind == LineKind::Key && section) {
            const QByteArray name = fullName(*section, comparable(line.name));
            if (!m_values.contains(name))
                m_values.insert(name, line.value);
        }
    }
}

std::optional<QByteArrayView> ProfileFile::find(const QString& section, const QString& key) const {
    const auto value = m_values.constFind(fullName(comparable(storedName(section)), comparable(storedName(key))));
    return value == m_values.cend() ? std::nullopt : std::optional(*value);
}

std::optional<QString> ProfileFile::value(const QString& section, const QString& key) const {
    const std::optional<QByteArrayView> stored = find(section, key);
    if (!stored)
        return std::nullopt;
    return decoded(cut(withoutQuotes(*stored), kValueBytes));
}

QString ProfileFile::valueOr(const QString& section, const QString& key, const QString& defaultValue) const {
    if (std::optional<QString> there = value(section, key))
        return *there;
    QByteArray bytes = toCodePage(defaultValue);
    while (bytes.endsWith(' '))
        bytes.chop(1);
    return decoded(cut(bytes, kValueBytes));
}

std::optional<qint32> ProfileFile::number(const QString& section, const QString& key) const {
    const std::optional<QByteArrayView> stored = find(section, key);
    if (!stored)
        return std::nullopt;
    return leadingNumber(withoutQuotes(*stored));
}

QStringList ProfileFile::sections() const {
    QStringList names;
    qsizetype room = kSectionsBytes;
    for (qsizetype at = 0; at < m_bytes.size() && room > 0;) {
        const Line line = lineAt(m_bytes, at);
        at = line.end;
        if (line.kind != LineKind::Header)
            continue;
        const QByteArrayView name = cut(line.name, room);
        room -= name.size() + 1;
        if (!name.isEmpty())
            names += decoded(name);
    }
    return names;
}

void writeProfile(const QString& file, const std::vector<ProfileChange>& changes) {
    // The lock belongs to the folder in which the file really is: others may know it by another link.
    refuseLostLink(file);
    const QFileInfo info(file);
    const QString target = info.exists() ? info.canonicalFilePath() : file;
    const FolderLock lock(QFileInfo(target).path());
    const QByteArray before = readFileIfThere(target).value_or(QByteArray());
    QByteArray after = before;
    for (const ProfileChange& change : changes)
        after = changedProfile(after, change.section, change.key, change.value);
    if (after == before)
        return;
    replaceFile(target, after, Durability::Durable, modeOfNewFile(file));
}

void writeProfile(const QString& file, const QString& section, const QString& key,
                  const std::optional<QString>& value) {
    writeProfile(file, {{section, key, value}});
}

QByteArray changedProfile(const QByteArray& before, const QString& section, const QString& key,
                          const std::optional<QString>& value) {
    const Place place = placeOf(before, section, key);
    QByteArray after = before;
    if (!value) {
        if (place.line)
            after.remove(place.line->begin, place.line->end - place.line->begin);
        return after;
    }
    const QByteArray text = storedValue(*value) + "\r\n";
    if (place.line)
        return after.replace(place.line->behindEqual, place.line->end - place.line->behindEqual, text);

    QByteArray added = storedName(key) + '=' + text;
    if (!place.behindLastKey)
        added.prepend('[' + storedName(section) + "]\r\n");
    const qsizetype at = place.behindLastKey.value_or(before.size());
    if (at > 0 && before[at - 1] != '\n' && before[at - 1] != '\r')
        added.prepend("\r\n");
    return after.insert(at, added);
}

} // namespace velloria::platform
