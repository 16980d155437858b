// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "core/entry_result.h"
#include "core/job_journal.h"
#include "core/page_rows.h"
#include "script/script_runner.h"

namespace quayline {

struct JobOutcome {
  int entries = 0;          // passes that were begun
  int entries_failed = 0;   // passes that ended in an error block
  bool stopped = false;     // ended before the last row
  bool has_looked = false;  // the router's rules were looked up at the end
  bool took_back = false;   // the entries were removed: a missing one is as wanted
  // Of each row of the list, once the run has ended.
  QList<EntryResult> results;

  bool HasDoubts() const;  // an entry could not be seen on the router
  bool HasWrong() const;   // an entry is not on the router as it is wanted
  // How other programs know the end: "done", "stopped" or "error".
  QString EndName() const;
  // Entries that are surely not on the router: it does not show them, or they were never begun.
  QList<PortEntry> ToTryAgain() const;
  // Names of the entries that are to be checked on the router.
  QStringList ToCheck() const;
};

// A job: one pass of the router's update script for each row of the port list, in a browser that it
// owns. It is the logic of the job window and of the command line.
//
// The rows are those that stand in the list when the job begins; what the user changes there later
// belongs to the next job. The login, the options and the address are read when their turn comes.
//
// Open() makes the browser, writes the head of the log and forgets how the job before it ended: its
// stop, its errors, its forgiven error. Run() begins the passes; before the first and after the
// last one the router's rules are read, unless the options say otherwise. Check() only reads them.
// RunAgain() does the same, after a new Open(), for the entries of ToTryAgain().
// Stop() ends the job at whatever it waits for. Destroying the runner ends everything at once.
class JobRunner final : public ScriptRunner {
  Q_OBJECT

 public:
  JobRunner(AppContext& context, PageHostFactory make_host, PageQuestions& questions,
            QObject* parent = nullptr);
  ~JobRunner() override;

  void Open();
  void Run();
  void RunAgain();
  void Check();

  // The rules that jobs of this runner brought and that are still there, the oldest first. Nothing
  // counts that the router may have had before, or that was not seen there afterwards.
  const QList<PortEntry>& Brought() const { return brought_; }
  // Whether the router's row has a script that removes a rule.
  bool HasRemoveScript() const { return !RemoveScript().isEmpty(); }
  // After a new Open(): runs that script for each of Brought(), the newest first, and reads the
  // router's rules before each and at the end. A row that was there before the jobs is not touched.
  void TakeBack();

  // The entries of the job, as they were when it began.
  const QList<PortEntry>& Rows() const { return rows_; }

  const JobOutcome& Outcome() const { return outcome_; }

 Q_SIGNALS:
  // Row `row` (from 1) of `rows` begins.
  void entryStarted(int row, int rows, const QString& app_name);
  // The router's rules are being read.
  void lookStarted();

 protected:
  void CountError() override;
  bool LogsPages() const override { return ScriptRunner::LogsPages() && !is_looking_; }

 private:
  void TakeRows(QList<PortEntry> rows);
  Task<> RunRows();
  Task<> EnterRows();
  Task<> CheckRows();
  Task<> TakeBackRows();
  Task<> TakeBackRow(int row);
  QStringList RemoveScript() const;
  void BeginJournal(bool takes_back);
  void EndJournal();
  Task<> RunRow(int row, QString& computer_name);
  Task<> ReadBack();
  // What the router shows of each row. Nothing where its rules were not read.
  Task<QList<RuleVerdict>> Look();
  QList<EntryResult> ResultsOf(const QList<RuleVerdict>& verdicts) const;
  void NoteResults(const QList<RuleVerdict>& verdicts);
  QStringList DoubtsSince(int faults);
  RunArguments ArgumentsOf(int row, const QString& former_computer_name) const;
  void LogRowHead(int row);

  QList<PortEntry> rows_;
  JobOutcome outcome_;
  QList<RuleVerdict> before_;  // of each row, or empty
  QList<QStringList> doubts_;  // of each row
  QList<PortEntry> brought_;
  QStringList rows_before_;              // what the page showed before the first job
  PageRows page_;                        // as it was read last
  bool is_looking_ = false;              // what fails now costs the job nothing
  std::unique_ptr<JobJournal> journal_;  // of the job that runs; null if none can be written
};

}  // namespace quayline
