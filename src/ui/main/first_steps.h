// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <optional>

#include "core/app_context.h"
#include "ui/main/getting_started_window.h"
#include "ui/main/practice_router.h"
#include "ui/main/router_list_model.h"
#include "ui/main/router_selection.h"
#include "ui/main/window_factory.h"
#include "ui/toolkit/prompts.h"

namespace quayline {

// Opens the guide, at the start and from the menu, and runs the practice router that it offers.
// While that runs, the session is the practice router's and is not stored; the user's own one comes
// back afterwards. Belongs to the main window.
class FirstSteps final : public QObject {
  Q_OBJECT

 public:
  FirstSteps(AppContext& context, RouterListModel& routers, RouterSelection& selection,
             WindowFactory& windows, Prompts& prompts, QWidget* main_window);

  void SetActions(const GuideActions& actions) { actions_ = actions; }
  // Shows the guide after a second, beside the main window at the left edge of the screen, unless
  // the user does not want it. Boxes that are open by then come first. Called once the main window
  // can be seen.
  void ShowAtStart();
  void Show();
  // The session is the user's own again. Does nothing where it is.
  void EndPractice();
  // Ends the timer and the practice router.
  void Finish();

 Q_SIGNALS:
  // The session is another router's.
  void sessionChanged();
  void helpWanted(const QString& page);

 private:
  void ShowInTurn();
  SkinFrame& Frame() const;
  void BeginPractice();
  void UsePracticeRouter();

  AppContext& context_;
  RouterListModel& routers_;
  RouterSelection& selection_;
  WindowFactory& windows_;
  Prompts& prompts_;
  QWidget* main_window_;
  GuideActions actions_;
  QPointer<GettingStartedWindow> window_;
  QTimer start_timer_;
  PracticeRouter practice_;
  std::optional<RouterSession> own_session_;  // while the practice router is used
};

}  // namespace quayline
