// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline {

// Texts of Qt's own boxes and menus, which Qt asks the program's translator for.
inline constexpr Message kQtTexts[] = {
    {"OK", "a button"},   {"Cancel", "a button"},  {"Close", "a button"}, {"&Yes", "a button"},
    {"&No", "a button"},  {"Save", "a button"},    {"Open", "a button"},  {"&Undo", "a menu"},
    {"&Redo", "a menu"},  {"Cu&t", "a menu"},      {"&Copy", "a menu"},   {"&Paste", "a menu"},
    {"Delete", "a menu"}, {"Select All", "a menu"}};

}  // namespace quayline
