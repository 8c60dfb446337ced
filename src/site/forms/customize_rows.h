// The panels of the customize dialog as tables: one setting of the set a row. A new setting is a row here and one of
// core/site_keys.h.
#pragma once

#include "core/setting.h"
#include "site/customize_categories.h"

#include <span>

namespace velloria::site {

/// How a setting is edited, and under which object names.
enum class RowKind {
    Text,    ///< a line, "txt<name>"
    Number,  ///< a short line for a number of 16 bits, "txt<name>"
    Flag,    ///< a box to tick, "chk<name>"
    Choice,  ///< one of some options, "opt<name><value>"
    Colour,  ///< any text beside the list of colours, "cmbColor_<name>", with "Btn_ColorEx_<name>" and
             ///< "Btn_GetColor_<name>"
    Picture, ///< a line, "txt<name>BGImage", with "Btn_<name>OpenFolder_BGImage"
};

struct RowOption {
    QStringView value;
    QStringView caption;
};

struct CustomizeRow {
    RowKind kind;
    QStringView name;
    QStringView caption;
    const core::Setting* setting;
    std::span<const RowOption> options = {};
    QStringView whenEmpty = {}; ///< the option that a page makes of an empty value
    QStringView needs = {};     ///< the flag that must be on for this row to mean something; with "!" it must be off
};

struct CustomizeGroup {
    QStringView caption;
    int column; ///< 0 left, 1 right
    std::span<const CustomizeRow> rows;
};

/// Nothing for the two panels with text pieces.
std::span<const CustomizeGroup> groupsOf(CustomizePanel panel);

/// The fixed name of the panel.
QStringView nameOf(CustomizePanel panel);

} // namespace velloria::site
