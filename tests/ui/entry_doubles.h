// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTemporaryDir>

#include "async/wait.h"
#include "platform/host_names.h"
#include "platform/linux/wine_settings.h"
#include "ui/entries/entry_windows.h"
#include "window_doubles.h"

namespace quayline::testing {

// A network in which every computer has the same name, or in which nobody answers.
class FakeHostNames final : public HostNames {
 public:
  QString name;
  bool hangs = false;
  QStringList asked;

  Task<QString> OfAddress(QString address) override {
    asked.append(address);
    if (hangs) {
      co_await Until([] { return false; });
    }
    co_return name;
  }
};

// The entry windows on a program folder, with a home folder of their own for other programs.
struct EntryRig {
  EntryRig(AppContext& app, Prompts& boxes) : windows{app, boxes, host_names, programs} {}

  QTemporaryDir home;
  FakeHostNames host_names;
  WineSettings programs{home.filePath(QStringLiteral("wine")), home.path()};
  EntryWindows windows;
};

}  // namespace quayline::testing
