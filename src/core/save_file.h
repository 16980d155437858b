// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <optional>

namespace quayline {

inline constexpr auto kPrivateFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

// Writes the whole file, or leaves the old one. Without `permissions` an existing file keeps its
// own. A link keeps pointing to its file. False when the file could not be written.
bool SaveFile(const QString& path, const QByteArray& bytes,
              std::optional<QFileDevice::Permissions> permissions = std::nullopt);

// Removes what killed writes of the settings, the certificates, the list and the good copies of
// databases left in the program's folder: temporary files, which may contain the password. Files of
// a write in progress are safe, since writers of these files hold the folder's FileLock.
void RemoveUnfinishedWrites(const QString& folder);

}  // namespace quayline
