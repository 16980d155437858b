// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QTimer>

#include <memory>

#include "script/page_view_runner.h"
#include "ui/toolkit/prompts.h"
#include "ui/toolkit/run_questions.h"

namespace Ui {
class PageViewWindow;
}

namespace quayline {

class RunDisplay;

// The window in which the user sees the router's page of ports and removes some by hand: the view
// script leads there, half a second after the window opened, and the page stays. The window deletes
// itself when it is closed and a save under way has arrived.
class PageViewWindow final : public QDialog {
  Q_OBJECT

 public:
  PageViewWindow(AppContext& context, Prompts& prompts, PageHostFactory make_host, QWidget* parent);
  ~PageViewWindow() override;

  void done(int result) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void Run();
  void Stop();
  void ShowEnd();
  // Closes the window, after asking if that ends the script.
  void CloseAfterAsking();
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  std::unique_ptr<Ui::PageViewWindow> ui_;
  RunQuestions questions_;
  std::unique_ptr<PageViewRunner> runner_;
  RunDisplay* display_ = nullptr;  // a child of this window
  QTimer start_timer_;
};

}  // namespace quayline
