// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// What the entry dialogs say beside the refusals, which stand with the checks.
inline constexpr Message kEntriesRequired{"FrmAddNew", "Text13", "Entries Required:"};
inline constexpr Message kDiscoveredEntries{"FrmAddNew", "Text11", "Entries Required:"};
inline constexpr Message kCheckingSettings{"FrmAddNew", "Text12", "Checking Settings..."};
inline constexpr Message kSettingsOf{"FrmAddNew", "Text14", "Settings"};
inline constexpr Message kNoSettingsFile{"FrmAddNew", "TextNoSettingsFile",
                                         "Error - Unable to find the settings file."};
inline constexpr Message kNoRegistryValue{"FrmAddNew", "TextNoRegistryValue",
                                          "Error - Unable to find the settings in the registry."};
inline constexpr Message kSettingsError{"FrmAddNew", "TextSettingsError", "Error - %1"};
inline constexpr Message kNoUsablePort{"FrmAddNew", "TextNoUsablePort",
                                       "A port is missing there, or is none."};
inline constexpr Message kNothingToAdd{"FrmAddNew", "TextNothingToAdd",
                                       "There are no ports of this program to add."};
inline constexpr Message kProgramsLoaded{"FrmAddNew", "Text34", "Programs Loaded:"};
inline constexpr Message kNameTooLongOnLeaving{"FrmAddNew", "Text31",
                                               "Name can only be 10 chars or less."};
inline constexpr Message kSearchProgram{"FrmAddNew", "TextSearch", "Choose a program, or type"};
inline constexpr Message kAdded{"FrmAddNew", "TextAdded", "Added to your list:"};
inline constexpr Message kUnreadablePorts{
    "FrmAddNew", "TextUnreadablePorts",
    "These ports of the program can not be read and were left out:"};
inline constexpr Message kLookingUpName{"FrmAddNew", "TextLookingUp",
                                        "Looking up the name of %1..."};

}  // namespace quayline::message
