// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/text_bytes.h"

#include <QStringConverter>

#include <array>

namespace quayline {

namespace {

// What Windows-1252 has in place of the control characters 0x80 to 0x9F.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

QString FromWindows1252(QByteArrayView bytes) {
  QString text = QString::fromLatin1(bytes);
  for (QChar& c : text) {
    if (c >= QChar(0x80) && c <= QChar(0x9F)) {
      c = QChar(kUpperControls.at(c.unicode() - 0x80));
    }
  }
  return text;
}

QString FromUtf8OrWindows1252(QByteArrayView bytes) {
  QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  QString text = decode(bytes);
  return decode.hasError() ? FromWindows1252(bytes) : text;
}

QString OnOneLine(QString text) {
  text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
  text.replace(QLatin1Char('\r'), QLatin1Char(' '));
  text.replace(QLatin1Char('\n'), QLatin1Char(' '));
  return text;
}

}  // namespace quayline
