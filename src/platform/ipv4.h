// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace quayline {

// IPv4 addresses as numbers, the first of the four parts in the highest byte.

// Four decimal numbers up to 255 with three dots, and nothing else. A leading zero is refused: some
// programs read such a number as octal.
std::optional<quint32> ParseIpv4(const QString& text);

QString DottedIpv4(quint32 address);

// How many ones a mask begins with; nothing if a one follows a zero.
std::optional<int> PrefixLength(quint32 mask);

// The mask of `prefix_length` ones, 0 to 32.
quint32 MaskOfLength(int prefix_length);

}  // namespace quayline
