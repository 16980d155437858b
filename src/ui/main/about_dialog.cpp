// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/about_dialog.h"

#include "ui/main/version.h"
#include "ui/toolkit/theme.h"
#include "ui_about_dialog.h"

namespace quayline {

AboutDialog::AboutDialog(QWidget* parent) : QDialog(parent) {
  Ui::AboutDialog form;
  form.setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  form.logo_label->setPixmap(ProgramLogo().pixmap(QSize(64, 64), devicePixelRatioF()));
  QFont title = form.title_label->font();
  title.setPointSizeF(title.pointSizeF() * 1.5);
  title.setBold(true);
  form.title_label->setFont(title);
  form.version_label->setText(QStringLiteral("v.%1").arg(ProgramVersion()));
  connect(form.ok_button, &QPushButton::clicked, this, &QDialog::accept);
}

}  // namespace quayline
