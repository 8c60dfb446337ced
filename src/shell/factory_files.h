// The files beside the program, from which a user's own begin.
#pragma once

#include "core/session.h"

namespace velloria::shell {

class FactoryFiles {
public:
    /// `session` outlives this; its `MyPath` is set.
    explicit FactoryFiles(const core::Session& session)
        : m_session(session) {}

    /// The path of the file, spelt as it is there.
    QString path(const QString& name) const;

    /// Whether the program comes with it. A link that leads nowhere is no missing file: it throws platform::Failure.
    bool has(const QString& name) const;

    /// Throws platform::Failure.
    void copy(const QString& name, const QString& target, unsigned mode = 0666) const;

private:
    const core::Session& m_session;
};

} // namespace velloria::shell
