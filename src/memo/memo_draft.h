// What somebody is typing into a memo, kept so that a crash takes seconds of it and no more.
#pragma once

#include "core/run.h"
#include "platform/instance_lock.h"
#include "store/memo.h"
#include "store/own_lines.h"

namespace velloria::memo {

/// "memo_draft.json" in the user's folder, readable by its owner alone: a line for each memo that is being typed, in
/// the form of the rescue file, with number and time of the memo that it was made from. Of several memo programs at
/// work the first alone takes drafts over: those of the others are at work still.
class MemoDraft {
public:
    explicit MemoDraft(const core::Run& run);

    /// The last one that an earlier run left, which is this object's from here on. What can't be read is passed over.
    std::optional<store::Memo> takeOver();
    /// Gives what was taken over back, for the next run to find.
    void giveBack() { m_lines.own({}); }

    /// In the place of this object's former draft. Throws platform::Failure.
    void write(const store::Memo& typed);
    /// It was saved, or is not wanted any more.
    void remove();
    /// It is not wanted, and goes to the file of what was removed.
    void drop(const store::Memo& draft);

private:
    core::Run m_run;
    platform::InstanceLock m_lock;
    store::OwnLines m_lines;
    bool m_isThere = false;
};

} // namespace velloria::memo
