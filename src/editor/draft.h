// The draft: what somebody is typing, kept so that a crash takes seconds of it and no more.
#pragma once

#include "core/session.h"
#include "platform/clock.h"
#include "store/entry.h"

#include <vector>

namespace velloria::editor {

/// "draft.json" in the user's folder, readable by its owner alone: a line for each unsaved entry, in the form of the
/// rescue file, so that the command line tool can bring one back as well. The `publishTime` of a draft is that of the
/// row it was made from, null when there was none.
class DraftFile {
public:
    /// Both outlive this.
    DraftFile(const core::Session& session, const platform::Clock& clock);

    /// Replaces the file; without drafts it is removed. Throws platform::Failure.
    void write(const std::vector<store::Entry>& drafts) const;

    /// The drafts in the order in which they were written. A line that can't be read is passed over: a missing or
    /// damaged file must not keep the program from starting.
    std::vector<store::Entry> read() const;

private:
    QString m_file;
    const platform::Clock& m_clock;
};

} // namespace velloria::editor
