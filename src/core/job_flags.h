// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

namespace quayline {

// The values that a running job and its windows share. One object for the whole run; a signal
// announces every change, so that a wait ends at once. InCombo and UrlSuffix are changed by scripts
// and keep their value from entry to entry.
class JobFlags final : public QObject {
  Q_OBJECT

 public:
  explicit JobFlags(QObject* parent = nullptr) : QObject(parent) {}

  bool JobStopRequested() const { return job_stop_requested_; }
  bool PageErrorPending() const { return page_error_pending_; }
  bool PageLoaded() const { return page_loaded_; }
  bool JobDebugMode() const { return job_debug_mode_; }  // the run pauses after the next line
  bool IsRunning() const { return is_running_; }  // a script runs, or is about to: it owns these

  void SetJobStopRequested(bool value) { Set(job_stop_requested_, value); }
  void SetPageErrorPending(bool value) { Set(page_error_pending_, value); }
  void SetPageLoaded(bool value) { Set(page_loaded_, value); }
  void SetJobDebugMode(bool value) { Set(job_debug_mode_, value); }
  void SetRunning(bool value) { Set(is_running_, value); }

  // Runs whose windows are closed, and whose pages still finish a save.
  int LeavingRuns() const { return leaving_runs_; }
  void AddLeavingRuns(int number) {
    leaving_runs_ += number;
    Q_EMIT changed();
  }

  QString last_page_error;       // status text, " (", address, ")"
  QString last_router_status;    // last line of the status box
  QString url_suffix;            // appended to every address that a script builds
  bool in_combo = false;         // the entry was found in the page's list of rules
  int script_timer_ms = 0;       // interval of the scripts' timer, which is kept between jobs
  int job_error_grace = 1;       // 1: the job forgives its next navigation error
  int active_browser_index = 0;  // the browser that the script drives; popups add to it
  int view_error_grace = 1;      // as job_error_grace, in the page view, which stops at nothing
  bool view_stop_requested = false;
  bool ends_by_signal = false;  // a second signal ends the program; until then saves are waited for
  int view_browser_index = 0;   // the browser that the page view shows
  int bench_browser_index = 0;  // the browser on which the author of a script tries lines

 Q_SIGNALS:
  void changed();

 private:
  void Set(bool& flag, bool value) {
    if (flag != value) {
      flag = value;
      Q_EMIT changed();
    }
  }

  bool job_stop_requested_ = false;
  bool page_error_pending_ = false;
  bool page_loaded_ = true;
  bool job_debug_mode_ = false;
  bool is_running_ = false;
  int leaving_runs_ = 0;
};

}  // namespace quayline
