// A link in a window.
#pragma once

#include <QLabel>

namespace velloria::desktop {

/// Its text is one link, which is marked while it has the keys: Enter follows it, Tab and Shift+Tab lead on.
class LinkLabel : public QLabel {
    Q_OBJECT
public:
    explicit LinkLabel(QWidget* parent = nullptr);

protected:
    void focusInEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;
};

} // namespace velloria::desktop
