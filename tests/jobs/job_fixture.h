// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <map>
#include <memory>

#include "demo/demo_router.h"
#include "script/bare_context.h"
#include "script/fake_questions.h"
#include "script/job_runner.h"
#include "test_main.h"

namespace quayline::testing {

// Jobs as the programs run them: with the databases that data/ makes, in browsers that are shown.
class JobTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite();
  static void TearDownTestSuite();

  JobTest();

  // The names of the routers in the data, by the demo router's models that they are written for.
  static std::map<QString, QString> RoutersByModel();

  // Two computers, all protocols, and a name that needs care in HTML, scripts and addresses.
  static QList<PortEntry> Entries();
  // What stands in a router that holds exactly these entries; and what does stand there.
  static QStringList Expected(const QList<PortEntry>& entries);
  QStringList Standing() const;

  // Starts a demo router that takes its time, and chooses its model's router for the jobs.
  void StartRouter(const QString& model, demo::DemoOptions options = {});
  void Choose(const QString& model, quint16 port);

  void Begin(const QList<PortEntry>& entries);
  // Whether the job came to its end by itself in time.
  bool Ends(std::chrono::milliseconds limit = std::chrono::seconds(180));
  // Both; a job that does not end fails the test with its log.
  const JobOutcome& Run(const QList<PortEntry>& entries);
  QString Log() { return runner_->Log().Text(); }

  demo::DemoRouter router_;
  FakeAdapters adapters_;
  NoDesktop desktop_;
  AppContext context_;
  FakeQuestions questions_;  // trusts each certificate that is not a changed one
  std::unique_ptr<JobRunner> runner_;
  QStringList told_;     // the lines of the status box
  QStringList notices_;  // messages for the user

 private:
  static std::unique_ptr<QTemporaryDir> folder_;
};

}  // namespace quayline::testing
