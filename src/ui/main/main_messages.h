// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// The texts of the main window that code puts together. Those of the update checks are beside the
// checks.
inline constexpr Message kHeaderAppName{"App Name"};
inline constexpr Message kHeaderForwardedTo{"Forwarded To"};
inline constexpr Message kHeaderStartPort{"Start Port"};
inline constexpr Message kHeaderEndPort{"End Port"};
inline constexpr Message kHeaderOnRouter{"On Router"};
inline constexpr Message kHeaderDescription{"Description"};
inline constexpr Message kMaxEntries{"Max Router Can Hold:"};
inline constexpr Message kNoMaxEntries{"NA", "not available: how many entries the router can hold"};
inline constexpr Message kChooseRouter{"(((Please Choose A Router)))"};
inline constexpr Message kDeleteEntry{"Are You Sure You Want To Delete This Entry?"};
inline constexpr Message kConfirmDelete{"Confirm Delete:"};
inline constexpr Message kThrottleHelp1{
    "Script Throttle waits a little after each step of a script, so that slow routers keep up."};
inline constexpr Message kThrottleHelp2{
    "If ports are missing on your router after an update, turn it on and update again."};
inline constexpr Message kThrottleHelp3{"Without it an update takes less time."};
inline constexpr Message kLocalIp{"(Current Local IP):"};
inline constexpr Message kCannotStart{
    "ERROR: %1\n%2\n\nLooks like the program had trouble getting started!\n"
    "Please check for help or report this error at %3\n\nThe Program Will Now Close."};
inline constexpr Message kStartAgainTitle{"Start again?"};
inline constexpr Message kStartAgainQuestion{
    "A job is running. Stop it and start again with the first entry?"};
inline constexpr Message kCloseProgramTitle{"Stop the job?"};
inline constexpr Message kCloseProgramQuestion{
    "A job is running. Stop it and close Quayline? What your router saved until now stays there, "
    "and a save that is on its way is not cut off."};
inline constexpr Message kNothingToSave{"The list is empty, there is nothing to save."};
inline constexpr Message kSelectFile{"Select a file"};
inline constexpr Message kListFilter{"Quayline File (*.qyl);;All Files (*)"};
inline constexpr Message kLoginHelp1{
    "Enter the user name and the password with which you log in to your router's own pages."};
inline constexpr Message kLoginHelp2{
    "You often find them on a label under the router, or in its manual."};
inline constexpr Message kLoginHelp3{
    "When you choose your router, the login that it had when it left the factory is filled in."};
inline constexpr Message kLoginHelp4{
    "If you changed it once, enter your own. Some routers have a password and no user name."};
inline constexpr Message kLoginHelp5{
    "They are not those of your internet provider or of your wireless network."};
inline constexpr Message kDebugHelp1{
    "In Debug Mode an update stops after each step of the script."};
inline constexpr Message kDebugHelp2{
    "Press \"Proceed To Next Command\" in the job window to let it take the next step."};
inline constexpr Message kDebugHelp3{
    "It helps to find out at which step a script goes wrong on your router."};
inline constexpr Message kDeleteList{"Are You Sure You Want To Delete The Entire List?"};
inline constexpr Message kRoutersLoaded{"Routers Loaded:"};
inline constexpr Message kTotalEntries{"Total Entries To Add:"};
inline constexpr Message kPortsToBeOpened{"Ports To Be Opened:"};
inline constexpr Message kPortType{"Port Type:"};

inline constexpr Message kLanguageTitle{"Language"};
inline constexpr Message kLanguageQuestion{"Do you want to use Quayline in %1?",
                                           "%1 is the language's own name"};
inline constexpr Message kNoFirewallProgram{
    "This computer has no program with windows for its firewall. The menu \"Firewall Port "
    "Exceptions\" shows and changes the ports that it lets in."};

inline constexpr Message kPracticeOffer{
    "A practice router runs inside this computer. You can do all the steps with it, and nothing of "
    "yours changes."};
inline constexpr Message kPracticeRuns{
    "The practice router runs at %1, and its login is filled in. Choose a port in step 4, and "
    "update "
    "the router in step 5."};
