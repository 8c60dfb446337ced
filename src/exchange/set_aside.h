// A file in whose place another program is going to write one.
#pragma once

#include <QString>

namespace velloria::exchange {

/// Gives a file another name beside its own, so that the name is free and nothing is lost. Unless the new file is
/// told to be whole, the old one has its name again when this goes.
class SetAside {
public:
    /// Moves `file`, no link, out of the way if it is there; what a run that was killed has moved counts as well.
    /// Throws platform::Failure, and then it is where it was.
    explicit SetAside(QString file);
    ~SetAside();
    SetAside(const SetAside&) = delete;
    SetAside& operator=(const SetAside&) = delete;

    /// The old file has its name again; without one, what was begun in its place goes. Throws platform::Failure, which
    /// tells where the old file lies.
    void bringBack();

    /// The new file is whole: the old one goes, and its permissions limit those of the new one. Gives the name under
    /// which the old file stays, because no new one has come; else "". Throws platform::Failure, and nothing is lost.
    QString drop();

private:
    QString m_file;
    QString m_aside; ///< "" when there is nothing to bring back
    bool m_isOpen = true;
};

} // namespace velloria::exchange
