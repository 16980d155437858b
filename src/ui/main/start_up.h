// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <expected>

#include "async/flow.h"
#include "core/app_context.h"
#include "ui/main/list_commands.h"
#include "ui/main/router_list_model.h"

namespace quayline {

// The values of the last run, which the window shows after the routers are loaded.
struct StoredFields {
  QString router;
  QString router_ip;
  QString http_port;
  QString http_type;
  QString username;
  QString password;
};

// The steps from the start of the program to the filled main window. The first half is done before
// the window is shown, the slow half after it in steps, between which the window stays responsive.
// Belongs to the main window, which shows what the signals carry.
class StartUp final : public QObject {
  Q_OBJECT

 public:
  StartUp(AppContext& context, ListCommands& list, RouterListModel& routers,
          QObject* parent = nullptr);

  // Before the window: the daily check's date, the checks of the menu Advanced, the databases.
  // Without them the program cannot start: the error is the message for the user.
  std::expected<void, QString> Prepare();

  // The slow half. `finished()` is emitted when everything is filled.
  void Begin();
  // Cancels the slow half.
  void Cancel() { flow_.Cancel(); }

 Q_SIGNALS:
  void languagesRead(const QStringList& languages, const QString& current);
  void routersProgress(int loaded, int total);
  void routersLoaded(int count);
  // The login is the stored one, which replaces the default login of the selected router.
  void fieldsRead(const quayline::StoredFields& fields);
  void finished();

 private:
  Task<> Load();
  void ReadLanguages();
  Task<> LoadRouters();
  StoredFields ReadFields() const;
  void NoteDailyCheck();

  AppContext& context_;
  ListCommands& list_;
  RouterListModel& routers_;
  Flow flow_;
};

}  // namespace quayline
