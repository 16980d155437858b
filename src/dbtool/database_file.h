// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>

#include "dbtool/program_data.h"

namespace quayline::dbtool {

// Writes routers.mdb, ports.mdb and custom.mdb into `folder`, which is made when it is missing.
enum class OwnPrograms { kKeep, kReplace };

// Each file is replaced as a whole or stays, and none is touched before all three are complete. The
// same data gives the same bytes. An error is a sentence. The user's programs cannot be made again:
// unless the caller permits it, a "custom.mdb" that has rows which `data` lacks is an error.
std::expected<void, QString> WriteDatabases(const ProgramData& data, const QString& folder,
                                            OwnPrograms own_programs = OwnPrograms::kKeep);

// A database of any of the three kinds as the text that it can be built from. NULL and missing
// fields read as empty, and rows come in the order of their IDs. The file is only read.
std::expected<QString, QString> DumpDatabase(const QString& file);

}  // namespace quayline::dbtool
