// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline {

// The texts for the entries of one kind of job. "%1" is what the router shows.
struct StateTexts {
  Message running;  // the state of the entry whose turn it is
  Message passed;   // of one that has had its turn
  // The sentences on how it ended, and on what to do.
  Message skipped;
  Message on_router;
  Message different;
  Message missing;
  Message unknown;
  Message some_unknown;  // for the headline; "%1" are names of entries
};

namespace message {

// What became of the entries of a job.
inline constexpr Message kEntryColumn{"Entry"};
inline constexpr Message kStateColumn{"State"};
inline constexpr Message kListeningColumn{"Listening on this computer"};
inline constexpr Message kOutsideColumn{"From outside"};
inline constexpr Message kReasonColumn{"What the router shows"};

inline constexpr Message kWaiting{"Waiting"};
inline constexpr Message kSkipped{"Skipped"};
inline constexpr Message kOnRouterBefore{"On the router, as before"};
inline constexpr Message kRemoved{"Removed"};
inline constexpr Message kNotRemoved{"Not removed"};
inline constexpr Message kRuleOfOther{"Another rule has these ports: %1"};

inline constexpr StateTexts kUpdateStates = {
    .running = {"Being entered"},
    .passed = {"Entered, not checked yet"},
    .skipped = {"It was not entered, since the job ended before it."},
    .on_router = {"%1", "what the router shows of an entry"},
    .different = {"%1. Please correct this rule on your router's page, or remove it there and try "
                  "again."},
    .missing = {"Your router's page does not show it. Please look there for a message, and try "
                "again."},
    .unknown = {"Your router's page does not show whether it is there. Please look there."},
    .some_unknown = {"Every entry has run, but the router's page does not show whether these are "
                     "there: %1. Please look at the router's page."}};

inline constexpr StateTexts kCheckStates = {
    .running = {"Being checked"},
    .passed = {"Being checked"},
    .skipped = {"It was not checked, since the check ended before it."},
    .on_router = {"%1", "what the router shows of an entry"},
    .different = {"%1. Please correct this rule on your router's page, or remove it there and "
                  "press \"Update Router\"."},
    .missing = {"Your router's page does not show it. \"Update Router\" enters it."},
    .unknown = {"Your router's page does not show whether it is there. Please look there."},
    .some_unknown = {"The router's page does not show whether these are there: %1. Please look at "
                     "the router's page."}};

inline constexpr StateTexts kTakeBackStates = {
    .running = {"Being removed"},
    .passed = {"Removed, not checked yet"},
    .skipped = {"It was not removed, since the job ended before it."},
    .on_router = {"Still on your router: %1"},
    .different = {"Still on your router: %1"},
    .missing = {""},
    .unknown = {"Cannot tell whether it was removed. Please look at your router's page."},
    .some_unknown = {""}};

inline constexpr Message kLooking{"Looking at the router's rules..."};
inline constexpr Message kAllOnRouter{"Finished: all entries are on your router (%1 of %1)."};
inline constexpr Message kOneOnRouter{"Finished: the entry is on your router."};
inline constexpr Message kSomeWrong{
    "%1 of %2 entries are on your router as you want them. Please look at: %3."};
inline constexpr Message kTakenBack{"%1 of %2 rules were removed from your router."};
inline constexpr Message kLookAt{"Please look at: %1."};

}  // namespace message
}  // namespace quayline
