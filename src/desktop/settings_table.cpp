#include "desktop/settings_table.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidgetItem>
#include <QRadioButton>
#include <QScopedValueRollback>

#include <map>

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

QString ticked(bool isOn) {
    return isOn ? u"1"_s : u"0"_s;
}

void show(const SettingsRow& row, const QString& stored) {
    const QString value = through(row.hooks.shown, stored);
    const auto show = Overloaded{
        [](NoControl) {},
        [&](QCheckBox* box) { box->setChecked(value == u"1"); },
        [&](QListWidgetItem* item) { item->setCheckState(value == u"1" ? Qt::Checked : Qt::Unchecked); },
        [&](QLineEdit* edit) { edit->setText(value); },
        [&](QComboBox* box) { box->setCurrentText(value); },
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

QString storedIn(const core::IniReader& file, const core::Setting& setting) {
    const bool isNumber = setting.kind == core::SettingKind::Number || setting.kind == core::SettingKind::Flag;
    return isNumber ? QString::number(file.number(setting)) : file.text(setting);
}

/// Nothing when no option is on, unless a hook knows better: what the file holds stays.
std::optional<QString> valueOf(const SettingsRow& row) {
    const auto read = Overloaded{
        [](NoControl) { return std::optional(QString()); },
        [](const QCheckBox* box) { return std::optional(ticked(box->isChecked())); },
        [](const QListWidgetItem* item) { return std::optional(ticked(item->checkState() == Qt::Checked)); },
        [](const QLineEdit* edit) { return std::optional(edit->text()); },
        [](const QComboBox* box) { return std::optional(box->currentText()); },
        [](const Choice& choice) -> std::optional<QString> {
            for (const auto& [button, meaning] : choice.options) {
                if (button->isChecked())
                    return meaning;
            }
            return std::nullopt;
        },
    };
    const std::optional<QString> value = std::visit(read, row.control);
    return value || row.hooks.stored ? std::optional(through(row.hooks.stored, value.value_or(QString())))
                                     : std::nullopt;
}

} // namespace

SettingsHooks onUnlessZero(const QString& on) {
    return {[](const QString& stored) { return ticked(stored != u"0"); },
            [on](const QString& shown) { return shown == u"1" ? on : u"0"_s; }};
}

void SettingsTable::load(const core::Session& session) {
    fill([&session](core::SettingsFile file) { return core::Settings(session).file(file); });
}

void SettingsTable::loadDefaults() {
    fill([](core::SettingsFile) { return QString(); }); // no file, no keys
}

void SettingsTable::fill(const std::function<QString(core::SettingsFile)>& fileOf) {
    std::map<core::SettingsFile, core::IniReader> files;
    std::vector<QString> values;
    for (const SettingsRow& row : rows) {
        const core::SettingsFile file = row.setting.file;
        if (!files.contains(file))
            files.emplace(file, core::IniReader(fileOf(file)));
        values.push_back(storedIn(files.at(file), row.setting));
    }
    const QScopedValueRollback loading(m_isLoading, true);
    for (std::size_t i = 0; i < rows.size(); ++i)
        show(rows[i], values[i]);
}

core::SettingsChange SettingsTable::change(const core::Session& session) const {
    core::SettingsChange change;
    for (const SettingsRow& row : rows) {
        if (const std::optional<QString> value = valueOf(row))
            change.set(session, row.setting, *value);
    }
    return change;
}

void SettingsTable::onChange(const std::function<void()>& changed) {
    const auto tell = [this, changed] {
        if (!m_isLoading)
            changed();
    };
    const auto listen = Overloaded{
        [](NoControl) {},
        [](QListWidgetItem*) {},
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
