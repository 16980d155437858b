// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <functional>
#include <memory>

#include "ui/toolkit/prompts.h"
#include "update/program_update.h"

namespace Ui {
class ProgramUpdateWindow;
}

namespace quayline {

// Looks for a new version of the program and fetches its installer. Where the system has a package
// manager it only says how that one updates the program. Deletes itself when it is closed.
class ProgramUpdateWindow final : public QDialog {
  Q_OBJECT

 public:
  // What is referred to outlives it. `exit` ends the program, after the installer was started.
  ProgramUpdateWindow(AppContext& context, Prompts& prompts, const QString& local_version,
                      QWidget* parent, std::function<void()> exit);
  ~ProgramUpdateWindow() override;

  // Checks without being seen: it shows itself when the user wants a new version, and ends without
  // a word otherwise.
  void CheckSilently();

 protected:
  void reject() override;
  void showEvent(QShowEvent* event) override;

 private:
  void ConnectUpdate();
  void Check();
  void ReportUpToDate();
  void OfferVersion();
  void StartInstaller(const QString& file);
  // Over the main window while this one is not seen.
  QWidget* BoxParent() { return isVisible() ? this : parentWidget(); }
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  std::function<void()> exit_;
  ProgramUpdate update_;
  bool is_automatic_ = false;
  std::unique_ptr<Ui::ProgramUpdateWindow> ui_;
};

}  // namespace quayline
