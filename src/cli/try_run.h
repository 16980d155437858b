// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <expected>
#include <memory>

#include "cli/arguments.h"
#include "cli/prepare_update.h"
#include "cli/update_run.h"
#include "core/app_context.h"
#include "stub/stub_router.h"

namespace quayline {

// Tries a router's file on a router that is made of its pages. What the pages send is reported
// between the lines of the job's log.
class TryRun final : public QObject {
  Q_OBJECT

 public:
  // Starts the stub router and fills the context for the job.
  static std::expected<std::unique_ptr<TryRun>, CliError> Prepare(const TryArguments& arguments,
                                                                  AppContext& context,
                                                                  PageHostFactory make_host);

  void Start() { run_->Start(); }
  void Stop() { run_->Stop(); }

 Q_SIGNALS:
  void finished(int exit_status);

 private:
  TryRun(std::unique_ptr<StubRouter> router, AppContext& context, PageHostFactory make_host,
         const UpdateArguments& arguments);

  void ReportExchange(const StubExchange& exchange);
  // The exit status with what the router kept. `wanted`: the rules that it should have besides its
  // first ones.
  int Judge(int exit_status, const QList<PortEntry>& wanted);
  int JudgeEntered(int exit_status);
  int JudgeRemoved(int exit_status);

  AppContext& context_;
  std::unique_ptr<StubRouter> router_;
  std::unique_ptr<UpdateRun> run_;
  std::optional<int> entered_;  // the exit status after the entries were entered
};

// The router of a file; an error is for the user.
std::expected<RouterRecord, CliError> ReadRouterFile(const QString& file);

}  // namespace quayline
