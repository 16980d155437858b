// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>

namespace quayline {

// The folder of settings, list, databases, picture and languages: the executable's own folder if
// "routers.mdb" is there (portable), else "quayline" in the user's data folder
// ($XDG_DATA_HOME), seeded at the first start from the installed data: each database that is
// missing is copied from `seed_folder`. A failure is a sentence for the user.
std::expected<QString, QString> FindProgramFolder(const QString& executable_folder,
                                                  const QString& seed_folder);

// The folder of the databases that came with the program: "../share/quayline" relative to the
// executable's folder, both in an installation and in a build tree. Empty if there are none.
QString SeedFolder(const QString& executable_folder);

}  // namespace quayline
