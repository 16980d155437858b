// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <functional>
#include <memory>

#include "core/app_context.h"
#include "core/own_routers.h"
#include "ui/toolkit/prompts.h"

namespace Ui {
class NewRouterDialog;
}

namespace quayline {

// Makes a router that is not in the list out of one with similar pages: it gets a name, a login and
// limits of its own, and the other one's scripts to start with. `created` gets its key and the
// name of the other one. The window deletes itself when it is closed.
class NewRouterDialog final : public QDialog {
  Q_OBJECT

 public:
  NewRouterDialog(AppContext& context, Prompts& prompts, const QList<RouterName>& routers,
                  QWidget* parent, std::function<void(int router_id, const QString& like)> created);
  ~NewRouterDialog() override;

  void accept() override;

 private:
  void GuessModel();
  void ShowModel();
  template <typename Field, typename Setter, typename Value>
  void Fill(Field* field, Setter set, const Value& value);
  void NoteChange(QWidget* field);
  RouterRecord Record() const;
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  const QList<RouterName> routers_;
  std::function<void(int router_id, const QString& like)> created_;
  std::unique_ptr<Ui::NewRouterDialog> ui_;
  RouterRecord model_;
  bool has_chosen_ = false;  // the model was not guessed
  bool is_filling_ = false;
  QSet<QWidget*> changed_;  // by the user
};

// What the user reads of a router that could not be added.
QString FaultText(const OwnRouterFault& fault, const Translator& translator);

}  // namespace quayline
