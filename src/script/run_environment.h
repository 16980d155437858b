// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "core/job_flags.h"
#include "core/router_session.h"
#include "i18n/translator.h"
#include "script/browser_set.h"
#include "script/job_log.h"
#include "script/page_wait.h"

namespace quayline {

// What a run needs from the window that runs it. All of it outlives the run.
struct RunEnvironment {
  JobFlags& flags;
  const JobOptions& options;
  const Translator& translator;
  JobLog& log;
  BrowserSet& browsers;
  PageWait& pages;
  // The browser that the next line drives.
  std::function<PageHost*()> browser;
  // Enables the window's button that continues after a debug pause.
  std::function<void(bool)> enable_proceed;
  // Reports to the window what the run waits for; an empty text when it continues.
  std::function<void(const QString&)> tell_wait;
  // Shows the window a line that is not part of the log.
  std::function<void(const QString&)> show_status;
  // Reports that line `step` (from 1) of `steps` begins.
  std::function<void(int step, int steps)> show_step = [](int, int) {};
  // Reports that the run works on a page: what it does may change something on the router.
  std::function<void()> note_action = [] {};
  // How many steps have not found what they were for. Counted up by the run.
  int steps_not_found = 0;
  // Error texts that pages showed in reply to the run, in the words of the page. Added by the run.
  QStringList complaints;
  // The run is in a debug pause between two lines: no command works on the pages.
  bool is_paused = false;
};

// How a run ended.
enum class RunEnd {
  kAllLinesDone,
  kEntryExists,  // the router has the entry already
  kPageError,    // an error block was logged
  kStopped,
};

}  // namespace quayline
