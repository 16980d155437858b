// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

#include "async/flow.h"
#include "core/app_context.h"
#include "core/fuzzy_name.h"
#include "ui/toolkit/prompts.h"
#include "ui/tools/router_names_model.h"

namespace Ui {
class RouterListDialog;
}

namespace quayline {

// The names of all routers with a search among them. Choosing one passes its key to the main window
// and closes this one, which deletes itself.
class RouterListDialog final : public QDialog {
  Q_OBJECT

 public:
  RouterListDialog(AppContext& context, Prompts& prompts, QWidget* parent,
                   std::function<void(int router_id)> chosen);
  ~RouterListDialog() override;

 private:
  Task<> LoadRouters();
  void ShowLoaded();
  void ShowTested();
  void SearchWhileTyping();
  void FindNext();
  bool Search();
  void ReportNotFound();
  void Choose();
  int SelectedId() const;  // 0: none
  void OpenNewRouter();
  // Also ends this window: the router is chosen.
  void TakeOwnRouter(int id, const QString& like);
  void Import(const QString& file);
  void AskToExport();
  // Signed by `author`, if there is one.
  void Export(const RouterRecord& record, const QString& file,
              const std::optional<QString>& author);
  QString KeyFile() const;
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  std::function<void(int router_id)> chosen_;
  std::unique_ptr<Ui::RouterListDialog> ui_;
  RouterNamesModel* list_;
  FuzzyNames names_;
  QTimer not_found_timer_;
  Flow flow_;
};

}  // namespace quayline
