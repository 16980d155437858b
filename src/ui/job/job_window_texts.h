// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// What the job window says beside the job's log, whose texts stand with the job.
inline constexpr Message kFirstStatus{"FrmJobStatus", "Text2", "Router Status: Loading..."};
inline constexpr Message kJobTitle{"FrmJobStatus", "Text6", "Job Status"};
inline constexpr Message kEntryOf{"FrmJobStatus", "TextEntryOf", "Adding port %1 of %2: %3"};
inline constexpr Message kWaitingFor{"FrmJobStatus", "TextWaitingFor", "Waiting for: %1"};
inline constexpr Message kCertificateTitle{"FrmJobStatus", "TextCertificateTitle",
                                           "Is this your router?"};
inline constexpr Message kCertificateQuestion{
    "FrmJobStatus", "TextCertificateQuestion",
    "%1 shows a certificate that it made itself, as most routers do. Nobody else can vouch for it. "
    "If you reach your own router in your own network here, you can trust it: Quayline then "
    "remembers it, and refuses any other one at this address.\n\nFingerprint (SHA-256):\n%2\n\n"
    "Do you trust this certificate?"};
inline constexpr Message kStopping{"FrmJobStatus", "TextStopping", "Stopping..."};
inline constexpr Message kStopped{
    "FrmJobStatus", "TextStopped",
    "Stopped before the end. What your router saved until now stays there."};
inline constexpr Message kFinished{
    "FrmJobStatus", "TextFinished",
    "Finished: every entry has run. The log tells what was found and done on each page."};
inline constexpr Message kFinishedWithErrors{
    "FrmJobStatus", "TextFinishedWithErrors",
    "Finished, but %1 of %2 entries met an error of a page. The log tells at which step."};

}  // namespace quayline::message
