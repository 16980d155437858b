// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

inline constexpr Message kUnknownError{"Error Code - [1] Uknown Error!"};
inline constexpr Message kFileMissing{"Error Code - [2] File Doesn't Exist!"};
inline constexpr Message kServerTimedOut{"Error Code - [3] Server Timed Out!"};
inline constexpr Message kDownloadCancelled{"Error Code - [4] Download Was Cancelled By User!"};
inline constexpr Message kNoConnectionPresent{"Error Code - [5] No Connection Present!"};
inline constexpr Message kInternalError{"Error Code - [6] Internal Server Error!"};
inline constexpr Message kUnauthorized{"Error Code - [401] Unauthorized Access!"};
inline constexpr Message kAccessDenied{"Error Code - [403] Access Denied!"};
inline constexpr Message kNoErrorYet{"Error Code - "};

// Each is followed by " - " and a value.
inline constexpr Message kPercentComplete{"Percent Complete"};
inline constexpr Message kTransferRate{"Transfer Rate"};
inline constexpr Message kBytesRead{"Current Bytes Read"};
inline constexpr Message kTransferStatus{"Status"};
inline constexpr Message kTimeRemaining{"Time Remaining"};
inline constexpr Message kTotalBytes{"Total Bytes"};

// What a download reports as its status, which is translated when it is shown.
inline constexpr Message kDownloadStatus[] = {{"Initiating Connection."},
                                              {"Connection Accepted, Retrieving File Information."},
                                              {"Retrieving File Information Complete!"},
                                              {"Recieving File..."},
                                              {"Download Successful!"},
                                              {"Paused."},
                                              {"Unpausing"},
                                              {"Cancelling.."},
                                              {"Cancelled."},
                                              {"Download aborted, no connection present!"},
                                              {"Download Aborted Due To Error In Download!"},
                                              {"Error Reading File Headers!"},
                                              {"File Not Found!"},
                                              {"Unauthorized Access, Download Terminated!"},
                                              {"Access Denied, Download Terminated!"},
                                              {"Resume File Not Found, Aborting Download!"},
                                              {"Resume NotSupported, Aborting Download!"}};
inline constexpr Message kOpeningFile{"Opening %1...", "the status of a download; a path"};
// In "5 min 20 sec".
inline constexpr Message kTransferUnits[] = {{"Bytes/s"}, {"KB/s"}, {"MB/s"},
                                             {"hr"},      {"min"},  {"sec"}};

inline constexpr Message kUpToDate{"You Are Up To Date"};
inline constexpr Message kNewVersion{"There is a new version available - v", "followed by: 3.1.0"};
inline constexpr Message kDownloadNow{"Would you like to download the update now?"};
inline constexpr Message kUpdateByPackages{
    "Your system's package manager updates Quayline. Use the update program of your desktop, or "
    "enter in a terminal:"};
inline constexpr Message kCannotOpenInstaller{
    "The update has been fetched, but your desktop has no program that opens it. It is here:"};
inline constexpr Message kNoUpdateSite{
    "Quayline has no server for updates yet, so there is nothing to check."};

inline constexpr Message kDatabasesUpdating{"The Databases are now being updated."};
inline constexpr Message kClickWhenDone{
    "Once done (When the new window closes) click OK to Continue."};
inline constexpr Message kNoNewWindows{"if you see no new windows then your good to go."};
inline constexpr Message kInstallingDatabases{"The new databases are being checked."};
inline constexpr Message kRoutersChanged{"Routers: %1 new, %2 changed, %3 as before, %4 removed."};
inline constexpr Message kProgramsChanged{
    "Programs: %1 new, %2 changed, %3 as before, %4 removed."};

}  // namespace quayline::message
