// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

inline constexpr Message kAskingRouter{"Asking your router..."};
inline constexpr Message kRouterSpeaks{
    "Your router opens ports on request (%1). Its address on the internet: %2"};
inline constexpr Message kAddressUnknown{"unknown", "an address"};
inline constexpr Message kRouterSpeaksNot{
    "Your router does not open ports on request. Please use \"Update Router\" instead."};
inline constexpr Message kNoRouterAddress{
    "The address of your router is missing. Please type it in the main window first."};

inline constexpr Message kOnRequestEntryColumn{"Entry"};
inline constexpr Message kPortsColumn{"Ports"};
inline constexpr Message kRouterColumn{"On the router"};
inline constexpr Message kMappingOpen{"Open"};
inline constexpr Message kMappingMissing{"Not open"};
inline constexpr Message kMappingForGood{"Open until you close it"};
inline constexpr Message kMappingShorter{"Open, but your router closes it earlier"};
inline constexpr Message kMappingTaken{"Leads to another computer or program"};
inline constexpr Message kMappingRefused{"Your router refuses it"};
inline constexpr Message kMappingUnknown{"Unknown: your router did not say"};
inline constexpr Message kMappingNotHere{"Only ports of this computer can be opened this way"};
inline constexpr Message kMappingWrongPorts{"Has too many ports, or wrong ones"};

inline constexpr Message kForAnHour{"For one hour"};
inline constexpr Message kForADay{"For one day"};
inline constexpr Message kUntilRemoved{"Until I close them"};

}  // namespace quayline::message
