// What becomes of each column of an old diary, by the version of its layout.
#pragma once

#include "store/old_diary.h"

namespace velloria::store {

/// What a column of the present layout holds.
enum class ColumnKind {
    Text,
    Day,    ///< a text, written "yyyy/mm/dd" where it is a date
    Number, ///< 16 bits
    Flag    ///< 0 or 1
};

struct ColumnRule {
    const char* name;
    ColumnKind kind = ColumnKind::Text;
    qint16 since = 0;        ///< from this version on a diary has the column
    OldValue otherwise = {}; ///< what one without it gets
    OldValue whenNull = {};  ///< what a missing value becomes
    /// In the place of `otherwise`: what the row's old "Day" tells.
    OldValue (*fromDay)(const OldValue& day) = nullptr;
};

struct TableRule {
    const char* name;
    qint16 since; ///< from this version on a diary has the table
    QString begins;
    QString ends;
    std::vector<ColumnRule> columns; ///< in the order of copying

    /// Those that a diary of this version has.
    QStringList columnsOf(qint16 version) const;
};

/// In the order of copying. Autonumbers are not copied. "Memo" has three columns more, which no diary of up to version
/// 220 brings along: they keep the template's defaults.
const std::vector<TableRule>& tableRules();

} // namespace velloria::store
