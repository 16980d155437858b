// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "core/app_context.h"
#include "platform/foreign_settings.h"
#include "platform/host_names.h"
#include "ui/toolkit/prompts.h"

class QDialog;

namespace quayline {

// Makes the windows of this folder. Each is owned by `parent`, and deletes itself when it is
// closed. The members outlive the windows.
struct EntryWindows {
  AppContext& context;
  Prompts& prompts;
  HostNames& host_names;
  const ForeignSettings& foreign_settings;

  // `changed` is called after each change of the port list, to store it.
  QDialog* AddNew(QWidget* parent, const std::function<void()>& changed) const;
  QDialog* Edit(QWidget* parent, int row, const std::function<void()>& changed) const;
  // `chosen` gets the address of the router.
  QDialog* NetworkList(QWidget* parent, const std::function<void(const QString&)>& chosen) const;
};

}  // namespace quayline
