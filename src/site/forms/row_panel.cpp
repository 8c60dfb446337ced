#include "site/forms/row_panel.h"

#include "convert/forms/colour_row.h"
#include "desktop/combo.h"
#include "desktop/command.h"
#include "desktop/leave_check.h"
#include "desktop/line_box.h"
#include "site/background_picture.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QIntValidator>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QVBoxLayout>

#include <limits>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

constexpr int kColumns = 4; ///< label, box, two buttons
constexpr int kDigits = 6;

/// As it stands in the file: a number that no page can use is there to be mended.
core::Setting asText(const CustomizeRow& row) {
    core::Setting setting = *row.setting;
    if (setting.kind == core::SettingKind::Number || setting.kind == core::SettingKind::Flag)
        setting.kind = core::SettingKind::Text;
    return setting;
}

QString nameOf(QStringView kind, const CustomizeRow& row) {
    return kind.toString() + row.name.toString();
}

/// What a page takes for on: the number 1, whatever stands behind it.
QString shownFlag(const QString& stored) {
    static const QRegularExpression kOne(u"^\\s*\\+?0*1(?!\\d)"_s);
    return kOne.match(stored).hasMatch() ? u"1"_s : u"0"_s;
}

} // namespace

RowPanel::RowPanel(desktop::Context& context, CustomizePanel panel, QWidget& cancel)
    : m_context(context)
    , m_cancel(cancel) {
    setObjectName(nameOf(panel).toString());
    auto* columns = new QHBoxLayout(this);
    columns->setContentsMargins({});
    QVBoxLayout* rowsOf[] = {nullptr, nullptr};
    for (const CustomizeGroup& group : groupsOf(panel)) {
        QVBoxLayout*& column = rowsOf[group.column];
        if (!column) {
            column = new QVBoxLayout;
            columns->addLayout(column, 1);
        }
        auto* box = new QGroupBox(group.caption.toString());
        auto* grid = new QGridLayout(box);
        grid->setColumnStretch(1, 1);
        column->addWidget(box);
        for (const CustomizeRow& row : group.rows)
            addRow(row, *grid);
    }
    for (QVBoxLayout* column : rowsOf) {
        if (column)
            column->addStretch(1);
    }
}

void RowPanel::addRow(const CustomizeRow& row, Grid& grid) {
    switch (row.kind) {
    case RowKind::Text:
    case RowKind::Number:
        return addText(row, grid);
    case RowKind::Flag:
        return addFlag(row, grid);
    case RowKind::Choice:
        return addChoice(row, grid);
    case RowKind::Colour:
        return addColour(row, grid);
    case RowKind::Picture:
        return addPicture(row, grid);
    }
}

/// In the next line of the grid.
void RowPanel::addLabel(const CustomizeRow& row, Grid& grid, QWidget* buddy) {
    auto* label = new QLabel(row.caption.toString());
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(buddy);
    grid.addWidget(label, grid.rowCount(), 0);
    if (!row.needs.isEmpty())
        m_needs.insert(m_needs.end(), {{row.needs, label}, {row.needs, buddy}});
}

void RowPanel::addText(const CustomizeRow& row, Grid& grid) {
    auto* box = new desktop::LineBox(this);
    box->setObjectName(nameOf(u"txt", row));
    box->setAccessibleName(row.caption.toString());
    addLabel(row, grid, box);
    const int line = grid.rowCount() - 1;
    if (row.kind == RowKind::Number) {
        using Limits = std::numeric_limits<qint16>;
        desktop::keepShort(*box, kDigits);
        box->setValidator(new QIntValidator(Limits::min(), Limits::max(), box));
        grid.addWidget(box, line, 1, 1, kColumns - 1, Qt::AlignLeft);
    } else {
        grid.addWidget(box, line, 1, 1, kColumns - 1);
    }
    settings.push_back({box, asText(row), {}});
    connect(box, &QLineEdit::textChanged, this, [this, box] { Q_EMIT edited(box); });
    watchLeaving(*box);
}

void RowPanel::addFlag(const CustomizeRow& row, Grid& grid) {
    auto* box = new QCheckBox(row.caption.toString(), this);
    box->setObjectName(nameOf(u"chk", row));
    grid.addWidget(box, grid.rowCount(), 0, 1, kColumns);
    if (!row.needs.isEmpty())
        m_needs.push_back({row.needs, box});
    settings.push_back({box, asText(row), {shownFlag, {}}});
    connect(box, &QCheckBox::toggled, this, &RowPanel::enableRows);
    connect(box, &QCheckBox::clicked, this, [this, box] { Q_EMIT chosen(box); });
}

