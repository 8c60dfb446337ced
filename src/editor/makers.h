// The tags that the makers write: what their boxes hold becomes text. Plain functions of their arguments: the
// complaints are asked for while somebody types, the tag when they are done.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace velloria::editor {

enum class ListKind { Marks, Numbers };

/// What the boxes of the list maker hold.
struct ListBoxes {
    ListKind kind = ListKind::Marks;
    int mark = 0;      ///< place in the list of marks
    QString numbering; ///< the text of its box: "0" to "4" name a kind of numbers, any other text names none
    QString start = QStringLiteral("1"); ///< number of the first item
    QString contents;                    ///< one item a line, lines end in CR LF
    bool dropsLastEmpty = false;         ///< an empty last line is no item
};

struct RuleBoxes {
    QString size = QStringLiteral("2");
    QString width = QStringLiteral("100"); ///< per cent
    int align = 1;                         ///< left, middle, right
    bool isWithoutShade = false;
    QString colour; ///< "" for none
};

struct FontBoxes {
    QString size; ///< "" for none, as in the others
    QString colour;
    QString face;
};

/// The whole list, in one line. Throws platform::Failure when a numbered one starts with no number.
QString listTag(const ListBoxes& boxes);

/// Throws platform::Failure when size or width is no number of 16 bits.
QString ruleTag(const RuleBoxes& boxes);

QString fontOpening(const FontBoxes& boxes);
inline constexpr QLatin1StringView kFontClosing("</FONT>");

/// The sizes on offer, and the place of the one to begin with.
struct FontSizes {
    QStringList texts;
    int first;
};
FontSizes absoluteFontSizes();
FontSizes relativeFontSizes();

/// What is wrong with a start number or a width, nothing when it will do.
std::optional<QString> startComplaint(const QString& text);
std::optional<QString> widthComplaint(const QString& text);

/// Whether a rule of this width can be aligned: one of 100 per cent can't. Nothing for a text that is no number.
std::optional<bool> isAlignable(const QString& width);

} // namespace velloria::editor
