// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "script/bare_context.h"
#include "script/fake_questions.h"
#include "web/shown_job.h"
#include "web/web_fixture.h"

namespace quayline::testing {

// A job of one entry, "Web", on the pages of a server on loopback.
class PageJob : public ::testing::Test {
 protected:
  PageJob() {
    const QUrl address = server_.Address({});
    context_.session.router_ip = address.host();
    context_.session.http_port = QString::number(address.port());
    context_.job_options.throttle = false;
    context_.port_list.SetEntries({WebEntry(QStringLiteral("Web"))});
    server_.replies["/silent"] = {.bytes = {}, .then = Reply::Then::kSilence};
  }

  void Open(const QStringList& script) {
    context_.session.update_script = script;
    runner_.reset();
    runner_ = OpenShownJob(context_, questions_, [](JobRunner&) {}, limits_);
  }
  void Start(const QStringList& script) {
    Open(script);
    runner_->Run();
  }
  QString Log() { return runner_->Log().Text(); }
  bool LogHolds(const QString& text) {
    return RunUntil([&] { return Log().contains(text); }, std::chrono::seconds(20));
  }
  bool Reaches(int step) { return LogHolds(QStringLiteral("Step 0%1").arg(step)); }
  bool Ends(std::chrono::milliseconds limit) {
    return RunUntil([&] { return !runner_->IsRunning(); }, limit);
  }

  ScriptedServer server_;
  BareContext bare_;
  AppContext& context_ = bare_.app;
  FakeQuestions questions_;
  std::unique_ptr<JobRunner> runner_;
  WaitLimits limits_;  // of the pages; shorter in a test that waits for one of them
};

}  // namespace quayline::testing
