// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "core/settings.h"
#include "i18n/translator.h"
#include "ui/toolkit/skin_frame.h"

class QAction;

namespace Ui {
class GettingStartedWindow;
}

namespace quayline {

// What each step of the guide does: the action of the main window, or null where this version has
// none, which hides the step.
struct GuideActions {
  QAction* update_list = nullptr;
  QAction* choose_router = nullptr;
  QAction* static_ip = nullptr;
  QAction* choose_ports = nullptr;
  QAction* update_router = nullptr;
  QAction* firewall = nullptr;
  QAction* test_ports = nullptr;
};

// The way to a successful update, step by step. A step that was begun has a tick until the window
// is closed. It is shown at the right edge of the screen, beside the main window, which stays
// usable.
class GettingStartedWindow final : public SkinFrame {
  Q_OBJECT

 public:
  GettingStartedWindow(const GuideActions& actions, Settings& settings,
                       const Translator& translator, QWidget* parent);
  ~GettingStartedWindow() override;

  // At the right edge of the screen of `main`, at its height.
  void ShowBeside(const SkinFrame& main);
  void ShowSecondRouter(bool found);
  // Hidden while there is no web site.
  void ShowForums(bool exists);
  // The address of the practice router's pages; empty while it does not run.
  void ShowPractice(const QString& address);

 Q_SIGNALS:
  void practiceWanted();
  void ownRouterWanted();
  // A page of the help, by its name.
  void helpWanted(const QString& page);
  void forumsWanted();

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void PlaceBeside(const SkinFrame& main);
  void ConnectSteps(const GuideActions& actions);
  void ConnectLinks();
  void NameButtons();

  Settings& settings_;
  const Translator& translator_;
  std::unique_ptr<Ui::GettingStartedWindow> ui_;
  QString practice_address_;
};

}  // namespace quayline
