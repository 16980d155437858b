// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace quayline {

// What other programs of this user have set on this computer: a registry of the Windows kind and
// the folders that the files of Windows programs and of this system's own programs are in. Foreign
// paths are written as those programs write them: "C:\Program Files\x". Every call reads the files
// again; nothing is ever written.
class ForeignSettings {
 public:
  enum class Hive { kCurrentUser, kLocalMachine };

  virtual ~ForeignSettings() = default;

  // The value as text, a number in decimal; an empty `name` is the key's default value. Keys and
  // names are found ignoring case. Nothing when there is no such value, or it is neither text nor
  // a number.
  virtual std::optional<QString> RegistryValue(Hive hive, const QString& key,
                                               const QString& name) const = 0;

  // Foreign paths of the user's roaming and local application data folders; empty when this
  // computer has none.
  virtual QString AppDataFolder() const = 0;
  virtual QString LocalAppDataFolder() const = 0;

  // This computer's own path of the file or folder that a foreign path names, found ignoring case;
  // empty when there is none.
  virtual QString HostPath(const QString& foreign_path) const = 0;

  // Paths of this computer: the user's home folder, the folder of the user's settings, and the
  // folder that stands for "/" (empty for "/" itself).
  virtual QString HomeFolder() const = 0;
  virtual QString ConfigFolder() const = 0;
  virtual QString SystemFolder() const = 0;
};

}  // namespace quayline
