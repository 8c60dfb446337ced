// Where the child windows stand in the main window.
#pragma once

#include "desktop/context.h"
#include "desktop/window_place.h"

namespace velloria::shell {

class Arrangement {
public:
    explicit Arrangement(desktop::Context& context)
        : m_context(context) {}

    /// Editor below the calendar, browser beside both, at the standard sizes or as large as their contents need, the
    /// calendar at its own; then the browser's start page.
    void mnuStandard();
    /// As `mnuSaveWndPos` kept it; what was never kept takes the standard values. Then the browser's start page.
    void mnuLoadWndPos();
    void mnuSaveWndPos();
    /// The visible child windows as columns, in the order in which they stand: of equal width and the area's height,
    /// but the calendar no larger than is of use.
    void MnuVertical();

    /// The preview if it is there, otherwise the short manual.
    void showStartPage();

private:
    /// Of the calendar the position alone: its size is its own.
    void arrange(const desktop::WindowPlace& calendarPlace, const desktop::WindowPlace& editorPlace,
                 const desktop::WindowPlace& browserPlace);

    desktop::Context& m_context;
};

} // namespace velloria::shell
