// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foreign_settings.h"

namespace quayline {

// The settings of this system's programs, and of the Windows programs that run under Wine, read
// from the files of one Wine prefix.
// Wine itself need not be installed, and is never started. A prefix that does not exist gives
// nothing.
class WineSettings final : public ForeignSettings {
 public:
  // The prefix that Wine would use now: $WINEPREFIX, else ".wine" in the home folder.
  WineSettings();
  WineSettings(QString prefix, QString home, QString config, QString system);

  // In the local machine's hive the keys of 32-bit programs count as well, which a 64-bit prefix
  // keeps apart below "Wow6432Node".
  std::optional<QString> RegistryValue(Hive hive, const QString& key,
                                       const QString& name) const override;
  QString AppDataFolder() const override;
  QString LocalAppDataFolder() const override;
  QString HostPath(const QString& foreign_path) const override;
  QString HomeFolder() const override { return home_; }
  QString ConfigFolder() const override { return config_; }
  QString SystemFolder() const override { return system_; }

 private:
  QString DriveFolder(QChar drive) const;
  QString UserFolder(const QString& shell_folder, const QStringList& usual_places) const;

  QString prefix_;
  QString home_;
  QString config_;
  QString system_;
};

}  // namespace quayline
