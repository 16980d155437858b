// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTemporaryDir>

#include "core/app_context.h"
#include "platform/desktop.h"
#include "platform/fake_adapters.h"

namespace quayline::testing {

class NoDesktop final : public Desktop {
 public:
  bool OpenInBrowser(const QUrl&) override { return false; }
  bool OpenFile(const QString&) override { return false; }
  QString UpdateCommand() const override { return {}; }
  void ShowNotification(const QString&, const QString&) override {}
  bool HasNetworkSettings() const override { return false; }
  bool OpenNetworkSettings() override { return false; }
};

// A program without windows, adapters and desktop, in a folder of its own.
struct BareContext {
  QTemporaryDir folder;
  FakeAdapters adapters;
  NoDesktop desktop;
  AppContext app{folder.path(), adapters, desktop};
};

inline PortEntry WebEntry(const QString& name,
                          const QString& forwarded_to = QStringLiteral("10.0.0.5(Desk)")) {
  return {.app_name = name,
          .forwarded_to = forwarded_to,
          .start_port = QStringLiteral("80"),
          .end_port = QStringLiteral("90"),
          .protocol = QStringLiteral("TCP"),
          .description = {}};
}

}  // namespace quayline::testing
