// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

inline constexpr Message kStatusLog{"Status Log:"};
inline constexpr Message kCheckingForRouters{"Checking for routers..."};
inline constexpr Message kPossibleRouter{"Possible", "followed by: 1st Router: 192.168.1.1"};
inline constexpr Message kRouterAt{"Router:"};
inline constexpr Message kRoutersFound{"Routers Found:"};
inline constexpr Message kEchoesForbidden{
    "Your system does not allow programs to look for routers on the way to the internet, so only "
    "your own gateway is counted. An administrator can allow it: sysctl "
    "net.ipv4.ping_group_range=\"0 2147483647\"."};
inline constexpr Message kNobodyAnswered{
    "No router answered. Is this computer connected to a network?"};
inline constexpr Message kOutsideIsPublic{
    "Your router is connected to the internet itself: its internet address %1 is public. Private "
    "addresses after it belong to your provider."};
inline constexpr Message kOutsideIsPrivate{
    "Your router is not connected to the internet itself: its internet address %1 is private. "
    "Another router, which may be your provider's, shares a public address."};
inline constexpr Message kOutsideIsNoAddress{
    "\"%1\" is not an address like 203.0.113.7, so it was not used."};
inline constexpr Message kOneRouterAdvice{"Nothing is wrong: ports are opened on this router."};
inline constexpr Message kManyRoutersAdvice{
    "A port has to be opened on each of these routers. Or set the outer one to pass everything on "
    "to the inner one, which its pages may call \"bridge mode\" or \"DMZ\"."};

}  // namespace quayline::message
