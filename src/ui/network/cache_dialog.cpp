// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/cache_dialog.h"

#include "ui/network/cache_texts.h"
#include "ui_cache_dialog.h"

namespace quayline {

CacheDialog::CacheDialog(Clear clear, const Translator& translator, QWidget* parent)
    : QDialog(parent),
      clear_(std::move(clear)),
      translator_(translator),
      ui_(std::make_unique<Ui::CacheDialog>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  connect(ui_->clear_button, &QPushButton::clicked, this, &CacheDialog::Begin);
  connect(ui_->close_button, &QPushButton::clicked, this, &QDialog::reject);
}

CacheDialog::~CacheDialog() { flow_.Cancel(); }

void CacheDialog::Begin() {
  ui_->clear_button->setEnabled(false);
  ui_->busy_bar->SetMoving(true);
  ui_->state_label->setText(Text(message::kClearingPageCache));
  flow_.Start(Run());
}

Task<> CacheDialog::Run() {
  const bool cleared = co_await clear_();
  ui_->state_label->setText(Text(cleared ? message::kPageCacheCleared : message::kPageCacheFailed));
  ui_->busy_bar->SetMoving(false);
  ui_->clear_button->setEnabled(true);
}

}  // namespace quayline
