// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLockFile>
#include <QObject>

#include <expected>

#include "async/flow.h"
#include "core/app_context.h"
#include "ui/main/list_commands.h"
#include "ui/main/router_list_model.h"

namespace quayline {

// The values of the last run that the window shows when the routers are there.
struct StoredFields {
  QString router;
  QString router_ip;
  QString http_port;
  QString http_type;
  QString username;
  QString password;
};

// What happens between the first window and the filled main window, in its order. The first half is
// done before the window is on screen, the slow half behind it in steps, between which the window
// answers. Belongs to the main window, which shows what the signals bring.
class StartUp final : public QObject {
  Q_OBJECT

 public:
  StartUp(AppContext& context, ListCommands& list, RouterListModel& routers,
          QObject* parent = nullptr);

  // Ahead of the window: the daily check's date, the checks of the menu Advanced, the databases.
  // The program cannot go on without them: the error is the message for the user.
  std::expected<void, QString> Prepare();

  // The slow half. `finished()` follows when all is filled.
  void Begin();
  // Ends the slow half where it stands.
  void Cancel() { flow_.Cancel(); }
  // The next copy of the program is the only one again.
  void LetFolderGo() { copy_lock_.unlock(); }

 Q_SIGNALS:
  void languagesRead(const QStringList& languages, const QString& current);
  void routersProgress(int loaded, int total);
  void routersLoaded(int count);
  // The login is the stored one, which is to win over the defaults of the router that is selected.
  void fieldsRead(const quayline::StoredFields& fields);
  // Another copy of the program works in the same folder.
  void openedTwice();
  void finished();

 private:
  Task<> Load();
  void ReadLanguages();
  Task<> LoadRouters();
  StoredFields ReadFields() const;
  void NoteDailyCheck();
  void TakeFolder();

  AppContext& context_;
  ListCommands& list_;
  RouterListModel& routers_;
  QLockFile copy_lock_;  // held until the window closes
  Flow flow_;
};

}  // namespace quayline
