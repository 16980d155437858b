// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <optional>

namespace quayline {

inline constexpr auto kPrivateFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

// Writes the whole of a file or leaves what stood there. Without `permissions` a file keeps those
// that it had. False when it could not be written.
bool SaveFile(const QString& path, const QByteArray& bytes,
              std::optional<QFileDevice::Permissions> permissions = std::nullopt);

}  // namespace quayline
