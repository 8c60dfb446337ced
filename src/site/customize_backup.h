// The customize set as it was before its dialog began to write to it: with live changes each of them is on the disk at
// once, and a Cancel must be able to take all of them back.
#pragma once

#include "core/run.h"

#include <QByteArray>

#include <optional>

namespace velloria::site {

/// The backup of one set, in a file beside the program, together with the set's name: a dialog that is killed can't
/// take anything back, and the next one offers it.
class CustomizeBackup {
public:
    /// `session` outlives it.
    explicit CustomizeBackup(const core::Session& session);

    /// Takes the backup of the selected set, in place of the one before. Throws platform::Failure; there is none then.
    void take();
    /// Whether there is one, of whatever set: only what this object took counts.
    bool isTaken() const { return m_bytes.has_value(); }
    /// Whether the set's file is another one than it was, byte by byte.
    bool isSetChanged() const;
    /// Puts the set back. Throws platform::Failure with the set as it is and the backup kept.
    void restore() const;
    /// Removes the backup: what the set holds stays.
    void drop();

private:
    const core::Session& m_session;
    QString m_set;                     ///< the file that it is of
    std::optional<QByteArray> m_bytes; ///< what the file held
};

/// Before the dialog opens: what a killed one has changed in the selected set can be taken back, when the user says so.
/// A backup of any other set, or of a set that is as it was, is removed without a word, and so is this one after the
/// answer. Throws platform::Failure with the backup kept when the set can't be put back.
void settleLeftBackup(const core::Run& run);

} // namespace velloria::site
