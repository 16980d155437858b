// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <expected>

#include "async/task.h"
#include "i18n/sentence.h"

namespace quayline {

// A request to quayline-reader, the program that parses foreign files in a process of its own, or
// to another program that came with this one.
struct ReaderRequest {
  QStringList arguments;  // a verb and its arguments
  QByteArray input;       // its standard input
  std::chrono::milliseconds time_limit;
  qsizetype max_output;
  QString program = QStringLiteral("quayline-reader");
};

// `reason` says of "it" what the file is or does: "It is encrypted."
struct ReaderError {
  Sentence reason;
  bool is_input = true;  // the file is at fault, and not that there is no reader
};

// The reader's output. A reader that crashes, hangs or sends too much is ended, and is an error.
// Where a program that came with this one is: in the build tree beside it, in an installation among
// the programs that no user starts by hand.
QString HelperPath(const QString& program);

using ReaderResult = std::expected<QByteArray, ReaderError>;

// Waits for the reader, without an event loop, or until the thread is interrupted.
ReaderResult RunReader(const ReaderRequest& request);

// As RunReader(), but the event loop keeps running. Destroying the task ends the reader.
Task<ReaderResult> RunReaderInBackground(ReaderRequest request);

}  // namespace quayline
