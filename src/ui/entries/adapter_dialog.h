// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <memory>

#include "platform/adapters.h"

namespace Ui {
class AdapterDialog;
}

namespace quayline {

// Which address of an adapter the user is looking for.
enum class AddressPurpose {
  kRouter,  // the gateway; the window explains why
  kOwn      // this computer's own address
};

// Shows the network adapters and lets the user choose one. Opens with the adapter that is in use.
// Deletes itself when it is closed.
class AdapterDialog final : public QDialog {
  Q_OBJECT

 public:
  AdapterDialog(const Adapters& adapters, AddressPurpose purpose, QWidget* parent);
  ~AdapterDialog() override;

 Q_SIGNALS:
  // OK was pressed: the address of the chosen adapter, "0.0.0.0" if it has none.
  void chosen(const QString& address);

 private:
  void ShowAdapter(int row);
  void Choose();

  const Adapters& adapters_;
  AddressPurpose purpose_;
  std::unique_ptr<Ui::AdapterDialog> ui_;
};

}  // namespace quayline
