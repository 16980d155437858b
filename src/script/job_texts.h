// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

// The texts of the job window that its logic writes.
namespace quayline::job_text {

inline constexpr Message kLastError{"FrmJobStatus", "Text7", "Last Error Status Code:"};
inline constexpr Message kRouter{"FrmJobStatus", "Text8", "Router:"};
inline constexpr Message kLoadingCommands{"FrmJobStatus", "Text9", "Loading Commands..."};
inline constexpr Message kNumberOfForwards{"FrmJobStatus", "Text10",
                                           "Number Of Port Forwards To Send To Router"};
inline constexpr Message kRunningCommands{"FrmJobStatus", "Text11", "Running Commands..."};
inline constexpr Message kCurrent{"FrmJobStatus", "Text12", "Current"};
inline constexpr Message kAdding{"FrmJobStatus", "Text13", "Adding"};
inline constexpr Message kForPorts{"FrmJobStatus", "Text14", "For Ports"};
inline constexpr Message kTo{"FrmJobStatus", "Text15", "To"};
inline constexpr Message kFinishedAdding{"FrmJobStatus", "Text16", "Finished Adding"};
inline constexpr Message kDone{"FrmJobStatus", "Text17", "DONE! (All Commands Finished)"};
inline constexpr Message kRouterStatus{"FrmJobStatus", "Text27", "Router Status:"};

inline constexpr Message kAccessDenied{
    "FrmJobStatus", "Text18", "You have received an ACCESS DENIED error from the webpage."};
inline constexpr Message kTrySteps{"FrmJobStatus", "Text19",
                                   "Please try the following steps to fix this issue."};
inline constexpr Message kCheckLogin{"FrmJobStatus", "Text20",
                                     "1.  Make sure the username and password are correct."};
inline constexpr Message kCheckRouterIp{
    "FrmJobStatus", "Text21",
    "2.  Make sure you have the correct router IP set in the main window."};
inline constexpr Message kLogInByHand{
    "FrmJobStatus", "Text22",
    "3.  Some routers need to be logged into manually. Remove the user name and password from the "
    "program, and then turn off 'Silent Mode' under the 'Advanced' menu. The webpage will then ask "
    "for the username and password like normal."};
inline constexpr Message kNotFound{"FrmJobStatus", "Text23",
                                   "You have received a NOT FOUND error from the webpage."};
inline constexpr Message kCheckRouter{
    "FrmJobStatus", "Text24", "1.  Make sure the correct router is selected from the router list."};
inline constexpr Message kCheckRouterIpAgain{
    "FrmJobStatus", "Text25",
    "2.  Make sure you have the correct router IP set in the main window."};
inline constexpr Message kCheckHttpType{
    "FrmJobStatus", "Text26",
    "3.  Make sure you have the correct 'HTTP Type' and' HTTP Port' to access the router set in "
    "the main window. (Default is HTTP:// & Port 80)"};

}  // namespace quayline::job_text
