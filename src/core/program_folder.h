// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>

#include "i18n/sentence.h"

namespace quayline {

// The folder of settings, list, databases, picture and languages: the executable's own folder if
// "routers.mdb" is there (portable), else "quayline" in the user's data folder ($XDG_DATA_HOME),
// which is created. A portable folder is the user's alone; to the other the databases of
// `shipped_folder` are copied, and merged after an update (see shipped_databases.h).
std::expected<QString, Sentence> FindProgramFolder(const QString& executable_folder,
                                                   const QString& shipped_folder);

}  // namespace quayline
