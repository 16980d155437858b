// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

namespace quayline {

// Text out of the bytes of a file that people and other programs have written.

// `bytes` in Windows-1252. The five bytes that the code page leaves free become the control
// characters of the same number, so nothing is lost.
QString FromWindows1252(QByteArrayView bytes);

// `bytes` as UTF-8 where they are valid UTF-8, else in Windows-1252.
QString FromUtf8OrWindows1252(QByteArrayView bytes);

// `text` on one line: each line break (CR LF, CR or LF) becomes one blank.
QString OnOneLine(QString text);

}  // namespace quayline
