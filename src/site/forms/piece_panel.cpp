#include "site/forms/piece_panel.h"

#include "desktop/combo.h"
#include "desktop/leave_check.h"
#include "desktop/text_pane.h"
#include "site/customize_sets.h"
#include "site/forms/control_tag.h"
#include "site/forms/customize_rows.h"
#include "site/text_piece.h"

#include <QFrame>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

struct Names {
    QString box;
    QString make;
    QString remove;
    QString pane;
};

Names namesOf(CustomizePanel panel) {
    if (panel == CustomizePanel::Head)
        return {u"cmbHeadTag"_s, u"Btn_Head_New"_s, u"Btn_Head_Delete"_s, u"txtHeadTag"_s};
    return {u"cmbUpDownText"_s, u"Btn_New_UpDwn"_s, u"Btn_Delete_UpDwn"_s, u"txtUpDownText"_s};
}

QPushButton* button(const QString& name, const QString& caption, QWidget* parent) {
    auto* made = new QPushButton(caption, parent);
    made->setObjectName(name);
    made->setAutoDefault(false);
    return made;
}

} // namespace

PiecePanel::PiecePanel(desktop::Context& context, CustomizePanel panel, QWidget& cancel)
    : m_context(context) {
    setObjectName(nameOf(panel).toString());
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    if (panel == CustomizePanel::HeadFoot)
        addHalves();
    // Made in the order in which the Tab key leads through them.
    m_names = new desktop::Combo(this);
    m_new = button(namesOf(panel).make, u"新規..."_s, this);
    m_delete = button(namesOf(panel).remove, u"消去"_s, this);
    m_pane = new desktop::TextPane(this);
    auto* label = new QLabel(u"テキスト"_s);
    label->setBuddy(m_names);
    m_names->setObjectName(namesOf(panel).box);
    m_names->setAccessibleName(label->text());
    m_names->setMinimumContentsLength(20);
    m_names->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_names->setPlaceholderText(u"なし"_s);
    m_names->setAction(true);
    auto* line = new QHBoxLayout;
    line->addWidget(label);
    line->addWidget(m_names, 1);
    line->addWidget(m_new);
    line->addWidget(m_delete);
    rows->addLayout(line);
    m_pane->setObjectName(namesOf(panel).pane);
    addPane(cancel);
    connect(m_names, &QComboBox::activated, this, [this] { Q_EMIT picked(m_names->currentText()); });
    connect(m_new, &QPushButton::clicked, this, &PiecePanel::newWanted);
    connect(m_delete, &QPushButton::clicked, this, &PiecePanel::deleteWanted);
}

void PiecePanel::addHalves() {
    m_state = new QFrame(this);
    m_state->setObjectName(u"OptUpDownState"_s);
    auto* line = new QHBoxLayout(m_state);
    line->setContentsMargins({});
    const auto option = [&](const QString& name, const QString& caption, PageText half) {
        auto* made = new QRadioButton(caption, m_state);
        made->setObjectName(name);
        line->addWidget(made);
        connect(made, &QRadioButton::clicked, this, [this, half] { Q_EMIT halfPicked(half); });
        return made;
    };
    m_up = option(u"OptUpDownUp"_s, u"ページの上"_s, PageText::Up);
    m_down = option(u"OptUpDownDown"_s, u"ページの下"_s, PageText::Down);
    line->addStretch(1);
    layout()->addWidget(m_state);
    showHalf(PageText::Up);
}

void PiecePanel::addPane(QWidget& cancel) {
    m_pane->setAccessibleName(u"テキストの内容"_s);
    m_pane->setUndoRedoEnabled(true);
    layout()->addWidget(m_pane);
    new desktop::LeaveCheck(*m_pane, cancel, [this] { Q_EMIT left(m_pane); });
    connect(m_pane, &desktop::TextPane::changed, this, [this] { Q_EMIT edited(m_pane); });
    connect(m_pane, &desktop::TextPane::undoWanted, m_pane, &QPlainTextEdit::undo);
    connect(m_pane, &desktop::TextPane::redoWanted, m_pane, &QPlainTextEdit::redo);
    connect(m_pane, &desktop::TextPane::lineBreakWanted, m_pane, [this] { m_pane->replaceSelection(u"\n"_s); });
    connect(m_pane, &desktop::TextPane::popUpWanted, m_pane, [this](const QPoint& place) {
        QMenu* menu = m_pane->createStandardContextMenu();
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(place);
    });
}

void PiecePanel::show(const QString& name) {
    const QSignalBlocker silent(m_names);
    m_names->clear();
    m_names->addItems(textPieces(m_context.session));
    m_names->setCurrentIndex(m_names->findText(name, Qt::MatchFixedString));
    m_name = m_names->currentIndex() < 0 ? QString() : m_names->currentText();
    m_isShown = false;
    m_pane->setText({});
    m_delete->setEnabled(!m_name.isEmpty());
    m_pane->setEnabled(false);
    m_pane->setPlaceholderText(u"「新規」で作るか、上の一覧で選ぶと、ここで書けます。"_s);
    const TextPiece piece = readTextPiece(m_context.session, m_name);
    if (piece.isTooLong)
        m_pane->setPlaceholderText(u"このテキストは長すぎるので、ここでは変更できません。"_s);
    m_pane->setText(piece.text);
    m_pane->document()->clearUndoRedoStacks();
    m_isShown = !m_name.isEmpty() && !piece.isTooLong;
    m_pane->setEnabled(m_isShown);
    setEdited(*m_pane, false);
}

void PiecePanel::pickShown() {
    const QSignalBlocker silent(m_names);
    m_names->setCurrentIndex(m_names->findText(m_name, Qt::MatchFixedString));
}

void PiecePanel::showHalf(PageText half) {
    m_half = half;
    if (!m_state)
        return;
    m_state->setProperty("tag", half == PageText::Up ? u"Head"_s : u"Foot"_s);
    (half == PageText::Up ? m_up : m_down)->setChecked(true);
}

} // namespace velloria::site
