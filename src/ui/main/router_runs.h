// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

#include "core/app_context.h"
#include "core/update_command.h"
#include "ui/main/port_list_panel.h"
#include "ui/main/router_panel.h"
#include "ui/main/window_factory.h"
#include "ui/toolkit/prompts.h"
#include "ui/toolkit/stop_question.h"

namespace quayline {

// Begins what the program does on the router: the update, the look at it, and the view of its
// ports. Reports what is missing, and sets the focus to it. Owns the job windows; belongs to the
// main window.
class RouterRuns final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it. Boxes and windows belong to `window`.
  RouterRuns(AppContext& context, Prompts& prompts, WindowFactory& windows,
             RouterPanel& router_panel, PortListPanel& list_panel, QWidget* window);

  // As pressing "Update Router". While a job runs, the user is asked first.
  void Update();
  // Looks what is on the router, and changes nothing there.
  void Check();
  void ViewPorts();
  // Whether a router of the list is chosen, or none is named. If not, the user is asked to choose.
  bool IsRouterKnown();
  // Ends the job windows and what they run.
  void Finish();

 private:
  bool CanOpenRouter();
  // Checks the list and opens the job window. The one before is closed as by its Close button.
  void StartUpdate();
  void ShowRefusal(const UpdateVerdict& verdict);
  void Focus(UpdateFocus focus);
  void ShowJob(QPointer<QWidget>& place, QWidget* window);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  WindowFactory& windows_;
  RouterPanel& router_panel_;
  PortListPanel& list_panel_;
  QWidget* window_;
  StopQuestion stop_question_;
  QPointer<QWidget> job_window_;
  QPointer<QWidget> check_window_;
};

}  // namespace quayline
