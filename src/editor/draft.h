// The draft: what somebody is typing, kept so that a crash takes seconds of it and no more.
#pragma once

#include "core/run.h"
#include "store/entry.h"
#include "store/own_lines.h"

#include <vector>

namespace velloria::editor {

/// "draft.json" in the user's folder, readable by its owner alone: a line for each unsaved entry, in the form of the
/// rescue file, so that the command line tool can bring one back as well. The `publishTime` of a draft is that of the
/// row it was made from, null when there was none.
///
///     DraftFile drafts(run);
///     std::vector<store::Entry> found = drafts.read(); // of earlier runs; from here on these lines are its own
///     found.push_back(typed);
///     drafts.write(found);
///
/// One object a program, in one thread; other programs may write at the same time.
class DraftFile {
public:
    explicit DraftFile(const core::Run& run);

    /// Puts the drafts in the place of those that this object has read or written before; the lines of another program
    /// at work on the same diary stay. An empty file is removed. Throws platform::Failure, also for a file that is
    /// there and can't be read: it stays as it is.
    void write(const std::vector<store::Entry>& drafts);

    /// The drafts in the order in which they were written. A line that can't be read is passed over: a missing or
    /// damaged file must not keep the program from starting.
    std::vector<store::Entry> read();

private:
    QByteArray lineOf(const store::Entry& draft) const;

    store::OwnLines m_lines;
    const platform::Clock& m_clock;
};

} // namespace velloria::editor
