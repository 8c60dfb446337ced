// The registry of windows, and of what several of them show: one of a kind, made on first use.
#pragma once

#include <QPointer>

#include <typeindex>
#include <vector>

namespace velloria::desktop {

struct Context;

class Windows {
public:
    explicit Windows(Context& context)
        : m_context(context) {}
    ~Windows() { closeAll(); }
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;

    /// The window of this kind; the first call makes it. What a window gets from here while it is made outlives it.
    template <class Window>
    Window& get() {
        if (Window* window = find<Window>())
            return *window;
        auto* made = new Window(m_context);
        m_made.push_back({typeid(Window), made});
        return *made;
    }

    /// The window if it was made and not unloaded since.
    template <class Window>
    Window* find() const {
        for (const Made& made : m_made) {
            if (made.kind == typeid(Window) && made.window)
                return static_cast<Window*>(made.window.data());
        }
        return nullptr;
    }

    /// Destroys the window; what it keeps for the next time it writes on its way out.
    template <class Window>
    void unload() {
        delete find<Window>();
    }

    /// Destroys all windows, the last made first.
    void closeAll();

private:
    struct Made {
        std::type_index kind;
        QPointer<QObject> window; ///< a parent may destroy it first
    };

    Context& m_context;
    std::vector<Made> m_made;
};

} // namespace velloria::desktop
