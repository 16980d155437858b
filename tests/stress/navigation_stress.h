// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include "async/task.h"
#include "script/page_host.h"
#include "stress/leaving_site.h"

namespace quayline::stress {

struct StressOptions {
  int steps_per_way = 3;
  std::vector<size_t> ways;  // numbers of AllWays(); empty: all
  AnswerDelay delay{std::chrono::milliseconds(0), std::chrono::milliseconds(50)};
};

// What many steps along one way came to. A step loads a page, clicks its button, waits as a script
// does, looks where it is and goes to the next page at once.
struct WayResult {
  const WayOut* way = nullptr;
  int steps = 0;
  int lost = 0;         // saves that never reached the server
  int early = 0;        // waits that were over before the page, or its list, was there
  int failed = 0;       // waits that took an error for their end
  double click_ms = 0;  // median of the time from the click to the end of its wait
  double step_ms = 0;   // median of a whole step
  // The page works on by itself, and a step costs a second more than one on a plain page.
  bool is_slow = false;
};

// Runs the ways one after the other in one browser.
Task<> RunStress(PageHostFactory make_host, StressOptions options, QList<WayResult>* results);

}  // namespace quayline::stress
