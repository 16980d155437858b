// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/program_folder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <array>

namespace quayline {

namespace {

constexpr std::array kDatabaseNames = {"routers.mdb", "ports.mdb", "custom.mdb"};
constexpr qint64 kBlockBytes = 1 << 20;

bool CopyContent(QFile& from, QFile& to) {
  while (!from.atEnd()) {
    const QByteArray block = from.read(kBlockBytes);
    if (block.isEmpty() || to.write(block) != block.size()) {
      return false;
    }
  }
  return from.error() == QFileDevice::NoError && to.flush();
}

// The new file has the whole content or does not exist. A file that another instance has created in
// the meantime stays, so this is not SaveFile(), which would replace it.
bool CopyIfMissing(const QString& from, const QString& to) {
  QFile source(from);
  QTemporaryFile copy(to + QStringLiteral(".XXXXXX"));
  if (!source.open(QIODevice::ReadOnly) || !copy.open() || !CopyContent(source, copy)) {
    return false;
  }
  // The installed file may be read-only; the user's own is not.
  copy.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup |
                      QFileDevice::ReadOther);
  copy.close();
  if (!QFile::rename(copy.fileName(), to)) {
    return QFileInfo(to).isFile();
  }
  copy.setAutoRemove(false);
  return true;
}

}  // namespace

std::expected<QString, QString> FindProgramFolder(const QString& executable_folder,
                                                  const QString& seed_folder) {
  if (QFileInfo(executable_folder + QStringLiteral("/routers.mdb")).isFile()) {
    return executable_folder;
  }
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                         QStringLiteral("/quayline");
  if (!QDir().mkpath(folder)) {
    return std::unexpected(QStringLiteral("The folder \"%1\" cannot be created.").arg(folder));
  }
  for (const char* name : kDatabaseNames) {
    const QString file = QLatin1Char('/') + QString::fromLatin1(name);
    if (!seed_folder.isEmpty() && QFileInfo::exists(seed_folder + file) &&
        !QFileInfo::exists(folder + file) && !CopyIfMissing(seed_folder + file, folder + file)) {
      return std::unexpected(
          QStringLiteral("The file \"%1\" cannot be copied to the folder \"%2\".")
              .arg(seed_folder + file, folder));
    }
  }
  return folder;
}

QString SeedFolder(const QString& executable_folder) {
  const QString folder = QDir::cleanPath(executable_folder + QStringLiteral("/../share/quayline"));
  const bool has_any = std::ranges::any_of(kDatabaseNames, [&](const char* name) {
    return QFileInfo(folder + QLatin1Char('/') + QString::fromLatin1(name)).isFile();
  });
  return has_any ? folder : QString();
}

}  // namespace quayline
