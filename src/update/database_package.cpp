// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/database_package.h"

#include <QDir>
#include <QTemporaryDir>

#include <chrono>

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
      return std::unexpected(
          QStringLiteral("The new databases cannot be written to \"%1\". Is the disk full?")
              .arg(QDir::toNativeSeparators(folder)));
    }
  }
  return {};
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
  const QTemporaryDir fresh(NewSetTemplate(folders.users));
  QTemporaryDir set(NewSetTemplate(folders.users));
  if (!fresh.isValid() || !set.isValid()) {
    co_return std::unexpected(QStringLiteral("The folder \"%1\" cannot be written.")
                                  .arg(QDir::toNativeSeparators(folders.users)));
  }
  if (const auto written = WriteFiles(*unpacked, fresh.path()); !written) {
    co_return std::unexpected(written.error());
  }
  const auto changes = PrepareSet(fresh.path(), folders.users, folders.shipped, set.path());
  if (!changes) {
    co_return changes;
  }
  if (const auto placed = PutInPlace(set.path(), folders.users); !placed) {
    co_return std::unexpected(placed.error());
  }
  co_return changes;
}

}  // namespace quayline
