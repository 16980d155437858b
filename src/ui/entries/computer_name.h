// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <optional>

#include "async/task.h"
#include "core/app_context.h"
#include "platform/host_names.h"
#include "ui/toolkit/prompts.h"

namespace quayline {

// Finds the computer name that some routers need in each entry. Belongs to the window that adds or
// changes entries.
class ComputerNameSearch final : public QObject {
  Q_OBJECT

 public:
  ComputerNameSearch(AppContext& context, Prompts& prompts, HostNames& host_names, QWidget* window);

  // The name for an entry that forwards to `address`: empty at once if the selected router needs
  // none, and empty if none is found and the user accepts that. Nothing if the user does not.
  Task<std::optional<QString>> Find(QString address);

 Q_SIGNALS:
  // Between these two the name is looked up, which may take seconds.
  void started(const QString& address);
  void ended();

 private:
  bool IsNeeded() const;

  AppContext& context_;
  Prompts& prompts_;
  HostNames& host_names_;
  QWidget* window_;
};

}  // namespace quayline
