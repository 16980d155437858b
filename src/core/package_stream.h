// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

namespace quayline {

// What a package of databases may contain: these files, once each, at its root.
inline constexpr const char* kPackageNames[] = {"routers.mdb", "ports.mdb", "custom.mdb"};
inline constexpr qint64 kMaxPackageBytes = qint64{64} << 20;
inline constexpr qint64 kMaxPackedFileBytes = qint64{48} << 20;  // of each file, unpacked

struct PackedFile {
  QByteArray name;
  QByteArray bytes;
};

// Files as bytes, the form in which quayline-reader returns what it has unpacked.
QByteArray EncodeFiles(const QList<PackedFile>& files);

// The bytes are untrusted: nothing is returned for bytes that EncodeFiles() cannot have made, and
// for files of other names or sizes than those above.
std::optional<QList<PackedFile>> DecodeFiles(const QByteArray& bytes);

}  // namespace quayline
