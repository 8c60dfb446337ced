// The text pieces that the oldest diaries kept in a table, and that are files since.
#pragma once

#include "core/session.h"
#include "store/old_diary.h"

#include <functional>
#include <optional>

namespace velloria::store {

/// Takes back what it wrote, unless kept: a diary that stays as it was keeps the files that go with it.
class OptionFiles {
public:
    explicit OptionFiles(const core::Session& session);
    ~OptionFiles();
    OptionFiles(const OptionFiles&) = delete;
    OptionFiles& operator=(const OptionFiles&) = delete;

    static constexpr int kCount = 4;

    /// Writes the first row's fields, each with a line end behind it; `written` is called after each file. A file with
    /// another content is kept beside it first. A table without a row leaves the files as they are. Throws
    /// platform::Failure.
    void write(OldDiary& diary, const std::function<void(int)>& written);

    /// From here on they stay.
    void keep() { m_replaced.clear(); }

    /// What a person is to know of the files that were there, a line each; "" when there is nothing.
    const QString& told() const { return m_told; }

private:
    struct Replaced {
        QString file;
        std::optional<QByteArray> before; ///< nothing when there was no file
        QString keptAs;                   ///< the copy that was made of it
    };
    void replace(const QString& file, const QByteArray& bytes);
    QString keepBeside(const QString& file);

    const core::Session& m_session;
    std::vector<Replaced> m_replaced;
    QString m_told;
};

} // namespace velloria::store
