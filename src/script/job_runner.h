// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "core/page_rows.h"
#include "script/job_outcome.h"
#include "script/job_record.h"
#include "script/script_runner.h"

namespace quayline {

// A job: one pass of the router's update script for each row of the port list, in a browser that it
// owns. It is the logic of the job window and of the command line.
//
// The rows are those of the list when the job begins; what the user changes there later belongs to
// the next job. A runner works on one router, the one that is chosen at its first Open(). While
// that router is chosen, its login, options and address are read at each pass; once the user has
// chosen another one, the last ones are kept.
//
// Open() makes the browser, writes the head of the log and forgets how the job before it ended: its
// stop, its errors, its forgiven error. Run() begins the passes; before the first and after the
// last one the router's rules are read, unless the options say otherwise. Check() only reads them.
// Stop() ends the job at whatever it waits for. Destroying the runner ends everything at once.
class JobRunner final : public ScriptRunner {
  Q_OBJECT

 public:
  JobRunner(AppContext& context, PageHostFactory make_host, PageQuestions& questions,
            QObject* parent = nullptr);
  ~JobRunner() override;

  void Open();
  void Run();
  void Check();
  // After a new Open(): as Run(), for the entries of ToTryAgain(). One that the router shows by now
  // is not entered, nor one that was entered before and may be there.
  void RunAgain();
  // After a new Open(): looks which of UnseenRules() the router has, and changes nothing. The
  // outcome of the job before gets what was seen.
  void LookForAdded();
  // After a new Open(): runs the script that removes a rule for each of Added(), the newest first,
  // and reads the router's rules before each and at the end. A row that was there before the jobs
  // is not touched.
  void TakeBack();

  // The rules that jobs of `former` added count as added by this runner, if they are on its router.
  void TakeOverRules(const JobRunner& former);

  // Whether the main window still has the router of this runner, at the same address.
  bool IsRouterChosen() const;
  // The router on which the jobs work.
  const RouterSession& Router() const override;
  // The rules that jobs of this runner added and that are still there, the oldest first. Nothing
  // counts that the router may have had before, or that was not seen there afterwards.
  const QList<PortEntry>& Added() const { return record_.Added().Entries(); }
  // Rules that a job was entering when it was stopped or failed, or that could not be looked up
  // after it: whether it added them is not known until the next look.
  QList<PortEntry> UnseenRules() const { return record_.Added().Unseen(); }
  bool HasRemoveScript() const { return !Router().remove_script.isEmpty(); }

  // The entries of the job, as they were when it began.
  const QList<PortEntry>& Rows() const { return record_.Rows(); }
  const JobOutcome& Outcome() const { return record_.Outcome(); }

 Q_SIGNALS:
  // A job begins: its Rows() are known.
  void begun();
  // Row `row` (from 1) of `rows` begins.
  void entryStarted(int row, int rows, const QString& app_name);
  // The router's rules are being read.
  void lookStarted();

 protected:
  void CountError() override;
  void NoteAction() override { record_.NoteAction(); }
  bool LogsPages() const override { return ScriptRunner::LogsPages() && !is_looking_; }

 private:
  // Keeps what the main window says of the router, as long as it is chosen there.
  void FollowRouter();
  Task<> RunRows();
  Task<> EnterRows();
  Task<> CheckRows();
  Task<> LookAtUnseen();
  Task<> TakeBackRows();
  Task<> TakeBackRow(int row);
  Task<RuleVerdict> LookAtRow(int row);
  Task<PassEnd> RemoveRow(int row, QStringList rows_to_keep);
  void SkipRow(int row);
  void EndWith(const QList<RuleVerdict>& verdicts);
  Task<> RunRow(int row, QString& computer_name);
  // What the router shows of each row. Nothing where its rules were not read.
  Task<QList<RuleVerdict>> Look();
  QStringList DoubtsSince(int faults);
  RunArguments ArgumentsOf(int row, const QString& former_computer_name) const;
  void LogRowHead(int row);

  std::optional<RouterSession> router_;  // as it was last chosen; nothing before the first Open()
  JobRecord record_;
  PageRows page_;            // as it was read last
  bool is_looking_ = false;  // what fails now does not count as an error of the job
};

}  // namespace quayline
