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

std::expected<void, QString> WriteFiles(const QByteArray& unpacked, const QString& folder) {
  const auto files = DecodeFiles(unpacked);
  if (!files || files->isEmpty()) {
    return std::unexpected(QStringLiteral("The file from the server is damaged."));
  }
  for (const PackedFile& file : *files) {
    if (!SaveFile(folder + QLatin1Char('/') + QString::fromLatin1(file.name), file.bytes,
                  kPrivateFile)) {
      return std::unexpected(CannotWrite(folder));
    }
  }
  return {};
}

std::expected<QList<RowChanges>, QString> ReplaceDatabases(const QByteArray& unpacked,
                                                           const DatabaseFolders& folders) {
  const QTemporaryDir fresh(NewSetTemplate(folders.users));
  const QTemporaryDir set(NewSetTemplate(folders.users));
  if (!fresh.isValid() || !set.isValid()) {
    return std::unexpected(QStringLiteral("The folder \"%1\" cannot be written.")
                               .arg(QDir::toNativeSeparators(folders.users)));
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
    return std::unexpected(placed.error());
  }
  return changes;
}

}  // namespace

Task<std::expected<QList<RowChanges>, QString>> InstallPackage(QString package,
                                                               DatabaseFolders folders) {
  const ReaderResult unpacked =
      co_await RunReaderInBackground({.arguments = {QStringLiteral("package"), package},
                                      .input = {},
                                      .time_limit = kUnpackLimit,
                                      .max_output = kMostOutput});
  if (!unpacked) {
    co_return std::unexpected(
        QStringLiteral("The file from the server %1.").arg(unpacked.error().text));
  }
  // Parsing, merging and writing take seconds for large files.
  co_return co_await RunInThread<std::expected<QList<RowChanges>, QString>>(
      [unpacked = *unpacked, folders] { return ReplaceDatabases(unpacked, folders); });
}

}  // namespace quayline
