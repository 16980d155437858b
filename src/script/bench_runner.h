// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include "core/port_entry.h"
#include "script/script_runner.h"

namespace quayline {

// Runs lines of a script that is being written, in browsers that stay open between two runs. The
// lines work with one entry, as if it was the first and the last one of a job.
class BenchRunner final : public ScriptRunner {
 public:
  BenchRunner(AppContext& context, PageHostFactory make_host, PageQuestions& questions,
              QObject* parent = nullptr);
  ~BenchRunner() override;

  void Open();
  // Not while another run is under way.
  void RunLines(QStringList lines, const PortEntry& entry);

 protected:
  void CountError() override {}

 private:
  Task<> Run(RunArguments arguments);
};

// The line `index` alone, as it would run in the script: with the lines before it that keep
// something for it, and touch no page.
QStringList LinesForOne(const QStringList& script, qsizetype index);

}  // namespace quayline
