// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QPointer>

#include <memory>

#include "async/flow.h"
#include "core/app_context.h"
#include "net/static_address.h"
#include "ui/toolkit/field_note.h"
#include "ui/toolkit/prompts.h"

class QAbstractButton;
class QLineEdit;

namespace Ui {
class StaticAddressDialog;
}

namespace quayline {

// Gives an adapter of this computer a fixed address, or lets the router give it one again. Stays
// open until a change has ended; deletes itself when it is closed.
class StaticAddressDialog final : public QDialog {
  Q_OBJECT

 public:
  // What is referred to outlives the dialog.
  StaticAddressDialog(AppContext& context, Prompts& prompts, AddressSetup& setup,
                      Neighbours& neighbours, QWidget* parent);
  ~StaticAddressDialog() override;

  void reject() override;

 private:
  void ConnectButtons();
  void ConnectHelp(QAbstractButton* button, QList<Message> lines);
  Task<> ListAdapters();
  void ShowNothingToDo(const QString& why);
  Task<> ShowAdapter();
  void ShowCurrent(const AdapterAddresses& current);
  bool HasAdapter();
  void Randomize();
  void SetServers(const QString& first, const QString& second);
  Task<> Enable();
  Task<> Disable();
  void End(const SetupResult& result);
  void ShowProblem(const AddressProblem& problem);
  void ShowTaken(const QByteArray& hardware_address);
  void MarkField(QLineEdit* field, const QString& text);
  void SetWorking(bool working, const QString& status = {});
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  AddressSetup& setup_;
  StaticAddress changes_;
  std::unique_ptr<Ui::StaticAddressDialog> ui_;
  AdapterAddresses current_;
  QPointer<FieldNote> note_;  // of the field that is wrong
  bool is_changing_ = false;
  Flow flow_;
};

}  // namespace quayline
