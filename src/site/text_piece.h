// One text piece as its dialog edits it. A piece is shared by sets, and a set names it.
#pragma once

#include "core/session.h"

#include <QString>

namespace velloria::site {

/// A longer piece, and one with a longer line, is no text for a box in a dialog: each key would take it too long.
inline constexpr qint64 kMostPieceBytes = 1 << 20;
inline constexpr qsizetype kLongestLine = 1 << 15;

struct TextPiece {
    QString text;           ///< as somebody would type it: references that stand for characters are turned back
    bool isTooLong = false; ///< `text` is empty then
};

/// A missing piece, and no name, is an empty one. Throws platform::Failure when it can't be read.
TextPiece readTextPiece(const core::Session& session, const QString& name);

/// Replaces the piece, or makes it. Throws platform::Failure with the old one in its place.
void writeTextPiece(const core::Session& session, const QString& name, const QString& text);

/// The same with the bytes of another piece, whatever they are.
void copyTextPiece(const core::Session& session, const QString& from, const QString& to);

} // namespace velloria::site
