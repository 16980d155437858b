// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop.h"

namespace quayline {

// Asks the running desktop session. Needs a QGuiApplication.
class LinuxDesktop final : public Desktop {
 public:
  bool OpenInBrowser(const QUrl& page) override;
  bool OpenFile(const QString& file) override;
  QString UpdateCommand() const override;
  void ShowNotification(const QString& title, const QString& text) override;
  bool HasNetworkSettings() const override;
  bool OpenNetworkSettings() override;
};

}  // namespace quayline
