// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/wine_settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

#include "platform/linux/wine_registry.h"

namespace quayline {

namespace {

// A hive of a prefix with many programs has some 10 MB.
constexpr qint64 kMaxHiveBytes = 64 << 20;

constexpr QLatin1Char kSlash('/');
constexpr QLatin1Char kBackslash('\\');

QByteArray HiveBytes(const QString& path) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || file.size() > kMaxHiveBytes || !file.open(QIODevice::ReadOnly)) {
    return {};
  }
  return file.read(kMaxHiveBytes);
}

// The key under which 32-bit programs find `key` in a 64-bit prefix.
QString KeyOf32Bit(const QString& key) {
  const qsizetype root = key.indexOf(kBackslash) + 1;
  return key.first(root) + QStringLiteral("Wow6432Node\\") + key.sliced(root);
}

// The entry of `folder` that is called `name`, ignoring case where none is called exactly so.
QString FindEntry(const QString& folder, const QString& name) {
  QString exact = folder + kSlash + name;
  if (QFileInfo::exists(exact)) {
    return exact;
  }
  const QStringList entries = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden, QDir::Name);
  const auto found = std::ranges::find_if(
      entries, [&](const QString& entry) { return entry.compare(name, Qt::CaseInsensitive) == 0; });
  return found == entries.end() ? QString() : folder + kSlash + *found;
}

QString PrefixOfEnvironment() {
  const QString prefix = qEnvironmentVariable("WINEPREFIX");
  return prefix.isEmpty() ? QDir::homePath() + QStringLiteral("/.wine") : prefix;
}

// The names of the prefix's users, first that of the person at the computer.
QStringList UserNames(const QString& users_folder) {
  QStringList names = QDir(users_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
  names.removeIf([](const QString& name) {
    return name.compare(QLatin1String("Public"), Qt::CaseInsensitive) == 0;
  });
  if (const qsizetype own = names.indexOf(qEnvironmentVariable("USER")); own > 0) {
    names.move(own, 0);
  }
  return names;
}

}  // namespace

WineSettings::WineSettings()
    : WineSettings(PrefixOfEnvironment(), QDir::homePath(),
                   QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation), {}) {}

WineSettings::WineSettings(QString prefix, QString home, QString config, QString system)
    : prefix_(std::move(prefix)),
      home_(std::move(home)),
      config_(std::move(config)),
      system_(std::move(system)) {}

std::optional<QString> WineSettings::RegistryValue(Hive hive, const QString& key,
                                                   const QString& name) const {
  const bool is_machine = hive == Hive::kLocalMachine;
  const QByteArray bytes =
      HiveBytes(prefix_ + (is_machine ? QLatin1String("/system.reg") : QLatin1String("/user.reg")));
  auto value = FindWineValue(bytes, key, name);
  if (!value && is_machine) {
    value = FindWineValue(bytes, KeyOf32Bit(key), name);
  }
  return value;
}

QString WineSettings::AppDataFolder() const {
  return UserFolder(QStringLiteral("AppData"),
                    {QStringLiteral("AppData\\Roaming"), QStringLiteral("Application Data")});
}

QString WineSettings::LocalAppDataFolder() const {
  return UserFolder(
      QStringLiteral("Local AppData"),
      {QStringLiteral("AppData\\Local"), QStringLiteral("Local Settings\\Application Data")});
}

QString WineSettings::HostPath(const QString& foreign_path) const {
  QString path = foreign_path;
  path.replace(kSlash, kBackslash);
  if (path.size() < 2 || path[1] != QLatin1Char(':')) {
    return {};
  }
  QString found = DriveFolder(path[0]);
  for (const QString& name : path.sliced(2).split(kBackslash, Qt::SkipEmptyParts)) {
    found = found.isEmpty() ? QString() : FindEntry(found, name);
  }
  return found;
}

QString WineSettings::DriveFolder(QChar drive) const {
  QString link = prefix_ + QStringLiteral("/dosdevices/") + drive.toLower() + QLatin1Char(':');
  if (QFileInfo(link).isDir()) {
    return link;
  }
  // Links get lost when a prefix is copied; the drive of the programs is known without.
  return drive.toLower() == QLatin1Char('c') ? FindEntry(prefix_, QStringLiteral("drive_c"))
                                             : QString();
}

// A prefix that began under an older Wine keeps its older folders, and the newer ones may exist
// beside them, so the registry is read first.
QString WineSettings::UserFolder(const QString& shell_folder,
                                 const QStringList& usual_places) const {
  QStringList paths;
  paths += RegistryValue(Hive::kCurrentUser,
                         QStringLiteral("Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\"
                                        "Shell Folders"),
                         shell_folder)
               .value_or(QString());
  const QString users = QStringLiteral("C:\\users");
  for (const QString& name : UserNames(HostPath(users))) {
    for (const QString& place : usual_places) {
      paths += QStringList{users, name, place}.join(kBackslash);
    }
  }
  const auto found = std::ranges::find_if(
      paths, [this](const QString& path) { return QFileInfo(HostPath(path)).isDir(); });
  return found == paths.end() ? QString() : *found;
}

}  // namespace quayline
