// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// What the windows of runs say beside the log, whose texts stand with the runs.
inline constexpr Message kJobTitle{"FrmJobStatus", "Text6", "Job Status"};
inline constexpr Message kEntryOf{"FrmJobStatus", "TextEntryOf", "Adding port %1 of %2: %3"};
inline constexpr Message kStopping{"FrmJobStatus", "TextStopping", "Stopping..."};
inline constexpr Message kStopped{
    "FrmJobStatus", "TextStopped",
    "Stopped before the end. What your router saved until now stays there."};
inline constexpr Message kFinished{
    "FrmJobStatus", "TextFinished",
    "Finished: every entry has run. The log tells what was found and done on each page. If most of "
    "its steps failed, please check that the right router is chosen."};
inline constexpr Message kCloseTitle{"FrmJobStatus", "TextCloseTitle", "Stop the job?"};
inline constexpr Message kCloseQuestion{"FrmJobStatus", "TextCloseQuestion",
                                        "A job is running. Stop it and close this window? What "
                                        "your router saved until now stays there, "
                                        "and a save that is on its way is not cut off."};
inline constexpr Message kEndedEarly{
    "FrmJobStatus", "TextEndedEarly",
    "Ended early, since pages of the router failed. Please check its IP, HTTP type and port, and "
    "the login in the main window, and update again. The log tells at which step."};
inline constexpr Message kFinishedWithErrors{
    "FrmJobStatus", "TextFinishedWithErrors",
    "Finished, but %1 of %2 entries met an error of a page. The log tells at which step."};

inline constexpr Message kFinishedToCheck{
    "FrmJobStatus", "TextFinishedToCheck",
    "Finished, but a part of a page failed meanwhile. Please check on your router whether these "
    "entries are there: %1."};

inline constexpr Message kLeadingToPage{"FrmViewPage", "TextLeadingToPage",
                                        "Going to the page where your router keeps its ports..."};
inline constexpr Message kPageReached{
    "FrmViewPage", "TextPageReached",
    "The script has run. What you change on this page now is between you and your router."};
inline constexpr Message kPageFailed{
    "FrmViewPage", "TextPageFailed",
    "A page failed, so the script ended there. The log tells at which step."};
inline constexpr Message kViewStopped{"FrmViewPage", "TextViewStopped",
                                      "Stopped. You can go on by hand."};
inline constexpr Message kNoViewScript{"FrmViewPage", "TextNoViewScript",
                                       "There is no script that leads to this router's page of "
                                       "ports. Please choose a router, or write "
                                       "one: Advanced, View Current Scripts."};

}  // namespace quayline::message
