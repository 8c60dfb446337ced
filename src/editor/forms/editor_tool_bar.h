// The tools of the editor: saving, and what inserts something.
#pragma once

#include "desktop/icons.h"

#include <QToolBar>

#include <array>

class QToolButton;

namespace velloria::editor {

class EditorToolBar : public QToolBar {
    Q_OBJECT
public:
    /// `palette` colours the pictures.
    explicit EditorToolBar(const QPalette& palette);

    void setSavable(bool isOn);
    void setInsertable(bool isOn);

    /// In the order in which Tab leads through them.
    QList<QWidget*> tools() const;

Q_SIGNALS:
    void saveWanted();
    void saveAndPreviewWanted();
    void addressWanted();
    void imageWanted();
    void tagWanted();

private:
    QToolButton* add(const QPalette& palette, const QString& key, desktop::IconName icon, const QString& tip,
                     void (EditorToolBar::*wanted)(), const QString& keys = {});

    std::array<QToolButton*, 2> m_save{};
    std::array<QToolButton*, 3> m_insert{};
};

} // namespace velloria::editor
