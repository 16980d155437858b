// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

inline constexpr Message kRepairBrowserTitle{"Repair the Hosted Browser"};
inline constexpr Message kRepairDatabasesTitle{"Repair the Databases"};
inline constexpr Message kRegisterBrowserTitle{"Repair Internet Explorer"};
inline constexpr Message kRegisterDatabasesTitle{"Repair MDAC & MS Jet"};
inline constexpr Message kRegisterBrowser{
    "The repair IE tool will reregister all of Internet Explorer's files."};
inline constexpr Message kRegisterDatabases{
    "The Repair MDAC & MS Jet tool will reregister all of MDAC & MS Jet files. You may want to "
    "restart the computer afterwards."};
inline constexpr Message kRepairBrowserHere{
    "This empties the cache of the browser that works through your router's pages, removes the "
    "files that it keeps, and starts it with a new profile."};
inline constexpr Message kRepairDatabasesHere{
    "This checks the databases of routers and programs, and replaces one that is damaged by its "
    "last good copy. The damaged file is kept."};
inline constexpr Message kOtherSystem{
    "The components of \"%1\" belong to another system. This repairs what does their work here."};

inline constexpr Message kRegistering{"Registering:"};
inline constexpr Message kRegisteringDone{"Registering: Done"};
inline constexpr Message kRepairing{"Repairing:"};
inline constexpr Message kRepairingDone{"Repairing: Done"};
inline constexpr Message kRepairFailed{"Repairing: %1 of %2 steps failed"};

inline constexpr Message kStepColumn{"Step"};
inline constexpr Message kResultColumn{"Result"};
inline constexpr Message kStepDone{"Done"};
inline constexpr Message kStepFailed{"Failed"};

inline constexpr Message kClearCacheStep{"Clear the cache"};
inline constexpr Message kRemoveProfileStep{"Remove the files of the old profile"};
inline constexpr Message kNewProfileStep{"Start the browser with a new profile"};
inline constexpr Message kNewProfileFailed{
    "It does not start. Please install the package of Qt WebEngine again."};
inline constexpr Message kCheckStep{"Check %1", "the name of a file"};
inline constexpr Message kRebuildStep{"Rebuild %1", "the name of a file"};
inline constexpr Message kReopenStep{"Open the databases"};
inline constexpr Message kDamagedFileKept{"The damaged file is kept as \"%1\"."};

}  // namespace quayline::message