void RowPanel::addChoice(const CustomizeRow& row, Grid& grid) {
    // Options are one group while they are alone in their parent.
    auto* group = new QWidget(this);
    auto* line = new QHBoxLayout(group);
    line->setContentsMargins({});
    desktop::Choice choice;
    for (const RowOption& option : row.options) {
        auto* button = new QRadioButton(option.caption.toString(), group);
        button->setObjectName(nameOf(u"opt", row) + option.value.toString());
        button->setAccessibleName(row.caption.toString() + u' ' + option.caption.toString());
        line->addWidget(button);
        choice.options.push_back({button, option.value.toString()});
        connect(button, &QRadioButton::clicked, this, [this, button] { Q_EMIT chosen(button); });
    }
    line->addStretch(1);
    addLabel(row, grid, choice.options.front().first);
    if (!row.needs.isEmpty())
        m_needs.push_back({row.needs, group});
    grid.addWidget(group, grid.rowCount() - 1, 1, 1, kColumns - 1);
    const auto shown = [row](const QString& stored) { return stored.isEmpty() ? row.whenEmpty.toString() : stored; };
    settings.push_back({choice, asText(row), {shown, {}}});
}

void RowPanel::addColour(const CustomizeRow& row, Grid& grid) {
    auto* box = new desktop::Combo(this);
    box->setObjectName(nameOf(u"cmbColor_", row));
    box->setAccessibleName(row.caption.toString());
    box->setMinimumContentsLength(14);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    addLabel(row, grid, box);
    const int line = grid.rowCount() - 1;
    grid.addWidget(box, line, 1);
    QPushButton* exchange = addButton(nameOf(u"Btn_ColorEx_", row), u"⇔"_s, u"色の名前と番号を入れ替えます"_s);
    QPushButton* dialog = addButton(nameOf(u"Btn_GetColor_", row), u"..."_s, u"色を選びます"_s);
    grid.addWidget(exchange, line, 2);
    grid.addWidget(dialog, line, 3);
    auto* colours =
        new convert::ColourRow(m_context, *box, *exchange, *dialog, convert::ColourRow::StartsAt::NumberOnly);
    for (QWidget* control : {static_cast<QWidget*>(exchange), static_cast<QWidget*>(dialog)}) {
        if (!row.needs.isEmpty())
            m_needs.push_back({row.needs, control});
    }
    settings.push_back({box, asText(row), {}});
    connect(box, &QComboBox::currentTextChanged, this, [this, box] { Q_EMIT edited(box); });
    connect(colours, &convert::ColourRow::chosen, this, [this, box] { Q_EMIT chosen(box); });
    watchLeaving(*box);
}

void RowPanel::addPicture(const CustomizeRow& row, Grid& grid) {
    auto* box = new desktop::LineBox(this);
    box->setObjectName(nameOf(u"txt", row) + u"BGImage"_s);
    box->setAccessibleName(row.caption.toString());
    addLabel(row, grid, box);
    const int line = grid.rowCount() - 1;
    QPushButton* open = addButton(nameOf(u"Btn_", row) + u"OpenFolder_BGImage"_s, u"..."_s, u"画像を選びます"_s);
    open->setMaximumWidth(3 * open->fontMetrics().height()); // a sign is on it, and no word
    grid.addWidget(box, line, 1, 1, kColumns - 2);
    grid.addWidget(open, line, kColumns - 1);
    settings.push_back({box, asText(row), {}});
    connect(box, &QLineEdit::textChanged, this, [this, box] { Q_EMIT edited(box); });
    connect(open, &QPushButton::clicked, this,
            [this, box] { desktop::runCommand(m_context.desk, [this, box] { choosePicture(*box); }); });
    watchLeaving(*box);
}

QPushButton* RowPanel::addButton(const QString& name, const QString& sign, const QString& tip) {
    auto* button = new QPushButton(sign, this);
    button->setObjectName(name);
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    button->setAutoDefault(false);
    return button;
}

void RowPanel::watchLeaving(QWidget& box) {
    new desktop::LeaveCheck(box, m_cancel, [this, &box] { Q_EMIT left(&box); });
}

/// A picture that could not be registered is chosen all the same.
void RowPanel::choosePicture(QWidget& box) {
    const std::optional<QString> path = site::choosePicture(m_context);
    if (!path)
        return;
    static_cast<QLineEdit&>(box).setText(pictureAddress(*path));
    desktop::runCommand(m_context.desk, [&] { offerRegistration(m_context, *path); });
    Q_EMIT chosen(&box);
}

void RowPanel::settle() {
    enableRows();
    for (QLineEdit* box : findChildren<QLineEdit*>())
        box->home(false);
}

void RowPanel::enableRows() const {
    for (const auto& [flag, control] : m_needs) {
        const bool mustBeOff = flag.startsWith(u'!');
        const auto* box = findChild<QCheckBox*>(flag.sliced(mustBeOff ? 1 : 0).toString());
        control->setEnabled(box->isChecked() != mustBeOff);
    }
}

} // namespace velloria::site
