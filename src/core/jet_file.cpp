// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/jet_file.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>

#include "core/file_lock.h"
#include "core/moved_file.h"
#include "core/reader_process.h"
#include "core/save_file.h"
#include "core/table_stream.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kLockWait = 10s;  // another copy may convert the same file
constexpr qsizetype kMaxTableBytes = qsizetype{256} << 20;

bool CopyFile(const QString& from, const QString& to) {
  QFile source(from);
  if (!source.open(QIODevice::ReadOnly)) {
    return false;
  }
  const QByteArray bytes = source.readAll();
  return source.error() == QFileDevice::NoError && SaveFile(to, bytes);
}

std::unexpected<JetError> Damaged(const QString& text) {
  return std::unexpected(JetError{.text = text, .is_damaged = true});
}

std::expected<QList<TableData>, JetError> ReadTables(const QString& path) {
  const ReaderResult bytes = RunReader({.arguments = {QStringLiteral("jet"), path},
                                        .input = {},
                                        .time_limit = 60s,
                                        .max_output = kMaxTableBytes});
  if (!bytes) {
    return std::unexpected(
        JetError{.text = bytes.error().text, .is_damaged = bytes.error().is_input});
  }
  auto tables = DecodeTables(*bytes);
  if (!tables) {
    return Damaged(QStringLiteral("is damaged"));
  }
  return std::move(*tables);
}

QString AsSentence(const QString& path, const QString& part) {
  return QStringLiteral("%1 %2.").arg(path, part);
}

}  // namespace

bool IsJetFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    return false;
  }
  const QByteArray head = file.read(19);
  const QByteArray mark("\0\1\0\0", 4);
  return head == mark + "Standard Jet DB" || head == mark + "Standard ACE DB";
}

std::expected<void, JetError> ConvertJetFile(const QString& path, const QString& table) {
  if (!IsJetFile(path)) {
    return {};
  }
  // Without the lock a second copy of the program could keep the first one's result as original.
  const FileLock lock(path, kLockWait);
  const QTemporaryDir work(path + QStringLiteral(".XXXXXX"));
  if (!lock.IsLocked() || !work.isValid()) {
    return std::unexpected(
        JetError{QStringLiteral("has to be converted, but its folder cannot be written")});
  }
  if (!IsJetFile(path)) {
    return {};
  }
  const auto tables = ReadTables(path);
  if (!tables) {
    return std::unexpected(tables.error());
  }
  const auto is_table = [&table](const TableData& data) {
    return data.name.compare(table, Qt::CaseInsensitive) == 0;
  };
  if (std::ranges::none_of(*tables, is_table)) {
    return Damaged(QStringLiteral("has no table \"%1\"").arg(table));
  }
  const QString converted = work.filePath(QStringLiteral("converted"));
  if (const auto written = WriteTables(*tables, converted); !written) {
    return std::unexpected(
        JetError{QStringLiteral("cannot be converted (%1)").arg(written.error())});
  }
  if (!CopyFile(path, path + QStringLiteral(".jet")) || !MoveFile(converted, path)) {
    return std::unexpected(JetError{QStringLiteral("cannot be converted in its folder")});
  }
  return {};
}

std::expected<QList<TableData>, QString> ImportJetFile(const QString& path, const QString& out) {
  if (!QFile::exists(path)) {
    return std::unexpected(QStringLiteral("There is no file %1.").arg(path));
  }
  if (!IsJetFile(path)) {
    return std::unexpected(AsSentence(path, QStringLiteral("is not a Jet file")));
  }
  if (QFile::exists(out)) {
    return std::unexpected(AsSentence(out, QStringLiteral("exists already")));
  }
  auto tables = ReadTables(path);
  if (!tables) {
    return std::unexpected(AsSentence(path, tables.error().text));
  }
  if (tables->isEmpty()) {
    return std::unexpected(AsSentence(path, QStringLiteral("has no tables")));
  }
  const QTemporaryDir work(out + QStringLiteral(".XXXXXX"));
  const QString converted = work.filePath(QStringLiteral("converted"));
  if (const auto written = WriteTables(*tables, converted); !work.isValid() || !written) {
    const QString reason = work.isValid() ? written.error() : work.errorString();
    return std::unexpected(AsSentence(out, QStringLiteral("cannot be written (%1)").arg(reason)));
  }
  if (!QFile::rename(converted, out)) {  // does not replace a file
    return std::unexpected(AsSentence(out, QStringLiteral("cannot be written")));
  }
  return std::move(*tables);
}

}  // namespace quayline
