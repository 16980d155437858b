// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// The list of routers.
inline constexpr Message kListedRouters{"FrmRouterList", "Text2", "Routers Loaded:"};
inline constexpr Message kCouldNotFind{"FrmMain", "Text65", "Could Not Find"};
inline constexpr Message kFindTitle{"FrmMain", "Text66", "Find"};

// The scripts of a router.
inline constexpr Message kScriptsFor{"FrmViewScripts", "Text3", "Current Scripts For"};
inline constexpr Message kNoRouterChosen{
    "FrmViewScripts", "TextNoRouter",
    "Please choose a router on the main window first: scripts are saved with their router."};
inline constexpr Message kCannotSaveScript{
    "FrmViewScripts", "TextCannotSave",
    "The script cannot be saved, the old one stays. Is the disk full, or may you not write in the "
    "program's folder?"};
inline constexpr Message kScriptSaved{"FrmViewScripts", "TextSaved", "Saved."};
inline constexpr Message kUnsavedTitle{"FrmViewScripts", "TextUnsavedTitle", "Changes Not Saved"};
inline constexpr Message kUnsaved{
    "FrmViewScripts", "TextUnsaved",
    "There are changes that are not saved. Close this window without them?"};
inline constexpr Message kNoFindings{"FrmViewScripts", "TextNoFindings",
                                     "Every line can do what it says."};
inline constexpr Message kFindings{"FrmViewScripts", "TextFindings",
                                   "Lines to look at: %1 (errors: %2)"};
inline constexpr Message kFindingError{"FrmViewScripts", "TextFindingError", "Line %1: %2"};
inline constexpr Message kFindingWarning{"FrmViewScripts", "TextFindingWarning",
                                         "Line %1 (warning): %2"};

}  // namespace quayline::message
