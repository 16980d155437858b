// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "core/app_context.h"
#include "net/router_detection.h"
#include "ui/main/router_list_model.h"
#include "ui/toolkit/prompts.h"

namespace quayline {

// Finds out which router it is, silently or for the user, who is shown the result and may have to
// choose.
class RouterDetector final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it. Boxes belong to `window`.
  RouterDetector(const AppContext& context, const RouterListModel& routers, Prompts& prompts,
                 QWidget* window);

  void DetectForUser();
  // Without a box: for the start. Only a router that names itself is chosen.
  void DetectSilently() { Start(); }
  void Cancel() { detection_.Cancel(); }

 Q_SIGNALS:
  // This row of the routers is to be selected. Row 0 is the placeholder.
  void found(int row);
  // The user has read about it, and looks at the list of routers next.
  void shown();

 private:
  void Start();
  void OnNamed(int row);
  void OnEnded(const QList<int>& nearest, bool names_nothing);
  void OfferNearest(const QList<int>& nearest);
  void ShowFound(int row);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  const AppContext& context_;
  const RouterListModel& routers_;
  Prompts& prompts_;
  QWidget* window_;
  RouterDetection detection_;
  QString name_;                    // in the router's field, as this found or left it
  bool is_wanted_by_user_ = false;  // until a reply is answered with a message
};

}  // namespace quayline
