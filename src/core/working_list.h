// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <expected>

#include "core/port_entry.h"
#include "core/port_list_file.h"

namespace quayline {

// The list file of the program's folder, to which every change of the list is written. Remembers
// what the file contains, and does not overwrite what another program has written since.
class WorkingList final {
 public:
  explicit WorkingList(const QString& path) : path_(path) {}

  const QString& Path() const { return path_; }

  std::expected<QList<PortEntry>, ListFileError> Load();

  // Writes the whole file or leaves the old one. kChangedElsewhere when the file has other rows
  // than were loaded or saved last; a file that has been removed is written again.
  std::expected<void, ListFileError> Save(const QList<PortEntry>& entries);

  // Keeps what the file contains now under the name `copy`: the next Save() replaces it. False when
  // the copy could not be written.
  bool KeepCopy(const QString& copy);

 private:
  bool IsChangedElsewhere(const QList<PortEntry>& entries) const;

  QString path_;
  QByteArray known_;  // hash of the file's bytes; empty for a file that is missing
};

}  // namespace quayline
