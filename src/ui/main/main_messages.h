// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// The texts of the main window that code puts together. Those of the update checks stand with the
// checks.
inline constexpr Message kHeaderAppName{"FrmMain", "Text12", "App Name"};
inline constexpr Message kHeaderForwardedTo{"FrmMain", "Text13", "Forwarded To"};
inline constexpr Message kHeaderStartPort{"FrmMain", "Text14", "Start Port"};
inline constexpr Message kHeaderEndPort{"FrmMain", "Text15", "End Port"};
inline constexpr Message kHeaderDescription{"FrmMain", "Text16", "Description"};
inline constexpr Message kMaxEntries{"FrmMain", "Text17", "Max Router Can Hold:"};
inline constexpr Message kChooseRouter{"FrmMain", "Text18", "(((Please Choose A Router)))"};
inline constexpr Message kDeleteEntry{"FrmMain", "Text19",
                                      "Are You Sure You Want To Delete This Entry?"};
inline constexpr Message kConfirmDelete{"FrmMain", "Text20", "Confirm Delete:"};
inline constexpr Message kThrottleHelp1{
    "FrmMain", "Text38",
    "Script Throttle waits a little after each step of a script, so that slow routers keep up."};
inline constexpr Message kThrottleHelp2{
    "FrmMain", "Text39",
    "If ports are missing on your router after an update, turn it on and update again."};
inline constexpr Message kThrottleHelp3{"FrmMain", "Text40",
                                        "Without it an update takes less time."};
inline constexpr Message kLocalIp{"FrmMain", "Text41", "(Current Local IP):"};
inline constexpr Message kStartAgainTitle{"FrmMain", "TextStartAgainTitle", "Start again?"};
inline constexpr Message kStartAgainQuestion{
    "FrmMain", "TextStartAgainQuestion",
    "A job is running. Stop it and start again with the first entry?"};
inline constexpr Message kNothingToSave{"FrmMain", "Text42",
                                        "The list is empty, there is nothing to save."};
inline constexpr Message kSelectFile{"FrmMain", "Text43", "Select a file"};
inline constexpr Message kLoginHelp1{
    "FrmMain", "Text44",
    "Enter the user name and the password with which you log in to your router's own pages."};
inline constexpr Message kLoginHelp2{
    "FrmMain", "Text45", "You often find them on a label under the router, or in its manual."};
inline constexpr Message kLoginHelp3{
    "FrmMain", "Text46",
    "When you choose your router, the login that it had when it left the factory is filled in."};
inline constexpr Message kLoginHelp4{
    "FrmMain", "Text47",
    "If you changed it once, enter your own. Some routers have a password and no user name."};
inline constexpr Message kLoginHelp5{
    "FrmMain", "Text48",
    "They are not those of your internet provider or of your wireless network."};
inline constexpr Message kDebugHelp1{
    "FrmMain", "Text49", "In Debug Mode an update stops after each step of the script."};
inline constexpr Message kDebugHelp2{
    "FrmMain", "Text50",
    "Press \"Proceed To Next Command\" in the job window to let it take the next step."};
inline constexpr Message kDebugHelp3{
    "FrmMain", "Text51", "It helps to find out at which step a script goes wrong on your router."};
inline constexpr Message kDeleteList{"FrmMain", "Text52",
                                     "Are You Sure You Want To Delete The Entire List?"};
inline constexpr Message kRoutersLoaded{"FrmMain", "Text55", "Routers Loaded:"};
inline constexpr Message kTotalEntries{"FrmMain", "Text56", "Total Entries To Add:"};
inline constexpr Message kPortsToBeOpened{"FrmMain", "Text57", "Ports To Be Opened:"};
inline constexpr Message kPortType{"FrmMain", "Text58", "Port Type:"};

inline constexpr Message kEmptyList{"FrmMain", "TextEmptyList", "No ports yet"};
inline constexpr Message kEmptyListHint{"FrmMain", "TextEmptyListHint",
                                        "Each entry is a port that your router shall open. Press "
                                        "\"Add New Port To Forward\" to begin."};
inline constexpr Message kNoPicture{"FrmMain", "TextNoPicture", "No picture"};
inline constexpr Message kDeleteEntries{"FrmMain", "TextDeleteEntries",
                                        "Are You Sure You Want To Delete These %1 Entries?"};
inline constexpr Message kCannotOpenList{
    "FrmMain", "TextCannotOpenList", "This list cannot be opened, your ports stay as they are:"};
inline constexpr Message kListTooLarge{"FrmMain", "TextListTooLarge",
                                       "This file is too large for a list of ports:"};
inline constexpr Message kNotAList{
    "FrmMain", "TextNotAList", "This file is not a list of ports, your ports stay as they are:"};
inline constexpr Message kCannotKeepSettings{
    "FrmMain", "TextCannotKeepSettings",
    "What you set here cannot be stored. Is the disk full, or may you not write in the program's "
    "folder? The program tries again every few seconds. What it cannot store before it ends is "
    "lost."};
inline constexpr Message kCannotSaveList{
    "FrmMain", "TextCannotSaveList",
    "The list cannot be saved. Is the disk full, or may you not write there?"};
inline constexpr Message kCannotKeepList{
    "FrmMain", "TextCannotKeepList",
    "Your list cannot be stored. Is the disk full, or may you not write in the program's folder? "
    "The program tries again every few seconds. What it cannot store before it ends is lost."};
inline constexpr Message kListUnread{
    "FrmMain", "TextListUnread",
    "The ports that you collected before cannot be read, so your list is empty for now. Their file "
    "stays as it is; when you change the list, it is kept under the name \"%1\"."};
inline constexpr Message kListChangedTitle{"FrmMain", "TextListChangedTitle", "List Changed"};
inline constexpr Message kListChanged{
    "FrmMain", "TextListChanged",
    "Another program has changed your list of ports since you opened it. Which list do you want "
    "to keep?\n\nEntries in yours: %1, in the other: %2. What you do not keep is stored as "
    "\"%3\"."};
inline constexpr Message kKeepMyList{"FrmMain", "TextKeepMyList", "Keep &Mine"};
inline constexpr Message kTakeOtherList{"FrmMain", "TextTakeOtherList", "Take the &Other"};
inline constexpr Message kKeepBothLists{"FrmMain", "TextKeepBothLists",
                                        "Keep the Entries of &Both"};
inline constexpr Message kReplaceListTitle{"FrmMain", "TextReplaceListTitle", "Open List"};
inline constexpr Message kReplaceList{
    "FrmMain", "TextReplaceList",
    "Put the ports of \"%2\" in place of those in your list?\n\nEntries now: %1, then: %3."};
inline constexpr Message kNoBrowser{"FrmMain", "TextNoBrowser",
                                    "Your web browser cannot be started. The page is:"};

inline constexpr Message kJobRuns{
    "FrmMain", "TextJobRuns",
    "An update is running, and the router talks to one of you only. Please wait for its end, or "
    "stop it in its window, then look at the ports."};

}  // namespace quayline::message
