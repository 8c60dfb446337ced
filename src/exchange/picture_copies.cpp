#include "exchange/picture_copies.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/code_page.h"
#include "platform/failure.h"
#include "platform/file_read.h"
#include "platform/text_fold.h"
#include "registers/file_register.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

constexpr qsizetype kLongestName = 60;
constexpr qsizetype kLongestEnding = 10;

QString partsFolder(const core::Session& session) {
    const QString folder = platform::existingPath(core::files::kParts.in(session));
    platform::makeFolder(folder);
    return folder + core::nativeSeparator();
}

/// What may stand in a file's name, in an address as it is, and in the code page of the pages.
QString plainName(const QString& text) {
    QString plain;
    for (const QChar character : text) {
        const bool isPlain = character.unicode() > u' ' && !u"\"#%&'*/:;<>?\\|`"_s.contains(character) &&
                             platform::inCodePage(QStringView(&character, 1));
        plain += isPlain ? character : u'_';
    }
    return plain;
}

} // namespace

PictureCopies::PictureCopies(const core::Run& run)
    : m_folder(partsFolder(run.session))
    , m_lock(m_folder)
    , m_present(m_folder) {
    for (const store::FileRow& row : registers::FileRegister(run.session.databaseFile()).ListFiles())
        m_registered.insert(platform::fold(row.name));
}

PictureCopies::~PictureCopies() {
    for (const QString& copy : std::as_const(m_copied)) {
        try {
            platform::removeFile(copy);
        } catch (const platform::Failure&) {
            // A copy that nobody registered does no harm.
        }
    }
}

QString PictureCopies::place(const QString& file) {
    if (const auto known = m_placed.constFind(file); known != m_placed.cend())
        return *known;
    const QFileInfo source(file);
    const QString suffix = plainName(source.suffix()).left(kLongestEnding);
    const QString ending = suffix.isEmpty() ? QString() : u'.' + suffix;
    QString base = plainName(source.completeBaseName()).left(kLongestName);
    if (base.isEmpty() || base.startsWith(u'.'))
        base.prepend(u"picture"_s);
    QString name = base + ending;
    for (int number = 2; hasOtherSize(name, source.size()) || (isTaken(name) && !holds(name, file)); ++number)
        name = u"%1_%2%3"_s.arg(base).arg(number).arg(ending);
    if (!isTaken(name)) {
        const QString copy = m_folder + name;
        platform::placeFile(file, copy);
        m_copied += copy;
        m_present.add(name);
    }
    m_placed.insert(file, name);
    return name;
}

bool PictureCopies::hasOtherSize(const QString& name, qint64 size) const {
    return m_sizes.value(name, size) != size;
}

bool PictureCopies::isTaken(const QString& name) const {
    return m_registered.contains(platform::fold(name)) || QFileInfo::exists(m_present.path(name));
}

/// Only under the exact spelling: an address is as it is spelt.
bool PictureCopies::holds(const QString& name, const QString& file) {
    const QString present = m_folder + name;
    if (!QFileInfo(present).isFile())
        return false;
    m_sizes.insert(name, QFileInfo(present).size());
    return platform::haveSameBytes(present, file);
}

} // namespace velloria::exchange
