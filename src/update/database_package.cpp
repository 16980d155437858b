// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/database_package.h"

#include <QDir>
#include <QTemporaryDir>

#include <chrono>

#include "async/worker.h"
#include "core/database_swap.h"
#include "core/package_stream.h"
#include "core/reader_process.h"
#include "core/save_file.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kUnpackLimit = 60s;
constexpr qsizetype kMostOutput = 3 * kMaxPackedFileBytes + 4096;

constexpr Message kCannotUse{"The file from the server cannot be used."};
constexpr Message kDamaged{"The file from the server is damaged."};
constexpr Message kCannotWriteFolder{"The folder \"%1\" cannot be written."};

using Why = QList<Sentence>;

std::expected<void, Why> WriteFiles(const QByteArray& unpacked, const QString& folder) {
  const auto files = DecodeFiles(unpacked);
  if (!files || files->isEmpty()) {
    return std::unexpected(Why{{kDamaged}});
  }
  for (const PackedFile& file : *files) {
    if (!SaveFile(folder + QLatin1Char('/') + QString::fromLatin1(file.name), file.bytes,
                  kPrivateFile)) {
      return std::unexpected(CannotWrite(folder));
    }
  }
  return {};
}

std::expected<QList<RowChanges>, Why> ReplaceDatabases(const QByteArray& unpacked,
                                                       const DatabaseFolders& folders) {
  const QTemporaryDir fresh(NewSetTemplate(folders.users));
  const QTemporaryDir set(NewSetTemplate(folders.users));
  if (!fresh.isValid() || !set.isValid()) {
    return std::unexpected(Why{{kCannotWriteFolder, {QDir::toNativeSeparators(folders.users)}}});
  }
  if (const auto written = WriteFiles(unpacked, fresh.path()); !written) {
    return std::unexpected(written.error());
  }
  HeldFiles held;
  const auto changes = PrepareSet(fresh.path(), folders.users, folders.shipped, set.path(), held);
  if (!changes) {
    return changes;
  }
  if (const auto placed = PutInPlace(set.path(), folders.users); !placed) {
    return std::unexpected(Why{placed.error()});
  }
  return changes;
}

}  // namespace

Task<std::expected<QList<RowChanges>, Why>> InstallPackage(QString package,
                                                           DatabaseFolders folders) {
  const ReaderResult unpacked =
      co_await RunReaderInBackground({.arguments = {QStringLiteral("package"), package},
                                      .input = {},
                                      .time_limit = kUnpackLimit,
                                      .max_output = kMostOutput});
  if (!unpacked) {
    co_return std::unexpected(Why{{kCannotUse}, unpacked.error().reason});
  }
  // Parsing, merging and writing take seconds for large files.
  co_return co_await RunInThread<std::expected<QList<RowChanges>, Why>>(
      [unpacked = *unpacked, folders] { return ReplaceDatabases(unpacked, folders); });
}

}  // namespace quayline
