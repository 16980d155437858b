// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QStringList>

#include "core/entry_result.h"

namespace quayline {

enum class JobKind {
  kUpdate,    // enters the list
  kCheck,     // looks only
  kTakeBack,  // removes the rules that earlier jobs added
};

// How a job ended.
struct JobOutcome {
  JobKind kind = JobKind::kUpdate;
  int entries = 0;          // rows whose turn has come
  int entries_failed = 0;   // passes that ended in an error block
  bool stopped = false;     // ended before the last row
  bool has_looked = false;  // the page with the router's rules was read at the end
  // Of each row of the list, once the run has ended. Of a removal, a missing rule is as wanted.
  QList<EntryResult> results;

  bool HasDoubts() const;  // an entry could not be seen on the router
  bool HasWrong() const;   // an entry is not on the router as it is wanted
  // How other programs know the end: "done", "stopped" or "error".
  QString EndName() const;
  // Entries that are surely not on the router: it does not show them, or they were never begun.
  QList<PortEntry> ToTryAgain() const;
  // Their places in the results, from 0.
  QList<qsizetype> PlacesToTryAgain() const;
  // Names of the entries that are to be checked on the router.
  QStringList ToCheck() const;
  // Names of the entries that were entered, or begun, and of which the router's page says nothing.
  QStringList Unclear() const;
  // Names of the entries that are on the router, and may have been there before the job: they are
  // not taken back.
  QStringList MaybeOld() const;
};

}  // namespace quayline
