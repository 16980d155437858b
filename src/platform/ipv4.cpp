// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/ipv4.h"

#include <QStringList>

#include <algorithm>
#include <bit>

namespace quayline {

namespace {

constexpr int kParts = 4;
constexpr qsizetype kMostDigits = 3;
constexpr quint32 kLargestPart = 255;

std::optional<quint32> ParsePart(QStringView part) {
  const bool is_number = !part.isEmpty() && part.size() <= kMostDigits &&
                         std::ranges::all_of(part, [](QChar c) { return c >= u'0' && c <= u'9'; });
  if (!is_number || (part.size() > 1 && part.front() == u'0')) {
    return std::nullopt;
  }
  const quint32 number = part.toUInt();
  return number <= kLargestPart ? std::optional(number) : std::nullopt;
}

}  // namespace

std::optional<quint32> ParseIpv4(const QString& text) {
  const QList<QStringView> parts = QStringView(text).split(u'.');
  if (parts.size() != kParts) {
    return std::nullopt;
  }
  quint32 address = 0;
  for (const QStringView part : parts) {
    const std::optional<quint32> number = ParsePart(part);
    if (!number) {
      return std::nullopt;
    }
    address = address << 8 | *number;
  }
  return address;
}

QString DottedIpv4(quint32 address) {
  return QStringLiteral("%1.%2.%3.%4")
      .arg(address >> 24)
      .arg(address >> 16 & kLargestPart)
      .arg(address >> 8 & kLargestPart)
      .arg(address & kLargestPart);
}

std::optional<int> PrefixLength(quint32 mask) {
  const int ones = std::countl_one(mask);
  return ones + std::countr_zero(mask) >= 32 ? std::optional(ones) : std::nullopt;
}

quint32 MaskOfLength(int prefix_length) {
  return static_cast<quint32>(~quint64{0} << (32 - std::clamp(prefix_length, 0, 32)));
}

}  // namespace quayline
