// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

#include "async/flow.h"
#include "script/page_host.h"
#include "script/web/script_calls.h"

namespace quayline {

class WebProfile;

// Asks a page to report when it is idle (watch/page_idle.js), and takes its reports. A new question
// replaces one that was not answered. `calls` outlives it.
class IdleReports final : public QObject {
  Q_OBJECT

 public:
  IdleReports(WebProfile& profile, ScriptCalls& calls, QObject* parent);

  // `is_led`: an action may have led to the page.
  void Ask(PendingWork work, bool is_led, std::function<void(IdleReport)> report);
  // What the page said of a wait: that it has pending work, or that it is idle.
  void Take(const QString& text, bool is_idle);

 Q_SIGNALS:
  // The page reported on the wait `id`. `is_idle` is false when it has pending work.
  void taken(const QString& id, bool is_idle, quayline::IdleReport report);

 private:
  Task<> Wait(PendingWork work, bool is_led, std::function<void(IdleReport)> report);

  WebProfile& profile_;
  ScriptCalls& calls_;
  int waits_ = 0;
  Flow wait_;  // last: its frame uses what is above
};

}  // namespace quayline
