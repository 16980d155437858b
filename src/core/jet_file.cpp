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

// Of a file that was named before.
constexpr Message kDamaged{"Its content is damaged."};
constexpr Message kFolderReadOnly{"It has to be converted, but its folder cannot be written."};
constexpr Message kNoTable{"It has no table \"%1\"."};
constexpr Message kCannotConvert{"It cannot be converted (%1)."};
constexpr Message kCannotReplace{"It cannot be converted in its folder."};

bool CopyFile(const QString& from, const QString& to) {
  QFile source(from);
  if (!source.open(QIODevice::ReadOnly)) {
    return false;
  }
  const QByteArray bytes = source.readAll();
  return source.error() == QFileDevice::NoError && SaveFile(to, bytes);
}

std::unexpected<JetError> Damaged(const Sentence& reason) {
  return std::unexpected(JetError{.reason = reason, .is_damaged = true});
}

std::expected<QList<TableData>, JetError> ReadTables(const QString& path) {
  const ReaderResult bytes = RunReader({.arguments = {QStringLiteral("jet"), path},
                                        .input = {},
                                        .time_limit = 60s,
                                        .max_output = kMaxTableBytes});
  if (!bytes) {
    return std::unexpected(
        JetError{.reason = bytes.error().reason, .is_damaged = bytes.error().is_input});
  }
  auto tables = DecodeTables(*bytes);
  if (!tables) {
    return Damaged({kDamaged});
  }
  return std::move(*tables);
}

QString ForCommandLine(const QString& path, const QString& part) {
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
    return std::unexpected(JetError{{kFolderReadOnly}});
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
    return Damaged({kNoTable, {table}});
  }
  const QString converted = work.filePath(QStringLiteral("converted"));
  if (const auto written = WriteTables(*tables, converted); !written) {
    return std::unexpected(JetError{{kCannotConvert, {written.error()}}});
  }
  if (!CopyFile(path, path + QStringLiteral(".jet")) || !MoveFile(converted, path)) {
    return std::unexpected(JetError{{kCannotReplace}});
  }
  return {};
}

std::expected<QList<TableData>, QString> ImportJetFile(const QString& path, const QString& out) {
  if (!QFile::exists(path)) {
    return std::unexpected(ForCommandLine(path, QStringLiteral("does not exist")));
  }
  if (!IsJetFile(path)) {
    return std::unexpected(ForCommandLine(path, QStringLiteral("is not a Jet file")));
  }
  if (QFile::exists(out)) {
    return std::unexpected(ForCommandLine(out, QStringLiteral("exists already")));
  }
  auto tables = ReadTables(path);
  if (!tables) {
    return std::unexpected(path + QStringLiteral(": ") + EnglishOf(tables.error().reason));
  }
  if (tables->isEmpty()) {
    return std::unexpected(ForCommandLine(path, QStringLiteral("has no tables")));
  }
  const QTemporaryDir work(out + QStringLiteral(".XXXXXX"));
  const QString converted = work.filePath(QStringLiteral("converted"));
  if (const auto written = WriteTables(*tables, converted); !work.isValid() || !written) {
    const QString reason = work.isValid() ? written.error() : work.errorString();
    return std::unexpected(
        ForCommandLine(out, QStringLiteral("cannot be written (%1)").arg(reason)));
  }
  if (!QFile::rename(converted, out)) {  // does not replace a file
    return std::unexpected(ForCommandLine(out, QStringLiteral("cannot be written")));
  }
  return std::move(*tables);
}

}  // namespace quayline
