// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// The texts of the entry dialogs, but for the refusals of core/entry_checks.
inline constexpr Message kEntriesRequired{"Entries Required:"};
inline constexpr Message kCheckingSettings{"Checking Settings..."};
inline constexpr Message kSettingsOf{"Settings"};
inline constexpr Message kNoSettingsFile{"Error - Unable to find the settings file."};
inline constexpr Message kNoRegistryValue{"Error - Unable to find the settings in the registry."};
inline constexpr Message kSettingsError{"Error - %1"};
inline constexpr Message kNoUsablePort{"A port is missing or invalid."};
inline constexpr Message kDatabaseTab{"&Database"};
inline constexpr Message kCustomTab{"Add &Custom"};
inline constexpr Message kNameField{"Name"};
inline constexpr Message kSeveralPorts{"Several at once: 80, 443, 6000-6010"};
inline constexpr Message kPortMoved{
    "%1 is not possible: the ports of this router are %2 to %3. It is %4 now."};
inline constexpr Message kEntryGoneTitle{"Entry Not Found"};
inline constexpr Message kEntryGone{
    "The list was replaced meanwhile, and this entry is not in it. Add what you typed as a new "
    "entry?"};
inline constexpr Message kNothingToAdd{"There are no ports of this program to add."};
inline constexpr Message kProgramsLoaded{"Programs Loaded:"};
inline constexpr Message kNameTooLongOnLeaving{"Name can only be 10 chars or less."};
inline constexpr Message kSearchProgram{"Choose a program, or type"};
inline constexpr Message kAdded{"Added to your list:"};
inline constexpr Message kUnreadablePorts{
    "These ports of the program can not be read and were left out:"};
inline constexpr Message kLookingUpName{"Looking up the name of %1..."};
inline constexpr Message kCannotResolveName{"Couldn't resolve this IP address to its Name."};
inline constexpr Message kComputerNameExample{
    "Example: 192.168.1.100 Belongs to Computer name 'FrontDesk'"};
inline constexpr Message kUseAddress{"Are you sure you want to use this IP address?"};

}  // namespace quayline::message
