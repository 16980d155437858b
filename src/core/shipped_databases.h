// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <expected>
#include <memory>
#include <optional>
#include <vector>

#include "core/records.h"
#include "core/table_file.h"
#include "i18n/sentence.h"

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

// What a new set of a database does to its rows, which are the same when their names are.
struct RowChanges {
  QString table;
  qsizetype came = 0;
  qsizetype changed = 0;
  qsizetype stayed = 0;
  qsizetype gone = 0;
};

// The sentence for the user where the new set cannot be written to `folder`.
QList<Sentence> CannotWrite(const QString& folder);

using HeldFiles = std::vector<std::unique_ptr<TableFile>>;

// Checks the databases in the folder `package`, which are untrusted, and prepares in the empty
// folder `set` what PutInPlace() then moves into `folder`: the user's databases merged with them as
// with shipped ones. Nothing in `folder` is changed. From then on they count as what was shipped;
// `shipped_folder`, which is older, is only merged when an installation has changed it.
//
// Other programs can write to the databases in `folder` again when the files in `held` are gone,
// which is after PutInPlace(): what they write before would be lost. Takes seconds for large files.
std::expected<QList<RowChanges>, QList<Sentence>> PrepareSet(const QString& package,
                                                             const QString& folder,
                                                             const QString& shipped_folder,
                                                             const QString& set, HeldFiles& held);

// The router of this name as it was shipped when `folder` was last merged.
std::optional<RouterRecord> FindShippedRouter(const QString& folder, const QString& name);

}  // namespace quayline
