// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/terminal.h"

#include <QStringList>

#include <cstdio>

namespace quayline {

namespace {

void Write(FILE* stream, const QString& text) {
  const QByteArray bytes = text.toUtf8();
  std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
  std::fflush(stream);
}

bool TurnsText(QChar c) {
  const char16_t code = c.unicode();
  return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

}  // namespace

QString WithoutControls(QString text) {
  constexpr char16_t kPictures = 0x2400;  // one for each control character below the blank
  constexpr QChar kPictureOfDelete(u'\u2421');
  for (QChar& c : text) {
    if (c < QLatin1Char(' ')) {
      c = QChar(static_cast<char16_t>(kPictures + c.unicode()));
    } else if (c == QChar(0x7F)) {
      c = kPictureOfDelete;
    } else if (c.category() == QChar::Other_Control || TurnsText(c)) {
      c = QChar(QChar::ReplacementCharacter);
    }
  }
  return text;
}

QString LogForTerminal(const QString& text) {
  QStringList lines = text.split(QStringLiteral("\r\n"));
  for (QString& line : lines) {
    line = WithoutControls(line);
  }
  return lines.join(QLatin1Char('\n'));
}

void WriteLog(const QString& piece) { Write(stdout, LogForTerminal(piece)); }

void WriteLines(const QString& lines) {
  QStringList shown = lines.split(QLatin1Char('\n'));
  for (QString& line : shown) {
    line = WithoutControls(line);
  }
  Write(stdout, shown.join(QLatin1Char('\n')));
}

void Report(const QString& sentence) {
  Write(stderr, WithoutControls(sentence) + QLatin1Char('\n'));
}

void ReportLines(const QString& text) {
  for (const QString& line : text.split(QLatin1Char('\n'))) {
    Report(line);
  }
}

}  // namespace quayline
