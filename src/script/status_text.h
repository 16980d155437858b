// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// The text for a status that a browser reports of a failed page: an HTTP status or one of the
// browser's own error numbers, as decimal text or in its symbolic form. "Unknown Error: " and the
// status for any other.
QString StatusText(const QString& status);
QString StatusText(int status);

// The status for an error of the network stack (its negative error numbers); the number itself if
// there is none.
int StatusOfNetError(int net_error);

// What the user should check because of a status.
enum class StatusNotice { kNone, kAccessDenied, kNotFound };
StatusNotice NoticeOfStatus(const QString& status_text);

namespace page_status {
inline constexpr int kInvalidUrl = -2146697214;
inline constexpr int kUnknownProtocol = -2146697203;
inline constexpr int kCannotLoadData = -2146697201;
// Limits of our own.
inline constexpr int kTooLarge = -1001;
inline constexpr int kTooManyWindows = -1002;
}  // namespace page_status

}  // namespace quayline
