// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

inline constexpr Message kPortColumn{"Port"};
inline constexpr Message kStatusColumn{"Status"};
inline constexpr Message kOpenColumn{"Open?"};

inline constexpr Message kCheckWorking{"Checking Port: Working..."};
inline constexpr Message kCheckingPort{"Checking Port:"};
inline constexpr Message kCheckDone{"Checking Port: DONE!"};
inline constexpr Message kListening{"Listening..."};
inline constexpr Message kChecking{"Checking..."};
inline constexpr Message kWaitingForResults{"Page Status: Waiting For Port Results..."};
inline constexpr Message kPortOpen{"Success"};
inline constexpr Message kPortClosed{"Failed"};
inline constexpr Message kReached{"reached from the internet"};
inline constexpr Message kNotReached{"not reached from the internet"};
inline constexpr Message kPartReached{"%1 reached from the internet", "a protocol and a port"};
inline constexpr Message kPartNotReached{"%1 not reached from the internet",
                                         "a protocol and a port"};
inline constexpr Message kPortInUse{"Port in use."};
inline constexpr Message kCloseOtherPrograms{
    "Unable to check the port, close any programs using the port and try again."};
inline constexpr Message kNotTested{
    "Not tested: the test site could not be reached. Please try again later."};
inline constexpr Message kTypeTestSite{
    "Please type the address of a site that tests ports, for example https://tests.example.org."};
inline constexpr Message kErrorStatus{"Last Error Status Code:"};
inline constexpr Message kPageStatus{"Page Status:"};
inline constexpr Message kPageStatusBegin{"Page Status: Loading..."};

inline constexpr Message kPortListedAlready{
    "This Port is already in the Port List, Please choose another."};
inline constexpr Message kDeletePortQuestion{"Are You Sure You Want To Delete This Entry?"};
inline constexpr Message kDeletePortTitle{"Confirm Delete:"};
inline constexpr Message kPortListEmpty{
    "You must have at least 1 port in the port list to continue."};

}  // namespace quayline::message
