// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

inline constexpr Message kAddPortsTitle{"Add Ports to the Firewall"};
inline constexpr Message kRemovePortsTitle{"Remove Ports from the Firewall"};
inline constexpr Message kAddPortsExplanation{
    "The firewall of this computer decides which packets reach its programs. This lets in the "
    "ports of your list."};
inline constexpr Message kRemovePortsExplanation{
    "This removes the rules that Quayline added to the firewall of this computer, and no others."};

inline constexpr Message kAddingRule{"Adding"};
inline constexpr Message kPortsAdded{
    "Ports Have been Added To The Windows Firewall",
    "after a number; the firewall of this computer, of any system"};
inline constexpr Message kRemovingRule{"Removing"};
inline constexpr Message kPortsRemoved{"Ports Added By QYL Have Been Removed."};
inline constexpr Message kWaitForFirewall{"Please wait..."};

inline constexpr Message kRuleName{"Rule Name"};
inline constexpr Message kRulePort{"Port"};
inline constexpr Message kRuleProtocol{"Protocal"};
inline constexpr Message kRuleEnabled{"Enabled"};
inline constexpr Message kUnknownProtocol{"Unknown", "a protocol; followed by its number"};
inline constexpr Message kRuleIsEnabled{"True"};
inline constexpr Message kRuleIsDisabled{"False"};

inline constexpr Message kFirewallIs{"The firewall of this computer is %1."};
inline constexpr Message kForgetsAtRestart{
    "The firewall of this computer is %1. It forgets these rules when the computer restarts."};
inline constexpr Message kNoFirewall{
    "No firewall is active on this computer, so it blocks no port. There is nothing to do."};
inline constexpr Message kFirewallRefused{
    "The firewall of this computer is %1. It needs the password of an administrator. No password "
    "was given, so nothing was changed."};
inline constexpr Message kFirewallNotShown{
    "The firewall of this computer is %1. It shows its rules to administrators only, and no "
    "password was given."};
inline constexpr Message kFirewallProgramMissing{
    "The firewall cannot be changed: a program that this needs is not installed: %1"};
inline constexpr Message kFirewallFailed{
    "The firewall of this computer is %1. It reported an error: %2"};
inline constexpr Message kChangeStopped{
    "Stopped. \"View Current Port Exceptions\" shows which ports are open now."};
inline constexpr Message kNoOwnRules{"There are no rules of Quayline in it."};
inline constexpr Message kEmptyPortList{"Your list has no ports yet."};

}  // namespace quayline::message
