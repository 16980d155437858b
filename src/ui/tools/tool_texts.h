// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// The list of routers.
inline constexpr Message kListedRouters{"Routers Loaded:"};
inline constexpr Message kCouldNotFind{"Could Not Find"};
inline constexpr Message kFindTitle{"Find"};

// The scripts of a router.
inline constexpr Message kScriptsFor{"Current Scripts For"};
inline constexpr Message kNoRouterChosen{
    "Please choose a router on the main window first: scripts are saved with their router."};
inline constexpr Message kCannotSaveScript{
    "The script cannot be saved, the old one stays. Is the disk full, or may you not write in the "
    "program's folder?"};
inline constexpr Message kScriptSaved{"Saved."};
inline constexpr Message kUnsavedTitle{"Changes Not Saved"};
inline constexpr Message kUnsaved{
    "There are changes that are not saved. Close this window without them?"};
inline constexpr Message kRestoreTitle{"Restore the Shipped Script"};
inline constexpr Message kRestore{
    "Replace the script in the editor by the one that came with Quayline? It is not saved until "
    "you press \"Update Script\", and Undo (Ctrl+Z) brings yours back."};
inline constexpr Message kNoFindings{"Every line can do what it says."};
inline constexpr Message kFindings{"Lines to look at: %1 (errors: %2)"};
inline constexpr Message kFindingError{"Line %1: %2"};
inline constexpr Message kFindingWarning{"Line %1 (warning): %2"};

}  // namespace quayline::message
