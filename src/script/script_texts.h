// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

// The texts of a run's log.
namespace quayline::script_text {

inline constexpr Message kSuccessful{"(Successful)"};
inline constexpr Message kObjectNotFound{"(Failed - Object Not Found)"};
inline constexpr Message kRunning{"Running Script From Database For Selected Router"};
inline constexpr Message kStep{"Step"};
inline constexpr Message kAlreadyExists{
    "Already Exists On The Router, This Entry Will be Skipped."};
inline constexpr Message kThisEntry{"This Entry"};
inline constexpr Message kErrorOnWords{"!ERROR! ()"};
inline constexpr Message kRowMissing{"!ERROR! (The Page Has No Row Of This Entry)"};
inline constexpr Message kEntrySkipped{"This Entry Will be Skipped."};
inline constexpr Message kCheckRouterInfo{"Please Check your Router Info And Try Again."};
inline constexpr Message kWordsSuccessful{"(Successful -"};
inline constexpr Message kNotFoundOnPage{"Not Found On Page)"};
inline constexpr Message kFoundOnPage{"Found On Page)"};
inline constexpr Message kClearingCache{"(Clearing Cache Please Wait...)"};
inline constexpr Message kCacheCleared{"(Cache Cleared)"};
inline constexpr Message kClearingFailed{"(Clearing Cache Failed)"};
inline constexpr Message kErrorNavigating{"!ERROR! (Navigating to"};
inline constexpr Message kPageRefreshed{"(Successful) (Page Refreshed)"};
inline constexpr Message kSuccessfulWith{"(Successful)"};
inline constexpr Message kLinkNotFound{"(Failed To Find Link)"};
inline constexpr Message kCurrentName{"(Successful) (Current Name From Name Array"};
inline constexpr Message kErrorInJavaScript{"!ERROR! Running JavaScript"};
inline constexpr Message kClickProceed{"Click 'Proceed To Next Command' To Continue"};

inline constexpr Message kForeignScriptRefused{
    "(The script came from somebody else, and was not allowed to run.)"};
inline constexpr Message kOtherHostBlocked{
    "(%1 was blocked: a script from somebody else without a signature works on your router only.)"};

inline constexpr Message kResourceFailed{
    "(A part of the page could not be loaded: %1. Please check this entry on the router.)"};
inline constexpr Message kPageScriptFailed{
    "(A script of the page failed: %1. Please check this entry on the router.)"};
// Not shown by a page that saves at once.
inline constexpr Message kPendingWorkLost{
    "(The page still had work pending when it was left. If it saves that late, the script needs a "
    "timeout line before the next page.)"};

// Beyond the log of the language's own commands.
inline constexpr Message kScriptFailed{"(Script Error: %1)"};
inline constexpr Message kTextMissing{"!ERROR! (The Page Does Not Show \"%1\")"};
inline constexpr Message kAlreadyThere{"(Already There, Not Loaded Again)"};
inline constexpr Message kNearestNames{
    "Nothing on the page is named \"%1\". The nearest names are: %2"};

}  // namespace quayline::script_text
