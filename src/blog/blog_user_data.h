// What the user has told of a blog: login and addresses.
#pragma once

#include "core/session.h"
#include "core/setting.h"

#include <QString>

#include <utility>
#include <vector>

namespace velloria::blog {

/// The section of one blog in "BlogUserData.ini", which is readable by its owner alone. Each call reads or writes the
/// file as it is now. A password is given and taken in clear and stored scrambled.
class BlogUserData {
public:
    /// `blog` is the template's name. `session` outlives this.
    BlogUserData(const core::Session& session, const QString& blog);

    /// A row of keys::blog_user; "" when it is missing. Throws platform::Failure when the file can't be read.
    QString value(const core::Setting& row) const;
    /// Blanks around a value are no part of it, but of a password they are. Throws platform::Failure when the machine
    /// refuses, and when the file would not give the value back; it is as it was then.
    void store(const core::Setting& row, const QString& value) const;
    /// The same of several at once, in this order: all of them are stored or none.
    void store(const std::vector<std::pair<core::Setting, QString>>& values) const;

    /// Whether a section can bear the name. What is stored under another one would come into the section of another
    /// blog, or never be found again.
    static bool canBear(const QString& blog);

    /// Whether store() takes the value.
    static bool fits(const core::Setting& row, const QString& value);
    /// Why it does not, of a value that people know by this name.
    static QString refusal(const QString& name);

private:
    const core::Session& m_session;
    QString m_blog;
};

} // namespace velloria::blog
