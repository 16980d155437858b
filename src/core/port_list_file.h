// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <expected>

#include "core/port_entry.h"

namespace quayline {

// The list file, "list.qyl" in the program's folder and every saved list: one row a line, six
// fields joined by "|", lines ended by CR LF, no quoting, no header, in the system's encoding.

// Empty lines are skipped, missing fields are empty, fields past the sixth are dropped. Lone CR or
// LF end a line as well. Bytes that are not valid in the system's encoding are read as
// Windows-1252, the encoding of lists that came from elsewhere; UTF-16 is read by its mark; NUL
// bytes are dropped. Never fails.
QList<PortEntry> ParsePortList(const QByteArray& bytes);

// A line break inside a field would split the row when it is read again: it is written as a blank.
QByteArray FormatPortList(const QList<PortEntry>& entries);

// A line that is no entry as it stands: its ports are missing, not from 1 to 65535, or end before
// they start, or its protocol is unknown.
struct ListFault {
  qsizetype row = 0;   // among the entries of the file
  qsizetype line = 0;  // from 1
  QString text;
};

QList<ListFault> FindListFaults(const QByteArray& bytes);

enum class ListFileError {
  kCannotOpen,       // missing, a folder, no right to read
  kTooLarge,         // more than kMaxListFileBytes or kMaxListRows
  kNotAList,         // no fields, or few among control characters, as in an image
  kCannotWrite,      // read-only folder, full disk; the old file is unchanged
  kChangedElsewhere  // the file is not what was read or written last; nothing was written
};

inline constexpr qint64 kMaxListFileBytes = qint64{256} << 20;
inline constexpr qsizetype kMaxListRows = 2'000'000;  // some hundred bytes of memory each

std::expected<QList<PortEntry>, ListFileError> LoadPortList(const QString& file_name);
// The two steps of LoadPortList(): reading the file, and taking its bytes for a list.
std::expected<QByteArray, ListFileError> ReadListBytes(const QString& file_name);
std::expected<QList<PortEntry>, ListFileError> CheckedPortList(const QByteArray& bytes);

// Writes the whole file or leaves the old one.
std::expected<void, ListFileError> SavePortList(const QList<PortEntry>& entries,
                                                const QString& file_name);

}  // namespace quayline
