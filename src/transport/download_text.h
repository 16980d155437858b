// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// How Download writes rates and times. Both forms have gaps, which belong to them: a rate from 1023
// up to 1024 is shown in MB/s, and a time from 59 up to 60 seconds in hours.
QString RateText(double bytes_a_second);
QString TimeText(double seconds);

// `path` with the extension of the address in place of its own: the up to four characters after the
// last dot. As it is where either has none.
QString WithExtensionOf(const QString& address, const QString& path);

}  // namespace quayline
