// Keys of a whole window, whatever control in it has the focus.
#pragma once

#include <QKeyCombination>
#include <QObject>
#include <QWidget>

#include <functional>
#include <vector>

namespace velloria::desktop {

/// Takes its keys before the window's controls see them, for a control may have a meaning of its own for one of them
/// (Ctrl+U deletes a line), and before they are looked for among the shortcuts of the menus.
class FormKeys : public QObject {
    Q_OBJECT
public:
    /// Owned by the window, which may also be one control.
    explicit FormKeys(QWidget& window);

    /// The keypad makes no difference.
    void add(QKeyCombination keys, std::function<void()> action);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Key {
        QKeyCombination keys;
        std::function<void()> action;
    };
    QWidget& m_window;
    std::vector<Key> m_keys;
};

/// A tip with the keys behind it that do the same.
QString tipWithKeys(const QString& tip, const QString& keys);

} // namespace velloria::desktop
