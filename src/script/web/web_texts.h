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
inline constexpr Message kRefusedPermission{"FrmJobStatus", "TextRefusedPermission",
                                            "Refused: the page asked for a permission."};
inline constexpr Message kRefusedUpload{"FrmJobStatus", "TextRefusedUpload",
                                        "Refused: the page asked for a file."};
inline constexpr Message kRefusedCertificate{"FrmJobStatus", "TextRefusedCertificate",
                                             "Refused: the certificate of %1 cannot be trusted."};
inline constexpr Message kCertificateWait{"FrmJobStatus", "TextCertificateWait",
                                          "Waiting for a word on the certificate of %1"};
inline constexpr Message kPageSays{"FrmJobStatus", "TextPageSays", "The page says: %1"};
inline constexpr Message kPageAsks{"FrmJobStatus", "TextPageAsks",
                                   "The page asks: %1 (answered: %2)"};

}  // namespace quayline::message
