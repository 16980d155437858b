// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

inline constexpr Message kSelectAdapterFirst{"Please Select An Adapter First"};
inline constexpr Message kRebootRequired{"A reboot is required."};
inline constexpr Message kStaticDone{"Done!"};

inline constexpr Message kSetupNotSupported{
    "Status: Error! - Method not supported on this platform."};
inline constexpr Message kSetupUnknownFailure{"Status: Error! - Unknown failure."};
inline constexpr Message kSetupInvalidMask{"Status: Error! - Invalid subnet mask."};
inline constexpr Message kSetupBadInstance{
    "Status: Error! - An error occured while processing an instance that was returned."};
inline constexpr Message kSetupInvalidParameter{"Status: Error! - Invalid input parameter."};
inline constexpr Message kSetupInvalidAddress{"Status: Error! - Invalid IP address."};
inline constexpr Message kSetupInvalidGateway{"Status: Error! - Invalid gateway IP address."};
inline constexpr Message kSetupInvalidSecurity{"Status: Error! - Invalid security parameter."};
inline constexpr Message kSetupCannotConfigure{
    "Status: Error! - Unable to configure TCP/IP service."};
inline constexpr Message kSetupCannotConfigureDhcp{
    "Status: Error! - Unable to configure DHCP service."};
inline constexpr Message kSetupNotEnabled{"Status: Error! - IP not enabled on adapter."};
inline constexpr Message kSetupInvalidFrame{"Status: Error! - Invalid frame type."};
inline constexpr Message kSetupInvalidNetwork{"Status: Error! - Invalid network number."};
inline constexpr Message kSetupOutOfBounds{"Status: Error! - Parameter out of bounds."};
inline constexpr Message kSetupAccessDenied{"Status: Error! - Access denied."};
inline constexpr Message kSetupOutOfMemory{"Status: Error! - Out of memory."};
inline constexpr Message kSetupNotConfigurable{"Status: Error! - Interface not configurable."};
inline constexpr Message kSetupDhcpNotEnabled{"Status: Error! - DHCP not enabled on adapter."};
inline constexpr Message kSetupUnknown{"Status: Error! - Unknown."};

inline constexpr Message kSystemSays{"Your system says: %1"};
inline constexpr Message kRolledBack{
    "With the new settings this computer did not reach your router, so it has its former settings "
    "again."};
inline constexpr Message kRollBackFailed{
    "The former settings could not be restored. Please open the network settings of your system "
    "and set them there."};
inline constexpr Message kChangeUnknown{
    "Your system did not answer in time, so the settings may have been changed. Please close its "
    "password box if it is still open, and check the network settings of your system."};
inline constexpr Message kNothingChanged{"Nothing was changed."};
inline constexpr Message kNoNetworkService{
    "The network of this computer is not managed by NetworkManager, so Quayline cannot change its "
    "address. Please use the network settings of your system."};
inline constexpr Message kNoAdapters{
    "No network adapter is connected that NetworkManager manages."};

inline constexpr Message kIsAutomatic{"The router gives this adapter its address."};
inline constexpr Message kIsFixed{"The address of this adapter is static."};
inline constexpr Message kReadingAdapters{"Reading the network adapters..."};
inline constexpr Message kCheckingAndSetting{
    "Looking whether another device has this address, then setting it. Your system may ask for "
    "your password."};
inline constexpr Message kMakingAutomatic{
    "Asking the router for an address. Your system may ask for your password."};

inline constexpr Message kFaultNoAddress{"This is not an IP address, such as 192.168.1.150."};
inline constexpr Message kFaultNotOfComputer{"No computer or router can have this address."};
inline constexpr Message kFaultNoMask{"This is not a subnet mask, such as 255.255.255.0."};
inline constexpr Message kFaultOutside{
    "This address is not in the network of the router, so this computer would not reach it."};
inline constexpr Message kFaultNetwork{"This is the address of the whole network."};
inline constexpr Message kFaultBroadcast{"This is the address of all computers of the network."};
inline constexpr Message kFaultRouters{"This is the address of the router."};
inline constexpr Message kTaken{
    "Another device uses this address already. Its network adapter is %1 (%2). Please choose "
    "another address."};
inline constexpr Message kTakenBy{"%1 is of %2", "a prefix and the maker of a network adapter"};
inline constexpr Message kTakenByUnknown{"maker of %1 not known", "a prefix"};
inline constexpr Message kTakenByMadeUp{
    "%1 is a private address that the device chose, as phones do", "a prefix"};

inline constexpr Message kRandomHelp1{"Randomize IP will change the last 3 numbers of the IP"};
inline constexpr Message kRandomHelp2{"from a random number between"};
inline constexpr Message kRandomHelp3{
    "Routers give out IPs on the lower range from 2 - 100 or more."};
inline constexpr Message kRandomHelp4{"By setting your IP to a higher number"};
inline constexpr Message kRandomHelp5{
    "You avoid having someone else get the same IP as you from the router."};
inline constexpr Message kCurrentDnsHelp{
    "This option will set the new DNS servers to the current ones on the adapter. (Default)"};
inline constexpr Message kRouterDnsHelp1{
    "This option will set your new DNS servers to the ip of the router."};
inline constexpr Message kRouterDnsHelp2{
    "DNS will still function as normal, the dns calls to the router and then the router calls its "
    "DNS servers."};
inline constexpr Message kOpenDnsHelp1{
    "This option will set the new DNS servers to those of OpenDNS (https://www.opendns.com)."};
inline constexpr Message kOpenDnsHelp2{
    "These servers are free. You can read more about them on https://www.opendns.com."};

}  // namespace quayline::message
