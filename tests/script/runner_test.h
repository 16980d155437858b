// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <type_traits>

#include "script/bare_context.h"
#include "script/job_runner.h"
#include "script/script_rig.h"

namespace quayline::testing {

using Qt::StringLiterals::operator""_s;

// A runner on pages that answer as the test says, in a program without windows.
template <class Runner>
class RunnerTest : public ::testing::Test {
 protected:
  RunnerTest() {
    context_.session.router_name = u"Harbour 54"_s;
    context_.session.router_ip = u"192.168.1.1"_s;
    context_.session.username = u"admin"_s;
    context_.session.password = u"se:cret#1"_s;
    context_.session.update_script = Lines({"nav(\"not the view's\")"});
    context_.session.view_script = Lines({"nav(\"not the job's\")"});
    context_.job_options.throttle = false;
    SetRows({WebEntry(u"Web"_s)});
    NextRunner();
  }

  // As the next window does.
  void NextRunner() {
    runner_.reset();
    runner_ = std::make_unique<Runner>(context_, pages_.Factory(), questions_);
    pages_.calls.clear();
  }

  void SetRows(const QList<PortEntry>& rows) { context_.port_list.SetEntries(rows); }

  void Start(const Texts& script) {
    constexpr bool kIsJob = std::is_same_v<Runner, JobRunner>;
    (kIsJob ? context_.session.update_script : context_.session.view_script) = Lines(script);
    runner_->Open();
    runner_->Run();
  }
  bool Ends() {
    return RunUntil([this] { return !runner_->IsRunning(); });
  }
  QString Run(const Texts& script) {
    Start(script);
    EXPECT_TRUE(Ends());
    return runner_->Log().Text();
  }
  QString LastCall() const { return pages_.calls.value(pages_.calls.size() - 1); }
  qsizetype Count(const char* text) const {
    return runner_->Log().Text().count(QLatin1String(text));
  }

  BareContext bare_;
  AppContext& context_ = bare_.app;
  FakePages pages_;
  FakeQuestions questions_;
  std::unique_ptr<Runner> runner_;
};

}  // namespace quayline::testing
