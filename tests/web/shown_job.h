// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <functional>
#include <memory>

#include "script/job_runner.h"
#include "script/web/web_engine.h"

namespace quayline::testing {

// As a window shows a page. An element without a width counts as not shown, and boxes are left with
// a word to the page only where the page has the focus.
inline void ShowPage(PageHost* host) {
  QWidget* const view = host->Widget();
  view->resize(640, 480);
  view->show();
  view->activateWindow();
  view->setFocus();
}

// Makes a job in browsers that are shown; it is begun by Run() or Check(). `listen` connects to the
// runner before it does anything.
inline std::unique_ptr<JobRunner> OpenShownJob(
    AppContext& context, PageQuestions& questions,
    const std::function<void(JobRunner&)>& listen = [](JobRunner&) {},
    const WaitLimits& limits = {}) {
  auto runner = std::make_unique<JobRunner>(
      context, WebPageHosts(context.job_options, context.translator, &context.certificates, limits),
      questions);
  QObject::connect(runner.get(), &JobRunner::activeHostChanged, runner.get(), ShowPage);
  listen(*runner);
  runner->Open();
  ShowPage(runner->ActiveHost());
  return runner;
}

}  // namespace quayline::testing
