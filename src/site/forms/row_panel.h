// A panel of the customize dialog, built from its table.
#pragma once

#include "desktop/context.h"
#include "desktop/settings_table.h"
#include "site/forms/customize_rows.h"

#include <QWidget>

class QGridLayout;
class QPushButton;

namespace velloria::site {

/// Shows the rows in groups, in one or two columns. It tells what somebody does and decides nothing.
class RowPanel : public QWidget {
    Q_OBJECT
public:
    /// `cancel` is the button that gives up: who goes there leaves no box. Throws platform::Failure when the names of
    /// the colours can't be read.
    RowPanel(desktop::Context& context, CustomizePanel panel, QWidget& cancel);

    /// Its settings, with the controls that edit them.
    std::vector<desktop::SettingsRow> settings;

    /// After the controls have been filled: rows that mean nothing now are disabled, lines show their beginning.
    void settle();

Q_SIGNALS:
    /// Another text in a box, by whomever.
    void edited(QWidget* box);
    /// The focus has left a box.
    void left(QWidget* box);
    /// What counts at once: something ticked, an option, a colour or a picture from its button. `box` is the box that
    /// got its text from there.
    void chosen(QWidget* box);

private:
    using Grid = QGridLayout;

    void enableRows() const;
    void addRow(const CustomizeRow& row, Grid& grid);
    void addText(const CustomizeRow& row, Grid& grid);
    void addFlag(const CustomizeRow& row, Grid& grid);
    void addChoice(const CustomizeRow& row, Grid& grid);
    void addColour(const CustomizeRow& row, Grid& grid);
    void addPicture(const CustomizeRow& row, Grid& grid);
    void addLabel(const CustomizeRow& row, Grid& grid, QWidget* buddy);
    QPushButton* addButton(const QString& name, const QString& sign, const QString& tip);
    void watchLeaving(QWidget& box);
    void choosePicture(QWidget& box);

    desktop::Context& m_context;
    QWidget& m_cancel;
    std::vector<std::pair<QStringView, QWidget*>> m_needs; ///< a flag, and what it is for
};

} // namespace velloria::site