inline constexpr Message kNoPractice{
    "The practice router cannot be started. It may be missing in this installation."};
inline constexpr Message kStepBegun{"Done", "read to blind users beside a step with a tick"};

inline constexpr Message kEmptyList{"No ports yet"};
inline constexpr Message kEmptyListHint{
    "Each entry is a port that your router shall open. Press \"Add New Port To Forward\" to "
    "begin."};
inline constexpr Message kNoPicture{"No picture"};
inline constexpr Message kDeleteEntries{"Are You Sure You Want To Delete These %1 Entries?"};
inline constexpr Message kCannotOpenList{
    "This list cannot be opened, your ports stay as they are:"};
inline constexpr Message kListTooLarge{"This file is too large for a list of ports:"};
inline constexpr Message kNotAList{
    "This file is not a list of ports, your ports stay as they are:"};
inline constexpr Message kCannotKeepSettings{
    "What you set here cannot be stored. Is the disk full, or may you not write in the program's "
    "folder? The program tries again every few seconds. What it cannot store before it ends is "
    "lost."};
inline constexpr Message kCannotSaveList{
    "The list cannot be saved. Is the disk full, or may you not write there?"};
inline constexpr Message kCannotKeepList{
    "Your list cannot be stored. Is the disk full, or may you not write in the program's folder? "
    "The program tries again every few seconds. What it cannot store before it ends is lost."};
inline constexpr Message kListUnread{
    "The ports that you collected before cannot be read, so your list is empty for now. Their file "
    "stays as it is; when you change the list, it is kept under the name \"%1\"."};
inline constexpr Message kListChangedTitle{"List Changed"};
inline constexpr Message kListChanged{
    "Another program has changed your list of ports since you opened it. Which list do you want to "
    "keep?\n\nEntries in yours: %1, in the other: %2. What you do not keep is stored as \"%3\"."};
inline constexpr Message kKeepMyList{"Keep &Mine"};
inline constexpr Message kTakeOtherList{"Take the &Other"};
inline constexpr Message kKeepBothLists{"Keep the Entries of &Both"};
inline constexpr Message kOpenListTitle{"Open List"};
inline constexpr Message kFaultyLines{
    "Some lines of \"%1\" are no entries: their ports are missing or not from 1 to 65535, or they "
    "say neither TCP nor UDP.\n\n%2\n\nYour list has not been changed yet. What do you want to "
    "open?"};
inline constexpr Message kLine{"Line %1: %2"};
inline constexpr Message kOpenSoundLines{"The &Other Lines"};
inline constexpr Message kOpenAllLines{"&All Lines As They Are"};
inline constexpr Message kOpenNothing{"&Nothing"};
inline constexpr Message kReplaceList{
    "Put the ports of \"%2\" in place of those in your list?\n\nEntries now: %1, then: %3."};
inline constexpr Message kNoBrowser{"Your web browser cannot be started. The page is:"};
inline constexpr Message kNoNetworkSettings{
    "The network settings of your desktop cannot be started."};

inline constexpr Message kRouterNotFound{"Sorry I was unable to auto detect your router."};
inline constexpr Message kRouterNotFoundHint{
    "Please make sure you have updated the database under the tools menu and then choose your "
    "router from the list."};
inline constexpr Message kRouterFound{"I may have found your router."};
inline constexpr Message kRouterFoundHint{
    "I have selected it already for you in the list. Please confirm it is the correct one."};
inline constexpr Message kWhichRouter{
    "Your router does not say which model it is. From the texts of its first page, it may be one "
    "of these. You find the model on a label under the router. Which one is it?"};
inline constexpr Message kNoneOfTheseRouters{"&None of These"};

inline constexpr Message kOverwriteDatabases{"This will overwrite your current databases."};
inline constexpr Message kContinueQuestion{"Do you want to continue?"};
inline constexpr Message kNoDatabaseSite{
    "There is no server for newer databases yet. New routers and programs come with a new version "
    "of Quayline."};
inline constexpr Message kNothingToCheck{
    "The list is empty. Please add the ports first that you want to look up on your router."};
inline constexpr Message kChooseRouterToCheck{"Please choose your router from the list."};
}  // namespace quayline::message
