// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

#include <optional>

#include "async/flow.h"
#include "ui/main/main_window.h"
#include "ui/toolkit/skin_frame.h"

namespace quayline {

// The main window as the desktop sees it: frame, title, place on the screen. It holds MainWindow,
// and closing it ends the program.
class MainFrame final : public SkinFrame {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  MainFrame(AppContext& context, Prompts& prompts, WindowFactory& windows);

  // Gets everything ready, so that showing it is the last step. If the program cannot start, it
  // shows why, and closes after that.
  void Load();

  MainWindow& Main() { return *main_; }
  // True when the start failed.
  bool HasFailed() const { return failed_; }

 Q_SIGNALS:
  void startFailed();
  // The user is done with the program, though it may still wait for a save.
  void leaving();
  // Everything is closed, and all saves have arrived: the program can end.
  void closed();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  std::optional<QSize> StoredSize() const;
  void FitScreen();
  Task<> End();

  AppContext& context_;
  Prompts& prompts_;
  QScrollArea* area_;
  MainWindow* main_;
  bool failed_ = false;
  Flow ending_;
};

}  // namespace quayline
