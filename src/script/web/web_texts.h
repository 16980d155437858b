// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// What the hosted browser reports in the status box of the job window.
inline constexpr Message kOpeningPage{"Opening page %1"};
inline constexpr Message kPageDone{"Done"};
inline constexpr Message kTryingAgain{"The router does not answer. Trying again."};
inline constexpr Message kBlockedHost{"Blocked: the page asked for something of %1"};
inline constexpr Message kRefusedFile{"Refused: the page offered the file %1"};
inline constexpr Message kRefusedAddress{"Refused: the page tried to open %1"};
inline constexpr Message kRefusedWindow{"Refused: the page tried to open a window."};
inline constexpr Message kTooManyWindows{"The page has opened more than eight windows."};
inline constexpr Message kRefusedPermission{"Refused: the page asked for a permission."};
inline constexpr Message kRefusedUpload{"Refused: the page asked for a file."};
inline constexpr Message kRefusedCertificate{"Refused: the certificate of %1 cannot be trusted."};
inline constexpr Message kCertificateOutOfDate{
    "The certificate of %1 has expired, or is not valid yet. Check the clock of the router."};
inline constexpr Message kCertificateOfOther{"The certificate of %1 is for another host name."};
inline constexpr Message kOldTls{
    "%1 offers only old encryption (TLS), which is not safe any more."};
inline constexpr Message kNoTls{
    "%1 does not answer with HTTPS on this port. Please check the HTTP type and port in the main "
    "window."};
inline constexpr Message kFetchedWithoutForm{
    "The page is the answer to a form. It is opened again without sending the form."};
inline constexpr Message kLoginPageStatus{"The login page came with the status %1."};
inline constexpr Message kCertificateWait{"Waiting for your answer about the certificate of %1"};
inline constexpr Message kCertificateNotStored{
    "Your answer about the certificate of %1 cannot be stored. Is the disk full? It is used "
    "until the program ends, and stored later if that is possible."};
inline constexpr Message kPageSays{"The page says: %1"};
inline constexpr Message kPageAsks{"The page asks: %1 (answered: %2)"};

}  // namespace quayline::message
