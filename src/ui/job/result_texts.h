// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// What became of the entries of a job.
inline constexpr Message kEntryColumn{"Entry"};
inline constexpr Message kStateColumn{"State"};
inline constexpr Message kListeningColumn{"Listening on this computer"};
inline constexpr Message kOutsideColumn{"From outside"};
inline constexpr Message kReasonColumn{"What the router shows"};

inline constexpr Message kWaiting{"Waiting"};
inline constexpr Message kBeingEntered{"Being entered"};
inline constexpr Message kEntered{"Entered, not looked up yet"};
inline constexpr Message kSkipped{"Skipped"};
inline constexpr Message kOnRouterBefore{"On the router, as before"};

inline constexpr Message kRuleOfOther{"Another rule has these ports: %1"};
inline constexpr Message kTrySkipped{"It was not entered, since the job ended before it."};
inline constexpr Message kTryDifferent{
    "%1. Please correct this rule on your router's page, or remove it there and try again."};
inline constexpr Message kTryMissing{
    "Your router's page does not show it. Please look there for a message, and try again."};
inline constexpr Message kTryUnknown{
    "Your router's page does not tell. Please look there whether it is listed."};

inline constexpr Message kLooking{"Looking at the router's rules..."};
inline constexpr Message kAllOnRouter{"Finished: all entries are on your router (%1 of %1)."};
inline constexpr Message kOneOnRouter{"Finished: the entry is on your router."};
inline constexpr Message kSomeWrong{
    "%1 of %2 entries are on your router as you want them. Please look at: %3."};
inline constexpr Message kSomeUnknown{
    "Every entry has run, but the router's page does not show whether these are there: %1. Please "
    "look at the router's page."};

}  // namespace quayline::message
