// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <functional>
#include <memory>

#include "ui/toolkit/prompts.h"
#include "update/database_update.h"

namespace Ui {
class DatabaseUpdateDialog;
}

namespace quayline {

// Fetches new databases and installs them, as soon as it is shown. Deletes itself when it is
// closed.
class DatabaseUpdateDialog final : public QDialog {
  Q_OBJECT

 public:
  // What is referred to outlives it. `updated` is called when the databases are other ones.
  DatabaseUpdateDialog(AppContext& context, Prompts& prompts, QWidget* parent,
                       std::function<void()> updated);
  ~DatabaseUpdateDialog() override;

 protected:
  void reject() override;
  void showEvent(QShowEvent* event) override;

 private:
  void Start();
  void SetInstalling(bool installing);
  void ReportInstalled(const QList<RowChanges>& changes);
  void ReportFailed(const QString& why);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  std::function<void()> updated_;
  bool is_started_ = false;
  bool is_installing_ = false;
  std::unique_ptr<Ui::DatabaseUpdateDialog> ui_;
  DatabaseUpdate update_;
};

}  // namespace quayline
