// The customize dialog on a screen, and words to work it.
#pragma once

#include "core/files.h"
#include "core/keys.h"
#include "core/settings.h"
#include "core/site_keys.h"
#include "desktop/combo.h"
#include "desktop/text_pane.h"
#include "site/customize_sets.h"
#include "site/forms/customize_rows.h"
#include "site/forms/frmCustomize.h"
#include "support/desktop_home.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace velloria::tests {

/// Fixture: a diary with entries of this month; changes are shown by an Apply alone, until a test says otherwise.
class CustomizeHome : public DesktopHome {
protected:
    void SetUp() override {
        write(QStringLiteral("2004/05/02"), QStringLiteral("二日"));
        write(QStringLiteral("2004/05/06"), QStringLiteral("六日"));
        showTop();
        desk.events = {};
    }

    void setRealTime(bool isOn) { setSetting(core::keys::kRealTime, isOn ? QStringLiteral("1") : QStringLiteral("0")); }
    void open() {
        top().command(QStringLiteral("MnuCustomize"))->trigger();
        settle();
        ASSERT_TRUE(isOpen());
        ASSERT_TRUE(becomesActive(*window()));
    }
    site::frmCustomize* window() { return context.windows.find<site::frmCustomize>(); }
    bool isOpen() { return window() && window()->isVisible(); }

    template <class Control>
    Control& field(const QString& name) {
        return control<Control>(*window(), name);
    }
    QLineEdit& line(const QString& name) { return field<QLineEdit>(name); }
    desktop::Combo& box(const QString& name) { return field<desktop::Combo>(name); }
    desktop::TextPane& pane(const QString& name) { return field<desktop::TextPane>(name); }
    QPushButton& button(const QString& name) { return field<QPushButton>(name); }
    void press(const QString& name) {
        button(name).click();
        settle();
    }
    /// Picks an item as a person does, the one that is picked already too.
    void pick(const QString& boxName, const QString& item) {
        QComboBox& box = this->box(boxName);
        const int index = box.findText(item);
        ASSERT_GE(index, 0) << item.toStdString();
        box.setCurrentIndex(index);
        Q_EMIT box.activated(index);
        settle();
    }
    void category(const QString& text) { pick(QStringLiteral("cmbCategory"), text); }
    /// Writes into a line or an editable box and leaves it.
    void writeInto(QWidget& control, const QString& text) {
        control.setFocus();
        settle();
        if (auto* combo = qobject_cast<QComboBox*>(&control))
            combo->setEditText(text);
        else
            static_cast<QLineEdit&>(control).setText(text);
        leave();
    }
    /// The focus goes to the list of categories.
    void leave() {
        box(QStringLiteral("cmbCategory")).setFocus();
        settle();
    }
    bool canApply() { return button(QStringLiteral("Btn_Apply")).isEnabled(); }
    static QString tag(const QWidget& control) { return control.property("tag").toString(); }

    QString stored(const core::Setting& setting) const { return core::Settings(session).text(setting); }
    QByteArray set() const { return bytesOf(session.CustIniFile); }
    QString setFile(const QString& name) const { return site::customizeSetFile(session, name); }
    QByteArray piece(const QString& name) const { return bytesOf(site::textPieceFile(session, name)); }
    bool hasBackup() const { return exists(core::files::kCustomizeBackup.in(session)); }
    QString page() const { return pageOf(core::files::kCustomizePreview.in(session)); }
};

} // namespace velloria::tests
