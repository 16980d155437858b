// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/adapter_dialog.h"

#include "ui_adapter_dialog.h"

namespace quayline {

AdapterDialog::AdapterDialog(const Adapters& adapters, AddressPurpose purpose, QWidget* parent)
    : QDialog(parent),
      adapters_(adapters),
      purpose_(purpose),
      ui_(std::make_unique<Ui::AdapterDialog>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  if (purpose == AddressPurpose::kOwn) {
    ui_->gateway_hint_label->hide();
  }
  const QList<Adapter> list = adapters_.List();
  for (const Adapter& adapter : list) {
    ui_->adapter_box->addItem(adapter.description, adapter.index);
  }
  connect(ui_->adapter_box, &QComboBox::currentIndexChanged, this, &AdapterDialog::ShowAdapter);
  ui_->adapter_box->setCurrentIndex(static_cast<int>(PreselectedAdapter(list)));
  ShowAdapter(ui_->adapter_box->currentIndex());
  connect(ui_->ok_button, &QPushButton::clicked, this, &AdapterDialog::Choose);
  connect(ui_->cancel_button, &QPushButton::clicked, this, &QDialog::reject);
}

AdapterDialog::~AdapterDialog() = default;

// Asked again each time: a cable may have been plugged in since the window opened.
void AdapterDialog::ShowAdapter(int row) {
  const Adapter shown = adapters_.List().value(row);
  ui_->gateway_edit->setText(shown.gateway);
  ui_->ip_edit->setText(shown.address);
  ui_->subnet_edit->setText(shown.mask);
}

void AdapterDialog::Choose() {
  ui_->ok_button->setEnabled(false);
  Q_EMIT chosen(purpose_ == AddressPurpose::kRouter ? ui_->gateway_edit->text()
                                                    : ui_->ip_edit->text());
  QMetaObject::invokeMethod(this, &QDialog::accept, Qt::QueuedConnection);
}

}  // namespace quayline
