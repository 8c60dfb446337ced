// What the address box and the search box of the browser remember from run to run.
#pragma once

#include "core/run.h"
#include "platform/outcome.h"

#include <QStringList>

namespace velloria::browser {

/// One file for each box, one entry a line. A file that can't be read or written stops nobody; one that could not be
/// read is not written either, for the box knows nothing of what it holds.
class Histories {
public:
    explicit Histories(const core::Session& session)
        : m_session(session) {}

    /// At most 30 lines of the file, the first ones; none unless the box's own history is kept.
    QStringList addresses();
    QStringList words();

    /// Writes all entries, but an empty list writes nothing. Each is kept by the key of the other box's history: so
    /// files and settings of all years have it.
    void keepAddresses(const QStringList& entries) const;
    void keepWords(const QStringList& entries) const;

private:
    const core::Session& m_session;
    bool m_hasAddresses = true; ///< false after a reading that failed
    bool m_hasWords = true;
};

/// The commands that ask and remove a history; Refused is the user's No. Throws platform::Failure.
platform::Outcome clearAddresses(const core::Run& run);
platform::Outcome clearWords(const core::Run& run);

} // namespace velloria::browser
