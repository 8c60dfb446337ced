// A panel of the customize dialog with text pieces: which one the set names, and its text.
#pragma once

#include "desktop/context.h"
#include "site/customize_categories.h"

#include <QWidget>

class QFrame;
class QPushButton;
class QRadioButton;

namespace velloria::desktop {
class Combo;
class TextPane;
} // namespace velloria::desktop

namespace velloria::site {

/// Shows pieces and tells what somebody wants; it reads no setting and writes nothing.
class PiecePanel : public QWidget {
    Q_OBJECT
public:
    /// For CustomizePanel::Head or HeadFoot, which has an upper and a lower text. `cancel`: see RowPanel.
    PiecePanel(desktop::Context& context, CustomizePanel panel, QWidget& cancel);

    /// The pieces that there are now, this one chosen, with its text. A name that is not among them is none. Throws
    /// platform::Failure when it can't be read, with the piece chosen and the box empty and disabled.
    void show(const QString& name);
    /// The piece whose text is shown, "" for none, whatever somebody picks meanwhile.
    const QString& name() const { return m_name; }
    /// The list shows that again.
    void pickShown();

    PageText half() const { return m_half; }
    void showHalf(PageText half);

    desktop::TextPane& pane() const { return *m_pane; }
    /// Whether the text is there to be saved: not so one that is too long for the box.
    bool isShown() const { return m_isShown; }

Q_SIGNALS:
    void edited(QWidget* box);
    void left(QWidget* box);
    void picked(const QString& name);
    void halfPicked(PageText half);
    void newWanted();
    void deleteWanted();

private:
    void addHalves();
    void addPane(QWidget& cancel);

    desktop::Context& m_context;
    desktop::Combo* m_names = nullptr;
    desktop::TextPane* m_pane = nullptr;
    QPushButton* m_new = nullptr;
    QPushButton* m_delete = nullptr;
    QFrame* m_state = nullptr; ///< of the options, "Head" or "Foot"
    QRadioButton* m_up = nullptr;
    QRadioButton* m_down = nullptr;
    QString m_name;
    PageText m_half = PageText::Up;
    bool m_isShown = false;
};

} // namespace velloria::site
