#include "desktop/settings_table.h"

#include "core/settings.h"
#include "core/settings_change.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

template <typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};

QString through(const std::function<QString(const QString&)>& hook, const QString& text) {
    return hook ? hook(text) : text;
}

void show(const SettingsRow& row, const QString& value) {
    const auto show = Overloaded{
        [&](QCheckBox* box) { box->setChecked(value.toInt() == 1); },
        [&](QLineEdit* edit) { edit->setText(through(row.hooks.shown, value)); },
        [&](QComboBox* box) { box->setCurrentText(through(row.hooks.shown, value)); },
        [&](const Choice& choice) {
            for (const auto& [button, meaning] : choice.options) {
                // A button of a group can't be switched off while the group allows only one.
                button->setAutoExclusive(false);
                button->setChecked(meaning == value);
                button->setAutoExclusive(true);
            }
        },
    };
    std::visit(show, row.control);
}

/// Nothing when no option is on: what the file holds stays.
std::optional<QString> valueOf(const SettingsRow& row) {
    const auto read = Overloaded{
        [](const QCheckBox* box) { return std::optional(box->isChecked() ? u"1"_s : u"0"_s); },
        [&](const QLineEdit* edit) { return std::optional(through(row.hooks.stored, edit->text())); },
        [&](const QComboBox* box) { return std::optional(through(row.hooks.stored, box->currentText())); },
        [](const Choice& choice) -> std::optional<QString> {
            for (const auto& [button, meaning] : choice.options) {
                if (button->isChecked())
                    return meaning;
            }
            return std::nullopt;
        },
    };
    return std::visit(read, row.control);
}

} // namespace

void SettingsTable::load(const QString& iniFile) {
    const QScopedValueRollback loading(m_isLoading, true);
    for (const SettingsRow& row : rows)
        show(row, core::IniReader(iniFile).text(row.setting));
}

void SettingsTable::apply(const QString& iniFile) const {
    core::SettingsChange change;
    for (const SettingsRow& row : rows) {
        if (const std::optional<QString> value = valueOf(row))
            change.set(iniFile, row.setting, *value);
    }
    change.writeQuietly();
}

void SettingsTable::onChange(const std::function<void()>& changed) {
    const auto tell = [this, changed] {
        if (!m_isLoading)
            changed();
    };
    const auto listen = Overloaded{
        [&](QCheckBox* box) { QObject::connect(box, &QCheckBox::toggled, box, tell); },
        [&](QLineEdit* edit) { QObject::connect(edit, &QLineEdit::textChanged, edit, tell); },
        [&](QComboBox* box) { QObject::connect(box, &QComboBox::currentTextChanged, box, tell); },
        [&](const Choice& choice) {
            for (const auto& option : choice.options)
                QObject::connect(option.first, &QRadioButton::clicked, option.first, tell);
        },
    };
    for (const SettingsRow& row : rows)
        std::visit(listen, row.control);
}

} // namespace velloria::desktop
