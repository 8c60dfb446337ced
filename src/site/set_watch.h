// Two programs may work on one customize set. Each writes all of it, so that the one would undo the other unnoticed.
#pragma once

#include "core/run.h"

#include <QByteArray>

#include <optional>

namespace velloria::site {

/// Remembers what the selected set held when its dialog last read or wrote it.
class SetWatch {
public:
    /// `run` is that of the dialog and outlives this.
    explicit SetWatch(const core::Run& run);

    /// What the set holds now is known. Throws platform::Failure when it can't be read.
    void look();

    /// Whether the dialog may write: nobody else has changed the set meanwhile, or the user says that it may all the
    /// same. A set that has vanished then is back as it was known. Throws platform::Failure.
    bool mayWrite();
    /// The same of taking all back that the dialog has written.
    bool mayTakeBack();

private:
    const core::Run* m_run;
    std::optional<QByteArray> m_known;
};

} // namespace velloria::site
