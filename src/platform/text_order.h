// The order of the diary's lists.
#pragma once

#include <QString>

#include <memory>

namespace velloria::platform {

/// The order of lists: folds without hyphens and apostrophes by the Japanese collation at secondary strength with the
/// ASCII signs in the old order, then by code, then by the hyphens and apostrophes: without before with, and the
/// earlier place first. A strict weak order in which texts are equivalent when equalText holds. For one thread.
class TextOrder {
public:
    TextOrder();
    ~TextOrder();

    /// Below 0, 0, above 0. Throws Failure when the system has no collation to offer.
    int compare(QStringView left, QStringView right) const;

private:
    class Collation;
    mutable std::unique_ptr<Collation> m_collation; ///< made at the first comparison that needs it: opening is slow
};

} // namespace velloria::platform
