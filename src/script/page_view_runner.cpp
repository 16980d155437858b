// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/page_view_runner.h"

#include "script/interpreter.h"

namespace quayline {

PageViewRunner::PageViewRunner(AppContext& context, PageHostFactory make_host,
                               PageQuestions& questions, QObject* parent)
    : ScriptRunner(context, std::move(make_host), questions, kRunnerTexts,
                   context.job_flags.view_browser_index, parent) {}

PageViewRunner::~PageViewRunner() { CancelRun(); }

void PageViewRunner::Open() {
  OpenBrowsers([](const BrowserSet& browsers) { return browsers.At(0); });
  connect(&Browsers(), &BrowserSet::navigationChanged, this,
          [this] { Q_EMIT busyChanged(Browsers().Navigation().busy); });
  context_.job_flags.view_error_grace = 1;
  context_.job_flags.view_stop_requested = false;
  end_.reset();
  Q_EMIT errorsCleared();
}

void PageViewRunner::Run() {
  Q_EMIT errorsCleared();
  Q_EMIT busyChanged(true);
  StartRun(RunViewScript());
}

Task<> PageViewRunner::RunViewScript() {
  GiveLogin();
  RunArguments arguments = RouterArguments();
  arguments.commands = context_.session.view_script;
  end_ = co_await RunRouterCommands(Environment(), std::move(arguments));
}

// Counted as a job counts its errors, but no run looks at the outcome.
void PageViewRunner::CountError() {
  JobFlags& flags = context_.job_flags;
  const bool is_first = flags.view_error_grace == 1;
  flags.view_stop_requested = !is_first;
  flags.view_error_grace = 0;
}

}  // namespace quayline
