// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

inline constexpr Message kClearingPageCache{"Clearing Cache Please Wait..."};
inline constexpr Message kPageCacheCleared{"Cache Cleared"};
inline constexpr Message kPageCacheFailed{"Clearing Cache Failed"};

}  // namespace quayline::message
