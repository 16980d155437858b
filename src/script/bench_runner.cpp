// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/bench_runner.h"

#include "script/command_table.h"
#include "script/entry_arguments.h"
#include "script/interpreter.h"
#include "script/script_line.h"

namespace quayline {

BenchRunner::BenchRunner(AppContext& context, PageHostFactory make_host, PageQuestions& questions,
                         QObject* parent)
    : ScriptRunner(context, std::move(make_host), questions, kRunnerTexts,
                   context.job_flags.bench_browser_index, parent) {}

BenchRunner::~BenchRunner() { CancelRun(); }

void BenchRunner::Open() {
  OpenBrowsers([](const BrowserSet& browsers) { return browsers.Active(); });
  context_.job_flags.in_combo = false;
  LetFlagsGo();  // until lines are run
}

void BenchRunner::RunLines(QStringList lines, const PortEntry& entry) {
  JobFlags& flags = context_.job_flags;
  flags.SetJobStopRequested(false);
  flags.SetPageErrorPending(false);
  RunArguments arguments = RouterArguments();
  arguments.commands = std::move(lines);
  GiveEntry(arguments, entry);
  Q_EMIT busyChanged(true);
  StartRun(Run(std::move(arguments)));
}

Task<> BenchRunner::Run(RunArguments arguments) {
  GiveLogin();
  co_await RunRouterCommands(Environment(), std::move(arguments));
}

QStringList LinesForOne(const QStringList& script, qsizetype index) {
  QStringList lines;
  for (const QString& line : script.first(index)) {
    const CommandRow* row = FindCommand(ParseScriptLine(line).name);
    if (row != nullptr && row->use == PageUse::kNone) {
      lines.append(line);
    }
  }
  return lines << script.at(index);
}

}  // namespace quayline
