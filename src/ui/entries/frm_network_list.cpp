// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/frm_network_list.h"

#include "ui_frm_network_list.h"

namespace quayline {

FrmNetworkList::FrmNetworkList(const Adapters& adapters, AddressPurpose purpose, QWidget* parent)
    : QDialog(parent),
      adapters_(adapters),
      purpose_(purpose),
      ui_(std::make_unique<Ui::FrmNetworkList>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  if (purpose == AddressPurpose::kOwn) {
    setObjectName(QStringLiteral("FrmNetworkList2"));
    ui_->Label3->hide();
  }
  const QList<Adapter> list = adapters_.List();
  for (const Adapter& adapter : list) {
    ui_->Combo1->addItem(adapter.description, adapter.index);
  }
  connect(ui_->Combo1, &QComboBox::currentIndexChanged, this, &FrmNetworkList::ShowAdapter);
  ui_->Combo1->setCurrentIndex(static_cast<int>(PreselectedAdapter(list)));
  ShowAdapter(ui_->Combo1->currentIndex());
  connect(ui_->Command1, &QPushButton::clicked, this, &FrmNetworkList::Choose);
  connect(ui_->Command2, &QPushButton::clicked, this, &QDialog::reject);
}

FrmNetworkList::~FrmNetworkList() = default;

// Asked anew each time: a cable may have been plugged in since the window opened.
void FrmNetworkList::ShowAdapter(int row) {
  const Adapter shown = adapters_.List().value(row);
  ui_->Text1->setText(shown.gateway);
  ui_->Text2->setText(shown.address);
  ui_->Text3->setText(shown.mask);
}

void FrmNetworkList::Choose() {
  ui_->Command1->setEnabled(false);
  Q_EMIT chosen(purpose_ == AddressPurpose::kRouter ? ui_->Text1->text() : ui_->Text2->text());
  QMetaObject::invokeMethod(this, &QDialog::accept, Qt::QueuedConnection);
}

}  // namespace quayline
