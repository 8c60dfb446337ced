#include "exchange/set_aside.h"

#include "core/path_names.h"
#include "platform/failure.h"
#include "platform/file_write.h"

#include <QFileInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

/// The name tells whoever finds it after a power failure what it is.
QString nameBeside(const QString& file, int number) {
    constexpr qsizetype kLongestBeginning = 50; // a name has 255 bytes, a character up to four
    return core::withSeparator(core::GetParentFolder(file)) + core::GetFileName(file).left(kLongestBeginning) +
           u".velloria-old%1"_s.arg(number);
}

QString freeNameBeside(const QString& file) {
    for (int number = 1;; ++number) {
        const QString name = nameBeside(file, number);
        if (!QFileInfo::exists(name) && !QFileInfo(name).isSymLink())
            return name;
    }
}

} // namespace

SetAside::SetAside(QString file)
    : m_file(std::move(file)) {
    platform::removeLeftovers(m_file);
    if (QFileInfo(m_file).isFile()) {
        platform::requireReplaceable(m_file);
        const QString aside = freeNameBeside(m_file);
        platform::moveFile(m_file, aside);
        m_aside = aside;
    } else if (const QString left = nameBeside(m_file, 1); !QFileInfo::exists(m_file) && QFileInfo(left).isFile()) {
        m_aside = left; // by a run that was killed
    }
}

SetAside::~SetAside() {
    try {
        bringBack();
    } catch (const platform::Failure&) {
        // It stays under its other name.
    }
}

void SetAside::bringBack() {
    if (!std::exchange(m_isOpen, false))
        return;
    if (m_aside.isEmpty()) {
        if (QFileInfo(m_file).isFile())
            platform::removeFile(m_file);
        return;
    }
    try {
        platform::moveFile(m_aside, m_file);
    } catch (const platform::Failure& failure) {
        throw platform::Failure(u"書き出す前のファイルを元の名前に戻せません。"_s, m_file, failure.reason(),
                                u"内容は「%1」に残っています。名前を変えて戻してください。"_s.arg(m_aside));
    }
}

QString SetAside::drop() {
    m_isOpen = false;
    if (m_aside.isEmpty())
        return {};
    if (!QFileInfo(m_file).isFile())
        return m_aside;
    platform::limitMode(m_file, platform::modeOf(m_aside, 0777));
    platform::syncFile(m_file);
    platform::removeFile(m_aside);
    return {};
}

} // namespace velloria::exchange
