// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <optional>

#include "async/flow.h"
#include "ui/main/main_window.h"

namespace quayline {

// The main window as the desktop sees it: frame, title, place on the screen. It holds MainWindow,
// and closing it ends the program.
class MainFrame final : public QWidget {
  Q_OBJECT

 public:
  MainFrame(AppContext& context, Prompts& prompts, WindowFactory windows);

  // Gets everything ready, so that showing it is the last step. When the program cannot go on, it
  // says why, and closes when that has been read.
  void Load();

  MainWindow& Main() { return *main_; }
  // True when the start failed.
  bool HasFailed() const { return failed_; }

 Q_SIGNALS:
  void startFailed();
  // The user is done with the program, whatever still has to be brought to its end behind it.
  void leaving();
  // Everything is closed, and what the router was sent has arrived: the program's end.
  void closed();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  std::optional<QSize> StoredSize() const;
  Task<> End();

  AppContext& context_;
  Prompts& prompts_;
  MainWindow* main_;
  bool failed_ = false;
  Flow ending_;
};

}  // namespace quayline
