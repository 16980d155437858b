// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>

#include <memory>

#include "script/job_runner.h"
#include "ui/job/entry_states.h"
#include "ui/job/job_looks.h"
#include "ui/job/job_report.h"
#include "ui/toolkit/prompts.h"
#include "ui/toolkit/run_questions.h"

namespace Ui {
class JobWindow;
}

namespace quayline {

class FollowUpJobs;
class JobProgress;
class RunDisplay;

// The window of a job: what becomes of each entry, and, as details that the user opens, the
// router's pages as the job works through them, its log, and what the browser reports. The job
// begins half a second after the window opened, and ends with it at the latest. What it saw of the
// entries goes into the port list. A user who closes it during the job is asked; close() does not
// ask. The window deletes itself when it is closed and a save under way has arrived.
class JobWindow final : public QWidget {
  Q_OBJECT

 public:
  // `kind` is kUpdate or kCheck.
  JobWindow(AppContext& context, Prompts& prompts, PageHostFactory make_host,
            JobKind kind = JobKind::kUpdate);
  ~JobWindow() override;

  // The rules that jobs of another window added can be taken back here, if this window's router is
  // theirs. Before the job begins.
  void TakeOverRules(const JobWindow& former) { runner_->TakeOverRules(*former.runner_); }
  // The firewall lets in what firewallWanted() asked for.
  void NoteFirewallOpened() { looks_.ShowFirewall(FirewallView()); }

 Q_SIGNALS:
  // The user is to remove rules by hand.
  void routerPageWanted();
  // The ports are to be tested from the internet.
  void testWanted();
  // These ports of the job are to be let in by the firewall of this computer.
  void firewallWanted(const QList<quayline::FirewallPorts>& ports);

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  void ConnectEntries();
  void ConnectButtons();
  void NoteLogin();
  void ShowDetails(bool open);
  void ShowEnd();
  void ShowOutcome();
  void NotifyOfEnd();
  bool IsInFront() const;
  void SaveReport();
  QString Report() const;
  // Makes the window ready for another job of its runner.
  void OpenAgain();
  void Stop();
  bool IsWorking() const { return start_timer_.isActive() || runner_->IsRunning(); }
  // Closes the window, after asking where that ends the job.
  void CloseAfterAsking();
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  const JobKind kind_;
  std::unique_ptr<Ui::JobWindow> ui_;
  JobReport report_head_;  // what is known at the beginning
  RunQuestions questions_;
  std::unique_ptr<JobRunner> runner_;
  EntryStates entry_states_;
  JobLooks looks_;
  JobProgress* progress_ = nullptr;
  FollowUpJobs* follow_ups_ = nullptr;
  RunDisplay* display_ = nullptr;
  QTimer start_timer_;
  QList<Login> logins_;  // that the job may have used; they are kept out of the report
};

}  // namespace quayline
