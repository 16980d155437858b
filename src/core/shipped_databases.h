// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

#include "core/records.h"

namespace quayline {

// The databases that come with the program. An installation writes them to a folder of their own,
// and nothing else does; the user's folder has copies, in which he edits scripts and adds rows.
// "routers.mdb" and "ports.mdb" are merged row by row whenever the shipped ones have changed (see
// MergeRows()). "custom.mdb" is the user's alone: it is copied once.

// The folder of the shipped databases: "../share/quayline-data" relative to the executable's
// folder, both in an installation and in a build tree. Empty if there are none.
QString ShippedFolder(const QString& executable_folder);

// Copies to `folder` what is missing there, and merges what has changed. A file that cannot be
// copied or merged now (the disk is full, or the file is damaged, read-only or in use) stays as it
// is until a later start.
void FollowShippedDatabases(const QString& shipped_folder, const QString& folder);

// Merges a database file that came from elsewhere, for example from the maker's server, into the
// user's of the same kind ("routers.mdb" or "ports.mdb"). False when nothing was changed.
bool MergeDatabase(const QString& shipped_file, const QString& folder, const char* file_name);

// The router of this name as it was shipped when `folder` was last merged.
std::optional<RouterRecord> FindShippedRouter(const QString& folder, const QString& name);

}  // namespace quayline
