// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

namespace quayline {

// What the program asks of the user's desktop.
class Desktop {
 public:
  virtual ~Desktop() = default;

  // Opens a page in the user's own browser. False if there is no browser.
  virtual bool OpenInBrowser(const QUrl& page) = 0;
  // Opens a file with the program that the desktop has for it. False if it has no such program.
  virtual bool OpenFile(const QString& file) = 0;
  // How the user updates programs by the system's package manager: a command, or empty where the
  // system has none.
  virtual QString UpdateCommand() const = 0;
  // Shows a short message beside the windows of all programs, where the desktop has a place for
  // that. Never waits for the desktop.
  virtual void ShowNotification(const QString& title, const QString& text) = 0;
  // Whether the desktop has a window of its own for the network connections, and opens it. Opening
  // is false if it could not be started.
  virtual bool HasNetworkSettings() const = 0;
  virtual bool OpenNetworkSettings() = 0;
};

}  // namespace quayline
