#include "store/option_files.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/utf8.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

struct OptionField {
    QString name;
    core::File file;
};

const std::vector<OptionField>& optionFields() {
    static const std::vector<OptionField> fields{
        {u"Header"_s, core::files::kDefaultHeader},
        {u"Footer"_s, core::files::kDefaultFooter},
        {u"Header_Log"_s, core::files::kDefaultLogHeader},
        {u"Footer_Log"_s, core::files::kDefaultLogFooter},
    };
    return fields;
}

QString textOf(const OldValue& value) {
    if (const auto* number = std::get_if<qint64>(&value))
        return QString::number(*number);
    const auto* utf8 = std::get_if<QByteArray>(&value);
    return utf8 ? platform::fromUtf8(*utf8) : QString();
}

} // namespace

OptionFiles::OptionFiles(const core::Session& session)
    : m_session(session) {}

OptionFiles::~OptionFiles() {
    for (const Replaced& replaced : m_replaced) {
        try {
            if (replaced.before)
                platform::replaceFile(replaced.file, *replaced.before, platform::Durability::Durable);
            else
                platform::removeFile(replaced.file);
            if (!replaced.keptAs.isEmpty())
                platform::removeFile(replaced.keptAs);
        } catch (const platform::Failure&) {
            // The copy beside it has what was there.
        }
    }
}

void OptionFiles::write(OldDiary& diary, const std::function<void(int)>& written) {
    QStringList columns;
    for (const OptionField& field : optionFields())
        columns += field.name;
    diary.open(u"Option"_s, columns);
    std::vector<OldValue> row;
    if (!diary.next(row))
        return;
    platform::makeFolder(platform::existingPath(core::files::kCustomize.in(m_session)));
    int count = 0;
    for (std::size_t i = 0; i < row.size(); ++i) {
        replace(platform::existingPath(optionFields()[i].file.in(m_session)),
                platform::toCodePage(textOf(row[i]) + u"\r\n"_s));
        written(++count);
    }
}

void OptionFiles::replace(const QString& file, const QByteArray& bytes) {
    const std::optional<QByteArray> before = platform::readFileIfThere(file);
    if (before == bytes)
        return;
    m_replaced.push_back({file, before, before ? keepBeside(file) : QString()});
    platform::replaceFile(file, bytes, platform::Durability::Durable);
}

/// Returns the copy when it had to be made. A run that was broken off may have made it already.
QString OptionFiles::keepBeside(const QString& file) {
    const QString base = core::GetBaseName(file);
    QString kept = base + u".bak"_s;
    for (int i = 2; QFileInfo::exists(kept) && !platform::haveSameBytes(kept, file); ++i)
        kept = base + u"-%1.bak"_s.arg(i);
    const bool isNew = !QFileInfo::exists(kept);
    if (isNew)
        platform::copyFile(file, kept, platform::modeOf(file, 0666), platform::Durability::Durable);
    if (!m_told.isEmpty())
        m_told += u"\r\n"_s;
    m_told += u"今までの「%1」は「%2」に残しました。"_s.arg(core::GetFileName(file), core::GetFileName(kept));
    return isNew ? kept : QString();
}

} // namespace velloria::store
