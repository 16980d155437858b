// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>

namespace quayline {

// One line of received text, as the event TextArrival reports it.
struct SockLine {
  QString text;
  int format = 1;            // 1: sent as 16-bit characters, 2: sent as bytes
  bool is_not_utf8 = false;  // not decoded from UTF-8; true for all of format 1
};

// The lines in what was received in text mode, and how many of its bytes they and their ends took.
struct SockLines {
  QList<SockLine> lines;
  qsizetype taken = 0;
};

// Splits at CR LF, else at LF, else at CR: between 16-bit characters if these contain one, else
// between bytes. What follows the last of them is not taken. The bytes of a line that are not UTF-8
// are text in the system's code page.
SockLines TakeLines(QByteArrayView received);

// Whether a line counts as UTF-8: not when it is empty. A character that is cut off at the end
// counts, and so do lead bytes of five and six bytes.
bool IsUtf8(QByteArrayView line);

}  // namespace quayline
