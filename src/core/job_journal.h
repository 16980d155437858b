// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

#include "core/entry_result.h"
#include "core/page_rows.h"
#include "core/port_entry.h"
#include "i18n/translator.h"

namespace quayline {

// What a job is about to do.
struct JobPlan {
  QString router;   // its name in the database
  QString address;  // where it is
  QList<PortEntry> entries;
  bool takes_back = false;  // the entries are removed instead
  QString password;         // never written: where a text contains it, stars are
};

// How the pass of an entry ended.
enum class PassEnd { kDone, kExisted, kFailed, kStopped };

// The record of one job, written while it runs: one JSON object a line, each in one write, so that
// after a kill at any moment all lines but the last can be read.
//
//   {"journal": 1, "begun": "2026-01-31T12:00:00Z", "router": "...", "address": "...",
//    "job": "update" | "take-back",
//    "entries": [{"entry": "Web", "protocol": "TCP", "start": "80", "end": "80", "to": "..."}]}
//   {"before": [{"entry": "Web", "state": "missing", "seen": ""}], "rows": ["row of the page"]}
//   {"pass": 1, "entry": "Web"}          the entry with number 1 is being entered
//   {"log": "Step 01. nav(\"a.htm\")"}   a line of the job's log
//   {"passed": 1, "how": "done" | "existed" | "failed" | "stopped", "doubts": []}
//   {"after": [...], "rows": [...]}      as "before"
//   {"end": "done" | "stopped" | "error"}
//   {"reported": true}                   the user knows that the job was cut off
//
// The file is locked as long as the job runs. What cannot be written is dropped: the job goes on.
class JobJournal final {
 public:
  // Takes the descriptor of an empty file.
  JobJournal(int file, const JobPlan& plan);
  // A job that has not ended was stopped.
  ~JobJournal();
  JobJournal(const JobJournal&) = delete;
  JobJournal& operator=(const JobJournal&) = delete;

  void NoteBefore(const QList<EntryResult>& results, const PageRows& page);
  void NoteAfter(const QList<EntryResult>& results, const PageRows& page);
  void NotePass(int number, const QString& entry);
  void NoteLog(const QString& text);
  void NotePassEnd(int number, PassEnd end, const QStringList& doubts);
  void NoteEnd(const QString& end);

 private:
  void NoteLook(const char* when, const QList<EntryResult>& results, const PageRows& page);
  void Write(const QJsonObject& line);
  QString Masked(QString text) const;
  QString Row(const QString& text) const;

  const int file_;
  const QString password_;
  qint64 written_ = 0;
  bool is_torn_ = false;  // the last line was written in part
  bool has_ended_ = false;
};

// A job whose program ended before it did, and what is certain of its entries.
struct CutOffJob {
  QDateTime begun;
  QString router;
  bool takes_back = false;
  QStringList on_router;  // seen there, before or after
  QStringList entered;    // their pass has ended, and the router was not read after it
  QStringList failed;     // their pass has ended with an error
  QStringList uncertain;  // being entered when the job was cut off
  QStringList waiting;    // never begun
};

// The journals of this user's jobs. A folder that cannot be written costs nothing but the journal.
class JobJournals final {
 public:
  static constexpr qsizetype kMostKept = 100;

  // Keeps none.
  JobJournals() = default;
  explicit JobJournals(QString folder) : folder_(std::move(folder)) {}

  // "quayline/jobs" below $XDG_STATE_HOME or, if that is not set, ~/.local/state.
  static QString SystemFolder();

  // Removes the oldest ones above kMostKept. Null when no file can be made.
  std::unique_ptr<JobJournal> Begin(const JobPlan& plan) const;
  // The jobs that were cut off, the oldest first, each once. A job that still runs, in this program
  // or another one, is not cut off.
  QList<CutOffJob> TakeCutOff() const;

 private:
  QStringList Files() const;

  QString folder_;
};

// What the lines of a journal say; nothing for a job that has ended, or that was reported.
std::optional<CutOffJob> ReadCutOffJob(const QByteArray& journal);

// A text for the user: one sentence a line. `advice` is how to find out more.
QString CutOffNotice(const CutOffJob& job, const QString& advice, const Translator& texts);

}  // namespace quayline
