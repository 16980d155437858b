// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include "core/job_flags.h"
#include "core/router_session.h"
#include "i18n/translator.h"
#include "script/browser_set.h"
#include "script/fake_questions.h"
#include "script/job_log.h"
#include "script/page_wait.h"
#include "script/run_environment.h"

namespace quayline::testing {

// What commands run in when there is no window: browsers, flags, log, and what a window would show.
struct RunParts {
  explicit RunParts(const PageHostFactory& make_host, WaitLimits limits = {})
      : browsers(make_host, questions, flags, flags.active_browser_index),
        wait(
            browsers, flags, [this] { return browsers.Active(); },
            [this](const QString& what) { waits.append(what); }, limits),
        environment{
            .flags = flags,
            .options = options,
            .translator = translator,
            .log = log,
            .browsers = browsers,
            .pages = wait,
            .browser = [this] { return browsers.Active(); },
            .enable_proceed =
                [this](bool on) { order.append(QLatin1String(on ? "button on" : "button off")); },
            .tell_wait = [this](const QString& what) { waits.append(what); },
            .show_status = [this](const QString& text) { status.append(text); }} {}
  RunParts(const RunParts&) = delete;
  RunParts& operator=(const RunParts&) = delete;

  JobFlags flags;
  JobOptions options{.silent_mode = true, .throttle = false, .debug_mode = false};
  JobLog log;
  FakeQuestions questions;
  BrowserSet browsers;
  PageWait wait;
  QStringList order;   // what was reported to the window; see ScriptRig
  QStringList waits;   // the long waits that were reported
  QStringList status;  // what the window was shown beside the log
  const Translator translator{QString()};
  RunEnvironment environment;
};

}  // namespace quayline::testing
