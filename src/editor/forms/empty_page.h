// The editor while no day is open.
#pragma once

#include <QObject>

#include <functional>

namespace velloria::editor {

/// An event filter for the page of the editor: whoever clicks or types there wants to write. What is disabled lets
/// clicks through to the page.
class EmptyPage : public QObject {
public:
    /// `write` opens a day. Where it comes back with true, the key that asked for it goes where the focus is then.
    EmptyPage(QObject* parent, std::function<bool()> isEmpty, std::function<bool()> write);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const std::function<bool()> m_isEmpty;
    const std::function<bool()> m_write;
};

} // namespace velloria::editor
