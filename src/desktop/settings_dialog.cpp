#include "desktop/settings_dialog.h"

#include <QPushButton>

using namespace Qt::StringLiterals;

namespace velloria::desktop {

void SettingsDialog::setUp(std::vector<SettingsRow> rows, const Buttons& buttons) {
    m_table.rows = std::move(rows);
    load(m_table);
    m_table.onChange([this] { somethingChanged(); });
    m_apply = buttons.apply;
    if (m_apply) {
        m_apply->setEnabled(false);
        connect(m_apply, &QPushButton::clicked, this, [this] { run([this] { Btn_Apply_Click(); }); });
    }
    connect(buttons.ok, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(buttons.cancel, &QPushButton::clicked, this, &SettingsDialog::reject);
}

void SettingsDialog::enableWhile(std::vector<QWidget*> controls, std::function<bool()> condition) {
    for (QWidget* control : controls)
        control->setEnabled(condition());
    m_conditions.push_back({std::move(controls), std::move(condition)});
}

void SettingsDialog::somethingChanged() {
    if (m_apply)
        m_apply->setEnabled(true);
    for (const Condition& condition : m_conditions) {
        for (QWidget* control : condition.controls)
            control->setEnabled(condition.holds());
    }
}

void SettingsDialog::load(SettingsTable& table) {
    table.load(m_context.session);
}

void SettingsDialog::write(const core::SettingsChange& change) {
    change.write();
}

bool SettingsDialog::Btn_Apply_Click() {
    if (!mayApply())
        return false;
    write(m_table.change(m_context.session));
    if (m_apply)
        m_apply->setEnabled(false);
    applied();
    return true;
}

void SettingsDialog::Btn_OK_Click() {
    if (Btn_Apply_Click() && mayClose())
        accept();
}

void SettingsDialog::reject() {
    run([this] {
        const bool isWanted =
            m_apply && m_apply->isEnabled() && m_context.desk.ask(u"変更されていますが、保存しますか？"_s);
        if (!isWanted || Btn_Apply_Click())
            ToolWindow::reject();
    });
}

} // namespace velloria::desktop
