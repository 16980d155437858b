// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/program_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "core/database_swap.h"
#include "core/shipped_databases.h"

namespace quayline {

namespace {

constexpr Message kCannotCreate{"The folder \"%1\" cannot be created."};

}  // namespace

std::expected<QString, Sentence> FindProgramFolder(const QString& executable_folder,
                                                   const QString& shipped_folder) {
  if (QFileInfo(executable_folder + QStringLiteral("/routers.mdb")).isFile()) {
    return executable_folder;
  }
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                         QStringLiteral("/quayline");
  if (!QDir().mkpath(folder)) {
    return std::unexpected(Sentence{kCannotCreate, {folder}});
  }
  CompleteSwap(folder);
  FollowShippedDatabases(shipped_folder, folder);
  return folder;
}

}  // namespace quayline
