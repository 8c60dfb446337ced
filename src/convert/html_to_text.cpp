#include "convert/html_to_text.h"

#include "convert/html_scan.h"
#include "convert/tag_scan.h"
#include "convert/text_finish.h"
#include "convert/text_scan.h"
#include "core/ini_reader.h"
#include "core/numbers.h"
#include "core/path_names.h"
#include "core/settings_change.h"
#include "platform/directory.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::convert {

bool clsHTML2TEXT::Initialize(const QString& path) {
    if (!platform::fileExists(path))
        return false;
    const core::IniReader file(path);
    HtmlSettings read;
    read.mode = file.text(kHtmlMode);
    for (const HtmlSetting& row : htmlSettingTable())
        read.*row.number = file.number(row.setting);
    m_settings = read;
    return true;
}

bool clsHTML2TEXT::SaveValue(const QString& path) const {
    if (!QFileInfo(platform::existingPath(core::GetParentFolder(path))).isDir())
        return false;
    core::SettingsChange change;
    change.set(path, kHtmlMode, m_settings.mode);
    for (const HtmlSetting& row : htmlSettingTable())
        change.set(path, row.setting, QString::number(m_settings.*row.number));
    change.write();
    return true;
}

bool clsHTML2TEXT::SetValue(const QString& key, const QString& value) {
    if (key.isEmpty())
        return false;
    if (key == u"MODE"_s) {
        m_settings.mode = value;
        return true;
    }
    qint16 HtmlSettings::*const number = findHtmlNumber(key);
    if (!number || number == &HtmlSettings::linkTagType)
        return true;
    m_settings.*number = core::cint(value);
    if (number == &HtmlSettings::enter)
        m_settings.linkTagType = m_settings.enter;
    return true;
}

QString clsHTML2TEXT::GetValue(const QString& key) const {
    if (key == u"MODE"_s)
        return m_settings.mode;
    qint16 HtmlSettings::*const number = findHtmlNumber(key);
    return number ? QString::number(m_settings.*number) : QString();
}

QString clsHTML2TEXT::Execute(QString& text) const {
    const qint16 paragraphBreak = m_settings.paragraphBreak;
    if (paragraphBreak != 0)
        removeEvery(text, kLineBreak);
    LineEnds lineEnds = paragraphBreak == 2 ? LineEnds::AsTheyAre : LineEnds::Normal;
    if (paragraphBreak == 0 && m_settings.enter)
        lineEnds = LineEnds::Collapsed;
    return finishedText(m_settings.isTextMode() ? scanToText(text, m_settings) : scanToHtml(text, m_settings),
                        lineEnds);
}

} // namespace velloria::convert
