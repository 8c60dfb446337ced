// What somebody is typing into a memo, kept so that a crash takes seconds of it and no more.
#pragma once

#include "core/run.h"
#include "platform/instance_lock.h"
#include "store/memo.h"
#include "store/own_lines.h"

namespace velloria::memo {

/// What somebody has typed. A draft shows no more than the memo that it was made from did.
struct Typed {
    store::Memo memo;       ///< with number and time of the memo that it was made from
    bool wasLocked = false; ///< whether that one was locked, whatever is to become of its lock
};

/// "memo_draft.json" in the user's folder, readable by its owner alone: a line for each memo that is being typed, in
/// the form of the rescue file, plus "WasLocked". Of several memo programs at
/// work the first alone takes drafts over: those of the others are at work still.
class MemoDraft {
public:
    explicit MemoDraft(const core::Run& run);

    /// The last one that an earlier run left, which is this object's from here on. What can't be read is passed over.
    std::optional<Typed> takeOver();
    /// Gives what was taken over back, for the next run to find.
    void giveBack() { m_lines.own({}); }

    /// In the place of this object's former draft. Throws platform::Failure.
    void write(const Typed& typed);
    /// It was saved, or is not wanted any more.
    void remove();
    /// It is not wanted, and goes to the file of what was removed, locked as it was or was to be.
    void drop(const Typed& draft);

private:
    core::Run m_run;
    platform::InstanceLock m_lock;
    store::OwnLines m_lines;
    bool m_isThere = false;
};

} // namespace velloria::memo
