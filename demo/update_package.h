// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include "core/package_stream.h"

namespace quayline::demo {

// A package of databases as the maker's server sends it: `program`, which may be empty, and a ZIP
// archive of the files behind it.
QByteArray MakePackage(const QList<PackedFile>& files, const QByteArray& program);

}  // namespace quayline::demo
