// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <expected>

#include "core/table_data.h"

namespace quayline::reader {

// All user tables of a Jet file. Nulls are empty texts. The error is a part of a sentence that says
// what the file is or does ("is damaged").
std::expected<QList<TableData>, QString> ReadJetFile(const QString& path);

}  // namespace quayline::reader
