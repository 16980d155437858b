// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>

#include "core/package_stream.h"

namespace quayline::reader {

// The files of a package of databases: a ZIP archive, with or without a program in front, which is
// not looked at. A package with anything else in it is refused as a whole. The error is a part of a
// sentence that says what the file is or does.
std::expected<QList<PackedFile>, QString> ReadPackage(const QString& path);

}  // namespace quayline::reader
