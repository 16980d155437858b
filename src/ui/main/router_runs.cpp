// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/router_runs.h"

#include <QDialog>

#include "ui/main/main_messages.h"

namespace quayline {

namespace {

bool IsOpen(const QPointer<QWidget>& window) { return window != nullptr && window->isVisible(); }

}  // namespace

RouterRuns::RouterRuns(AppContext& context, Prompts& prompts, WindowFactory& windows,
                       RouterPanel& router_panel, PortListPanel& list_panel, QWidget* window)
    : QObject(window),
      context_(context),
      prompts_(prompts),
      windows_(windows),
      router_panel_(router_panel),
      list_panel_(list_panel),
      window_(window),
      stop_question_(context.job_flags, prompts, *window) {}

void RouterRuns::Finish() {
  delete check_window_.data();
  delete job_window_.data();
}

// What is done with a router is done with the chosen one, whatever is typed in its place.
bool RouterRuns::IsRouterKnown() {
  if (context_.session.is_name_unknown) {
    prompts_.Tell(window_, Text(kNoSuchRouter).arg(context_.session.router_name));
    Focus(UpdateFocus::kRouter);
  }
  return !context_.session.is_name_unknown;
}

bool RouterRuns::CanOpenRouter() {
  if (!IsRouterKnown()) {
    return false;
  }
  if (context_.session.router_ip.startsWith(QLatin1Char('0'))) {
    prompts_.Tell(window_, Text(kSetRouterIp));
    Focus(UpdateFocus::kRouterIp);
    return false;
  }
  if (context_.job_flags.IsRunning()) {
    prompts_.Tell(window_, Text(kJobRuns));
    return false;
  }
  return true;
}

void RouterRuns::ViewPorts() {
  if (!CanOpenRouter()) {
    return;
  }
  context_.job_flags.SetJobStopRequested(false);
  context_.job_flags.SetJobDebugMode(false);
  context_.job_flags.view_error_grace = 1;
  windows_.PageView(window_)->open();
}

void RouterRuns::Check() {
  if (!CanOpenRouter()) {
    return;
  }
  if (context_.port_list.rowCount() == 0) {
    prompts_.Tell(window_, Text(message::kNothingToCheck));
    return;
  }
  if (context_.session.update_script.isEmpty() && context_.session.view_script.isEmpty()) {
    prompts_.Tell(window_, Text(message::kChooseRouterToCheck));
    Focus(UpdateFocus::kRouter);
    return;
  }
  // The window of an update stays: its rules may be taken back, and its report saved.
  if (IsOpen(check_window_)) {
    check_window_->close();
  }
  ShowJob(check_window_, windows_.RouterCheck());
}

void RouterRuns::Update() {
  if (context_.job_flags.IsRunning() && (IsOpen(job_window_) || IsOpen(check_window_))) {
    stop_question_.Ask(Text(message::kStartAgainTitle), Text(message::kStartAgainQuestion),
                       [this] { StartUpdate(); });
    return;
  }
  StartUpdate();
}

void RouterRuns::StartUpdate() {
  QWidget* former = job_window_;
  for (const QPointer<QWidget>& window : {job_window_, check_window_}) {
    if (IsOpen(window)) {
      window->close();
    }
  }
  QList<PortEntry> entries = context_.port_list.Entries();
  for (const int row : ClampPorts(entries, context_.session)) {
    context_.port_list.Replace(row, entries.at(row));
  }
  const UpdateVerdict verdict = CheckUpdate(entries, context_.session, context_.translator);
  if (verdict.accepted) {
    ShowJob(job_window_, windows_.Job(former));
  } else {
    ShowRefusal(verdict);
  }
}

void RouterRuns::ShowRefusal(const UpdateVerdict& verdict) {
  prompts_.Tell(window_, verdict.message);
  if (verdict.row >= 0) {
    list_panel_.SelectRow(verdict.row);
  }
  Focus(verdict.focus);
}

void RouterRuns::Focus(UpdateFocus focus) {
  switch (focus) {
    case UpdateFocus::kRouter:
      router_panel_.FocusRouter();
      break;
    case UpdateFocus::kRouterIp:
      router_panel_.FocusAddress();
      break;
    case UpdateFocus::kPortList:
      list_panel_.FocusList();
      break;
    case UpdateFocus::kNone:
      break;
  }
}

void RouterRuns::ShowJob(QPointer<QWidget>& place, QWidget* window) {
  context_.job_flags.SetJobStopRequested(false);
  context_.job_flags.SetJobDebugMode(false);
  context_.job_flags.job_error_grace = 1;
  place = window;
  window->show();
  window->raise();
  window->activateWindow();
}

}  // namespace quayline
