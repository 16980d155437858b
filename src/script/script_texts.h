// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

// The texts of a run's log. They belong to the main window, so that one language file entry serves
// every window that runs a script.
namespace quayline::script_text {

inline constexpr Message kSuccessful{"FrmMain", "Text63", "(Successful)"};
inline constexpr Message kObjectNotFound{"FrmMain", "Text64", "(Failed - Object Not Found)"};
inline constexpr Message kRunning{"FrmMain", "Text67",
                                  "Running Script From Database For Selected Router"};
inline constexpr Message kStep{"FrmMain", "Text68", "Step"};
inline constexpr Message kAlreadyExists{
    "FrmMain", "Text69", "Already Exists On The Router, This Entry Will be Skipped."};
inline constexpr Message kThisEntry{"FrmMain", "Text70", "This Entry"};
inline constexpr Message kErrorOnWords{"FrmMain", "Text71", "!ERROR! ()"};
inline constexpr Message kEntrySkipped{"FrmMain", "Text72", "This Entry Will be Skipped."};
inline constexpr Message kCheckRouterInfo{"FrmMain", "Text73",
                                          "Please Check your Router Info And Try Again."};
inline constexpr Message kWordsSuccessful{"FrmMain", "Text74", "(Successful -"};
inline constexpr Message kNotFoundOnPage{"FrmMain", "Text75", "Not Found On Page)"};
inline constexpr Message kFoundOnPage{"FrmMain", "Text76", "Found On Page)"};
inline constexpr Message kClearingCache{"FrmMain", "Text77", "(Clearing Cache Please Wait...)"};
inline constexpr Message kCacheCleared{"FrmMain", "Text78", "(Cache Cleared)"};
inline constexpr Message kClearingFailed{"FrmMain", "Text79", "(Clearing Cache Failed)"};
inline constexpr Message kErrorNavigating{"FrmMain", "Text80", "!ERROR! (Navigating to"};
inline constexpr Message kPageRefreshed{"FrmMain", "Text81", "(Successful) (Page Refreshed)"};
inline constexpr Message kSuccessfulWith{"FrmMain", "Text82", "(Successful)"};
inline constexpr Message kLinkNotFound{"FrmMain", "Text83", "(Failed To Find Link)"};
inline constexpr Message kCurrentName{"FrmMain", "Text84",
                                      "(Successful) (Current Name From Name Array"};
inline constexpr Message kErrorInJavaScript{"FrmMain", "Text85", "!ERROR! Running JavaScript"};
inline constexpr Message kClickProceed{"FrmMain", "Text86",
                                       "Click 'Proceed To Next Command' To Continue"};

inline constexpr Message kResourceFailed{
    "FrmMain", "TextResourceFailed",
    "(A part of the page could not be loaded: %1. Please check this entry on the router.)"};
inline constexpr Message kPageScriptFailed{
    "FrmMain", "TextPageScriptFailed",
    "(A script of the page failed: %1. Please check this entry on the router.)"};
// Not shown by a page that saves at once.
inline constexpr Message kPendingWorkLost{
    "FrmMain", "TextPendingWorkLost",
    "(The page still had work pending when it was left. If it saves that late, the script needs a "
    "timeout line before the next page.)"};

// Beyond the log of the language's own commands.
inline constexpr Message kScriptFailed{"FrmMain", "TextScriptFailed", "(Script Error: %1)"};
inline constexpr Message kTextMissing{"FrmMain", "TextExpectedTextMissing",
                                      "!ERROR! (The Page Does Not Show \"%1\")"};
inline constexpr Message kAlreadyThere{"FrmMain", "TextAlreadyThere",
                                       "(Already There, Not Loaded Again)"};
inline constexpr Message kNearestNames{
    "FrmMain", "TextNearestNames",
    "Nothing on the page is named \"%1\". The nearest names are: %2"};

}  // namespace quayline::script_text
