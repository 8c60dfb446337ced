#include "site/set_watch.h"

#include "platform/file_write.h"
#include "site/customize_sets.h"

using namespace Qt::StringLiterals;

namespace velloria::site {

SetWatch::SetWatch(const core::Run& run)
    : m_run(&run) {}

void SetWatch::look() {
    m_known = platform::readFileIfThere(m_run->session.CustIniFile);
}

bool SetWatch::mayWrite() {
    const QString file = m_run->session.CustIniFile;
    const std::optional<QByteArray> now = platform::readFileIfThere(file);
    if (now == m_known)
        return true;
    const QString name = selectedCustomizeSet(m_run->session);
    if (now)
        return m_run->desk.ask(u"カスタマイズセット「%1」は、ほかで変更されています。\r\n"
                               "この画面の内容で上書きしますか？"_s.arg(name));
    if (!m_run->desk.ask(u"カスタマイズセット「%1」のファイルがなくなっています。\r\n"
                         "この画面の内容で作り直しますか？"_s.arg(name)))
        return false;
    // With what it held beside the settings of the dialog.
    platform::replaceFile(file, *m_known, platform::Durability::Durable);
    return true;
}

bool SetWatch::mayTakeBack() {
    return platform::readFileIfThere(m_run->session.CustIniFile) == m_known ||
           m_run->desk.ask(u"カスタマイズセット「%1」は、ほかで変更されています。\r\n"
                           "編集を始める前の内容に戻しますか？"_s.arg(selectedCustomizeSet(m_run->session)));
}

} // namespace velloria::site
