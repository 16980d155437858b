// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/page_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace quayline {

PageBoxDialog::PageBoxDialog(const PageBox& question, QWidget* parent) : QDialog(parent) {
  setWindowTitle(question.title);
  setWindowModality(Qt::WindowModal);
  auto* layout = new QVBoxLayout(this);
  auto* text = new QLabel(question.text, this);
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse);
  layout->addWidget(text);
  if (question.typed) {
    typed_ = new QLineEdit(*question.typed, this);
    typed_->setObjectName(QStringLiteral("typed"));
    typed_->setAccessibleName(question.text);
    typed_->selectAll();
    layout->addWidget(typed_);
  }
  if (question.no_more) {
    no_more_ = new QCheckBox(*question.no_more, this);
    no_more_->setObjectName(QStringLiteral("no_more"));
    layout->addWidget(no_more_);
  }
  auto* buttons = new QDialogButtonBox(
      question.can_refuse ? QDialogButtonBox::Ok | QDialogButtonBox::Cancel
                          : QDialogButtonBox::StandardButtons(QDialogButtonBox::Ok),
      this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
  (typed_ != nullptr ? static_cast<QWidget*>(typed_) : buttons->button(QDialogButtonBox::Ok))
      ->setFocus();
}

PageBoxAnswer PageBoxDialog::Answer(bool accepted) const {
  return {.accepted = accepted,
          .typed = typed_ == nullptr ? QString() : typed_->text(),
          .wants_no_more = no_more_ != nullptr && no_more_->isChecked()};
}

}  // namespace quayline
