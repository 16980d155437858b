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

  // Gets everything ready, so that showing it is the last step. If the program cannot start, it
  // shows why, and closes after that.
  void Load();

  MainWindow& Main() { return *main_; }
  // True when the start failed.
  bool HasFailed() const { return failed_; }

 Q_SIGNALS:
  void startFailed();
  // The user has closed the program, which may still have saves to finish.
  void leaving();
  // Everything is closed, and all saves have arrived: the program can end.
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
