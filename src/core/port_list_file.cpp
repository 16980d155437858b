// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/port_list_file.h"

#include <QFile>
#include <QFileInfo>
#include <QStringConverter>

#include <algorithm>
#include <array>

#include "core/save_file.h"
#include "core/text_bytes.h"

namespace quayline {

namespace {

constexpr qsizetype kNoLimit = std::numeric_limits<qsizetype>::max();

// Some editors save a list as UTF-16 with a byte order mark: it is converted to UTF-8.
QByteArray WithoutUtf16(const QByteArray& bytes) {
  if (!bytes.startsWith("\xff\xfe") && !bytes.startsWith("\xfe\xff")) {
    return bytes;
  }
  QStringDecoder decode(QStringDecoder::Utf16, QStringDecoder::Flag::Stateless);
  const QString text = decode(bytes);
  return text.toUtf8();
}

QString Decoded(QByteArrayView line) {
  QStringDecoder decode(QStringDecoder::System, QStringDecoder::Flag::Stateless);
  QString text = decode(line);
  return decode.hasError() ? FromWindows1252(line) : text;
}

PortEntry ParseRow(const QString& line) {
  PortEntry entry;
  const std::array fields = {&entry.app_name, &entry.forwarded_to, &entry.start_port,
                             &entry.end_port, &entry.protocol,     &entry.description};
  qsizetype from = 0;
  for (QString* field : fields) {
    const qsizetype bar = line.indexOf(QLatin1Char('|'), from);
    *field = line.mid(from, bar < 0 ? -1 : bar - from);
    if (bar < 0) {
      break;
    }
    from = bar + 1;
  }
  return entry;
}

// Calls `take` with each line that is not empty, and its number, until it answers false.
void ForEachLine(const QByteArray& file_bytes, auto take) {
  QByteArray bytes = WithoutUtf16(file_bytes);
  bytes.removeIf([](char c) { return c == '\0'; });
  qsizetype from = 0;
  for (qsizetype number = 1; from < bytes.size(); ++number) {
    qsizetype end = from;
    while (end < bytes.size() && bytes[end] != '\r' && bytes[end] != '\n') {
      ++end;
    }
    if (end > from && !take(Decoded(QByteArrayView(bytes).sliced(from, end - from)), number)) {
      return;
    }
    const bool is_pair = end + 1 < bytes.size() && bytes[end] == '\r' && bytes[end + 1] == '\n';
    from = end + (is_pair ? 2 : 1);
  }
}

// Stops after `max_rows` rows.
QList<PortEntry> ParseRows(const QByteArray& bytes, qsizetype max_rows) {
  QList<PortEntry> entries;
  ForEachLine(bytes, [&](const QString& line, qsizetype) {
    entries.append(ParseRow(line));
    return entries.size() < max_rows;
  });
  return entries;
}

bool IsSound(const PortEntry& entry) {
  constexpr int kMaxPort = 65535;
  const int start = PortNumber(entry.start_port).value_or(0);
  const int end = PortNumber(entry.end_port).value_or(0);
  static const QStringList protocols = {QStringLiteral("TCP"), QStringLiteral("UDP"),
                                        QStringLiteral("TCP/UDP")};
  return start >= 1 && start <= end && end <= kMaxPort &&
         protocols.contains(entry.protocol, Qt::CaseInsensitive);
}

// The lines of an image, a program or another text would become names of entries. A list can also
// contain control characters, from names in a database, but then its rows have fields.
bool IsOtherFile(const QByteArray& bytes, const QList<PortEntry>& entries) {
  constexpr qsizetype kBarsOfRow = 5;
  const qsizetype bars = bytes.count('|');
  if (bars == 0) {
    return !entries.isEmpty();
  }
  const bool has_controls = std::ranges::any_of(WithoutUtf16(bytes), [](char c) {
    return c > '\0' && c < ' ' && c != '\t' && c != '\r' && c != '\n';
  });
  return has_controls && bars < entries.size() * kBarsOfRow / 2;
}

}  // namespace

QList<PortEntry> ParsePortList(const QByteArray& bytes) { return ParseRows(bytes, kNoLimit); }

QList<ListFault> FindListFaults(const QByteArray& bytes) {
  QList<ListFault> faults;
  qsizetype row = 0;
  ForEachLine(bytes, [&](const QString& line, qsizetype number) {
    if (!IsSound(ParseRow(line))) {
      faults.append({.row = row, .line = number, .text = line});
    }
    ++row;
    return true;
  });
  return faults;
}

QByteArray FormatPortList(const QList<PortEntry>& entries) {
  QString text;
  for (const PortEntry& entry : entries) {
    const QStringList fields = {entry.app_name, entry.forwarded_to, entry.start_port,
                                entry.end_port, entry.protocol,     entry.description};
    text += OnOneLine(fields.join(QLatin1Char('|'))) + QStringLiteral("\r\n");
  }
  QStringEncoder encode(QStringEncoder::System, QStringEncoder::Flag::Stateless);
  QByteArray bytes = encode(text);
  // A letter that the system's encoding lacks is better kept for a reader of UTF-8 than lost.
  return encode.hasError() ? text.toUtf8() : bytes;
}

std::expected<QByteArray, ListFileError> ReadListBytes(const QString& file_name) {
  // Opening a pipe or a device would wait for its other end.
  if (!QFileInfo(file_name).isFile()) {
    return std::unexpected(ListFileError::kCannotOpen);
  }
  QFile file(file_name);
  if (!file.open(QIODevice::ReadOnly)) {
    return std::unexpected(ListFileError::kCannotOpen);
  }
  // The size is only what the file system reports: some files grow while they are read.
  QByteArray bytes =
      file.size() > kMaxListFileBytes ? QByteArray() : file.read(kMaxListFileBytes + 1);
  if (file.size() > kMaxListFileBytes || bytes.size() > kMaxListFileBytes) {
    return std::unexpected(ListFileError::kTooLarge);
  }
  if (file.error() != QFileDevice::NoError) {
    return std::unexpected(ListFileError::kCannotOpen);
  }
  return bytes;
}

std::expected<QList<PortEntry>, ListFileError> CheckedPortList(const QByteArray& bytes) {
  QList<PortEntry> entries = ParseRows(bytes, kMaxListRows + 1);
  if (entries.size() > kMaxListRows) {
    return std::unexpected(ListFileError::kTooLarge);
  }
  if (IsOtherFile(bytes, entries)) {
    return std::unexpected(ListFileError::kNotAList);
  }
  return entries;
}

std::expected<QList<PortEntry>, ListFileError> LoadPortList(const QString& file_name) {
  const auto bytes = ReadListBytes(file_name);
  return bytes ? CheckedPortList(*bytes) : std::unexpected(bytes.error());
}

std::expected<void, ListFileError> SavePortList(const QList<PortEntry>& entries,
                                                const QString& file_name) {
  if (!SaveFile(file_name, FormatPortList(entries))) {
    return std::unexpected(ListFileError::kCannotWrite);
  }
  return {};
}

}  // namespace quayline
