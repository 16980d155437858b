// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// The texts of the windows of runs. Those of the log are in src/script.
inline constexpr Message kJobTitle{"Job Status"};
inline constexpr Message kEntryOf{"Adding port %1 of %2: %3"};
inline constexpr Message kStopping{"Stopping..."};
inline constexpr Message kStopped{
    "Stopped before the end. What your router saved until now stays there."};
inline constexpr Message kRemovalStopped{
    "Stopped before the end. Rules that were removed until now are gone, the others stay."};
inline constexpr Message kFinished{
    "Finished: every entry has run. \"Details\" shows what was found and done on each page. If "
    "most "
    "of its steps failed, please check that the right router is chosen."};
inline constexpr Message kCloseTitle{"Stop the job?"};
inline constexpr Message kCloseQuestion{
    "A job is running. Stop it and close this window? What your router saved until now stays "
    "there, and a save that is on its way is not cut off."};
inline constexpr Message kEndedEarly{
    "Ended early, since pages of the router failed. Please check its IP, HTTP type and port, and "
    "the login in the main window, and try again. \"Details\" shows at which step."};
inline constexpr Message kFinishedWithErrors{
    "Finished, but pages of the router failed at %1 of %2 entries. \"Details\" shows at which "
    "step."};

inline constexpr Message kFinishedToCheck{
    "Finished, but a part of a page failed meanwhile. Please check on your router whether these "
    "entries are there: %1."};
inline constexpr Message kStepOf{"Entry %1 of %2, step %3 of %4"};
inline constexpr Message kCannotLook{
    "The page with your router's rules could not be opened. Please check the router's IP, HTTP "
    "type "
    "and port, and the login in the main window, and try again."};
inline constexpr Message kCheckTitle{"Router Check"};

inline constexpr Message kRemovingEntry{"Removing rule %1 of %2: %3"};
inline constexpr Message kTakeBackTitle{"Take Back?"};
inline constexpr Message kTakeBackQuestion{
    "These rules, which this job added, are removed from your router:\n\n%1\n\nRules that were "
    "there before stay."};
inline constexpr Message kDoContinue{"Do you want to continue?"};
inline constexpr Message kMaybeOld{
    "It is not certain whether this job added these, so they stay as well: %1."};
inline constexpr Message kMaybeAdded{
    "Your router's page does not show whether these are there, so nothing is done about them: %1."};
inline constexpr Message kLookedLate{
    "This is what your router shows now, some time after the job. If you have added one of these "
    "rules yourself since then, it is removed as well."};
inline constexpr Message kNothingToTakeBack{
    "Your router shows no rule that this job added, so there is nothing to take back."};
inline constexpr Message kCannotSeeAdded{
    "The page with your router's rules could not be read, so it is not known which of these rules "
    "this job added:\n\n%1\n\nPlease try again, or look at the router's page."};
inline constexpr Message kTakeBackByHand{
    "Quayline cannot remove rules from a router of this model. Please remove these on its page, "
    "which opens now:\n\n%1"};
inline constexpr Message kRemovalUnknown{
    "The rules may have been removed, but the page with your router's rules could not be read. "
    "Please look at the router's page."};
inline constexpr Message kOtherRouter{
    "This job was for the router \"%1\" at %2, and the main window has another one now. Please "
    "choose that router there, then press this button again."};

inline constexpr Message kReportTitle{"Save Report"};
inline constexpr Message kReportFilter{"Text File (*.txt);;All Files (*)"};
inline constexpr Message kCannotSaveReport{
    "The report cannot be saved. Is the disk full, or may you not write there?"};

inline constexpr Message kCloseViewTitle{"Stop the script?"};
inline constexpr Message kCloseViewQuestion{
    "A script is running. Stop it and close this window? A save that is on its way to your router "
    "is not cut off."};
inline constexpr Message kLeadingToPage{"Going to the page where your router keeps its ports..."};
inline constexpr Message kPageReached{
    "The script has run. You can now change your router's settings on this page yourself."};
inline constexpr Message kScriptEndedByPage{
    "A page failed, so the script ended there. The log shows at which step."};
inline constexpr Message kViewStopped{"Stopped. You can go on by hand."};
inline constexpr Message kNoViewScript{
    "There is no script that leads to this router's page of ports. Please choose a router, or "
    "write one: Advanced, View Current Scripts."};

}  // namespace quayline::message
