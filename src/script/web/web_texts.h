// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// What the hosted browser says in the status box of the job window.
inline constexpr Message kOpeningPage{"FrmJobStatus", "TextOpeningPage", "Opening page %1"};
inline constexpr Message kPageDone{"FrmJobStatus", "TextPageDone", "Done"};
inline constexpr Message kTryingAgain{"FrmJobStatus", "TextTryingAgain",
                                      "The router does not answer. Trying again."};
inline constexpr Message kBlockedHost{"FrmJobStatus", "TextBlockedHost",
                                      "Blocked: the page asked for something of %1"};
inline constexpr Message kRefusedFile{"FrmJobStatus", "TextRefusedFile",
                                      "Refused: the page offered the file %1"};
inline constexpr Message kRefusedAddress{"FrmJobStatus", "TextRefusedAddress",
                                         "Refused: the page tried to open %1"};
inline constexpr Message kRefusedWindow{"FrmJobStatus", "TextRefusedWindow",
                                        "Refused: the page tried to open a window."};
inline constexpr Message kTooManyWindows{"FrmJobStatus", "TextTooManyWindows",
                                         "The page has opened more than eight windows."};
inline constexpr Message kRefusedPermission{"FrmJobStatus", "TextRefusedPermission",
                                            "Refused: the page asked for a permission."};
inline constexpr Message kRefusedUpload{"FrmJobStatus", "TextRefusedUpload",
                                        "Refused: the page asked for a file."};
inline constexpr Message kRefusedCertificate{"FrmJobStatus", "TextRefusedCertificate",
                                             "Refused: the certificate of %1 cannot be trusted."};
inline constexpr Message kCertificateOutOfDate{
    "FrmJobStatus", "TextCertificateOutOfDate",
    "The certificate of %1 has expired, or is not valid yet. Check the clock of the router."};
inline constexpr Message kCertificateOfOther{"FrmJobStatus", "TextCertificateOfOther",
                                             "The certificate of %1 is for another host name."};
inline constexpr Message kOldTls{"FrmJobStatus", "TextOldTls",
                                 "%1 offers only TLS versions that are too old to be safe."};
inline constexpr Message kNoTls{"FrmJobStatus", "TextNoTls",
                                "%1 does not speak HTTPS on this port."};
inline constexpr Message kFetchedWithoutForm{
    "FrmJobStatus", "TextFetchedWithoutForm",
    "The page is the answer to a form. It is opened again without sending the form."};
inline constexpr Message kLoginPageStatus{"FrmJobStatus", "TextLoginPageStatus",
                                          "The login page came with the status %1."};
inline constexpr Message kCertificateWait{"FrmJobStatus", "TextCertificateWait",
                                          "Waiting for a word on the certificate of %1"};
inline constexpr Message kPageSays{"FrmJobStatus", "TextPageSays", "The page says: %1"};
inline constexpr Message kPageAsks{"FrmJobStatus", "TextPageAsks",
                                   "The page asks: %1 (answered: %2)"};

}  // namespace quayline::message
