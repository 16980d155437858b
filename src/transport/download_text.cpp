// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/download_text.h"

#include <algorithm>
#include <cmath>

namespace quayline {

namespace {

constexpr double kKilo = 1024;
constexpr double kMega = 1048576;
constexpr qsizetype kPlacesOfExtension = 5;  // the dot among them

// A half is rounded up.
QString Whole(double number) { return QString::number(std::round(number), 'f', 0); }
QString TwoPlaces(double number) { return QString::number(std::round(number * 100) / 100, 'f', 2); }

// Of whole numbers: the operand is rounded first.
double Modulo60(double number) { return std::fmod(std::nearbyint(number), 60); }

qsizetype DotOfExtension(const QString& name) {
  return name.indexOf(QLatin1Char('.'), std::max<qsizetype>(0, name.size() - kPlacesOfExtension));
}

}  // namespace

QString RateText(double bytes_a_second) {
  if (bytes_a_second < kKilo - 1) {
    return Whole(bytes_a_second) + QStringLiteral(" Bytes/s");
  }
  if (bytes_a_second >= kKilo && bytes_a_second < kMega) {
    return TwoPlaces(bytes_a_second / kKilo) + QStringLiteral(" KB/s");
  }
  return TwoPlaces(bytes_a_second / kMega) + QStringLiteral(" MB/s");
}

QString TimeText(double seconds) {
  if (seconds < 59) {
    return Whole(seconds) + QStringLiteral(" sec");
  }
  if (seconds >= 60 && seconds < 3599) {
    return Whole(seconds / 60) + QStringLiteral(" min ") + Whole(Modulo60(seconds)) +
           QStringLiteral(" sec");
  }
  return Whole(seconds / 3600) + QStringLiteral(" hr ") + Whole(Modulo60(seconds / 60)) +
         QStringLiteral(" min");
}

QString WithExtensionOf(const QString& address, const QString& path) {
  const qsizetype from = DotOfExtension(address);
  const qsizetype to = DotOfExtension(path);
  const QString extension = address.mid(from + 1);
  const bool is_name = std::ranges::all_of(extension, [](QChar c) { return c.isLetterOrNumber(); });
  return from < 0 || to < 0 || !is_name ? path : path.left(to + 1) + extension;
}

}  // namespace quayline
