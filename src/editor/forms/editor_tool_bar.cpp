#include "editor/forms/editor_tool_bar.h"

#include "desktop/form_keys.h"

#include <QLayout>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace velloria::editor {

EditorToolBar::EditorToolBar(const QPalette& palette) {
    using desktop::IconName;
    setObjectName(u"cToolbar"_s);
    setAccessibleName(u"編集ツール"_s);
    setIconSize({18, 18});
    layout()->setContentsMargins(0, 0, 0, 0);
    m_save[0] = add(palette, u"SaveToMDBOnly"_s, IconName::Save, u"日記を保存します"_s, &EditorToolBar::saveWanted,
                    u"Ctrl+U"_s);
    m_save[1] = add(palette, u"SaveToMDB"_s, IconName::SaveAndPreview, u"日記を保存してローカルブラウザを更新します"_s,
                    &EditorToolBar::saveAndPreviewWanted, u"Ctrl+P"_s);
    addSeparator();
    m_insert[0] =
        add(palette, u"InsertURL"_s, IconName::InsertUrl, u"BrowserのURLを挿入します"_s, &EditorToolBar::addressWanted);
    m_insert[1] =
        add(palette, u"InsertImg"_s, IconName::InsertImage, u"イメージを挿入します"_s, &EditorToolBar::imageWanted);
    m_insert[2] = add(palette, u"InsertTag"_s, IconName::InsertTag, u"右で選んだHTMLタグを挿入できます"_s,
                      &EditorToolBar::tagWanted);
    setMinimumWidth(sizeHint().width()); // the list beside it gives way first
}

QToolButton* EditorToolBar::add(const QPalette& palette, const QString& key, desktop::IconName icon, const QString& tip,
                                void (EditorToolBar::*wanted)(), const QString& keys) {
    auto* button = new QToolButton;
    button->setObjectName(key);
    button->setIcon(desktop::icon(icon, palette));
    button->setToolTip(keys.isEmpty() ? tip : desktop::tipWithKeys(tip, keys));
    button->setAccessibleName(tip);
    button->setAutoRaise(true);
    // The pane that a tool works on keeps the focus when the mouse is used.
    button->setFocusPolicy(Qt::TabFocus);
    addWidget(button);
    connect(button, &QToolButton::clicked, this, wanted);
    return button;
}

void EditorToolBar::setSavable(bool isOn) {
    for (QToolButton* button : m_save)
        button->setEnabled(isOn);
}

void EditorToolBar::setInsertable(bool isOn) {
    for (QToolButton* button : m_insert)
        button->setEnabled(isOn);
}

QList<QWidget*> EditorToolBar::tools() const {
    return {m_save[0], m_save[1], m_insert[0], m_insert[1], m_insert[2]};
}

} // namespace velloria::editor
