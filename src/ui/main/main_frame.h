// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

#include <optional>

#include "async/flow.h"
#include "ui/main/main_window.h"
#include "ui/toolkit/skin_frame.h"
#include "ui/toolkit/stop_question.h"

namespace quayline {

// The main window as the desktop sees it: frame, title, place on the screen. It holds MainWindow,
// and closing it ends the program. A user who closes it during a job is asked first.
class MainFrame final : public SkinFrame {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  MainFrame(AppContext& context, Prompts& prompts, WindowFactory& windows);

  // Gets everything ready, so that showing it is the last step. If the program cannot start, it
  // shows why, and closes after that.
  void Load();

  // For the end of the desktop session, and for signals: nobody may be there to answer.
  void CloseWithoutAsking();

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
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AskToClose();
  std::optional<QSize> StoredSize() const;
  void FitScreen();
  Task<> End();

  AppContext& context_;
  Prompts& prompts_;
  QScrollArea* area_;
  MainWindow* main_;
  StopQuestion stop_question_;
  bool failed_ = false;
  bool may_stop_job_ = false;
  bool has_ended_ = false;
  Flow ending_;
};

}  // namespace quayline
