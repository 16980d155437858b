// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

#include "core/table_data.h"

namespace quayline {

// Tables as bytes, the form in which quayline-reader returns what it has read.

QByteArray EncodeTables(const QList<TableData>& tables);

// The bytes are untrusted: nothing is returned for bytes that EncodeTables() cannot have made. The
// memory used is a small multiple of their size.
std::optional<QList<TableData>> DecodeTables(const QByteArray& bytes);

}  // namespace quayline
