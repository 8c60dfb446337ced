// The browser's settings keys, each spelt once.
#pragma once

#include "core/keys.h"

namespace velloria::browser::keys {

using core::keys::kBrowser;
inline constexpr core::Key kUrlHistory{kBrowser, QLatin1StringView("URLHistory")};
inline constexpr core::Key kFindHistory{kBrowser, QLatin1StringView("FindHistory")};
inline constexpr core::Key kFindSite{kBrowser, QLatin1StringView("FindSite")};
inline constexpr core::Key kFavoriteSort{kBrowser, QLatin1StringView("FavoriteSort")};

/// Of "endpoints.ini".
inline constexpr core::Key kHome{kBrowser, QLatin1StringView("Home")};

} // namespace velloria::browser::keys
