// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <expected>

#include "async/flow.h"
#include "core/app_context.h"
#include "ui/main/list_commands.h"
#include "ui/main/router_list_model.h"
#include "ui/main/router_selection.h"

namespace quayline {

// What happens between the first window and the filled main window, in its order. The first half is
// done before the window is on screen, the slow half after it in steps, between which the window
// answers. Belongs to the main window, which shows what the signals report.
class StartUp final : public QObject {
  Q_OBJECT

 public:
  StartUp(AppContext& context, ListCommands& list, RouterListModel& routers,
          RouterSelection& selection);

  // Before the window is shown: the options of the menu Advanced, the databases.
  // The program cannot go on without them: the error is the message for the user.
  std::expected<void, QString> Prepare();

  // The slow half. `finished()` is emitted when everything is filled.
  void Begin();
  // Fills the list of routers and the session again, after the databases have become other ones.
  void Reload() { flow_.Start(FillAgain()); }
  // The main window can be seen: what may open a box has waited for this.
  void NoteWindowShown();
  // Ends the slow half.
  void Cancel() { flow_.Cancel(); }

 Q_SIGNALS:
  void languagesRead(const QStringList& languages, const QString& current);
  void routersProgress(int loaded, int total);
  void routersLoaded(int count);
  // The session is that of the last run.
  void sessionRead();
  void finished();
  void windowShown();

 private:
  Task<> Load();
  Task<> FillAgain();
  void ReadLanguages();
  Task<> LoadRouters();
  void RestoreSession();

  AppContext& context_;
  ListCommands& list_;
  RouterListModel& routers_;
  RouterSelection& selection_;
  bool is_window_shown_ = false;
  Flow flow_;
};

}  // namespace quayline
