// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <vector>

#include "async/flow.h"
#include "script/fake_page_host.h"
#include "script/interpreter.h"
#include "script/run_parts.h"
#include "test_main.h"

namespace quayline::testing {

using Texts = std::vector<const char*>;
QStringList Lines(const Texts& lines);

inline constexpr char kOk[] = "(Successful)";

struct RecordedPages {
  FakePages pages;
};

// One run of the interpreter in a window that is not there: script text in, page calls and log out.
// The entry is number 1 of 1: "Web", TCP, 80 to 90, for 192.168.1.100 (FrontDesk). `order` has the
// log's steps between what was reported to the window.
class ScriptRig final : public RecordedPages, public RunParts {
 public:
  // `missing`: how long an element is waited for.
  explicit ScriptRig(std::chrono::milliseconds missing = std::chrono::milliseconds(300));

  // Runs the lines to their end. Nothing: they have not ended in time.
  std::optional<RunEnd> Run(const Texts& lines,
                            std::chrono::milliseconds limit = std::chrono::seconds(20));
  // Begins them, to be ended by what the test does next.
  void Start(const Texts& lines);
  // Whether they end in time.
  bool Ends(std::chrono::milliseconds limit = std::chrono::seconds(20));
  std::optional<RunEnd> End() const { return end_; }

  // What the commands logged, without the head, the steps and the separators.
  QStringList Results() const;

  RunArguments entry;

 private:
  Task<> RunToEnd();

  std::optional<RunEnd> end_;
  Flow flow_;
};

// Runs a script that has beside each line what it does: "line  > call  > call  = result". A line
// without a result is successful, "= -" logs nothing, and "ok" means "(Successful)". The calls of a
// line may continue below it.
void CheckScript(ScriptRig& rig, const char* transcript);

struct ScriptCase {
  const char* fault;
  const char* transcript;
  std::function<void(ScriptRig&)> prepare;
};

void CheckScripts(const std::vector<ScriptCase>& cases);

}  // namespace quayline::testing
