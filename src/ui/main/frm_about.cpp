// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/frm_about.h"

#include "ui/main/version.h"
#include "ui/toolkit/theme.h"
#include "ui_frm_about.h"

namespace quayline {

FrmAbout::FrmAbout(QWidget* parent) : QDialog(parent) {
  Ui::FrmAbout form;
  form.setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  form.ImageLogo->setPixmap(ProgramLogo().pixmap(QSize(64, 64), devicePixelRatioF()));
  QFont title = form.Label1->font();
  title.setPointSizeF(title.pointSizeF() * 1.5);
  title.setBold(true);
  form.Label1->setFont(title);
  form.Label2->setText(QStringLiteral("v.%1").arg(ProgramVersion()));
  connect(form.Command1, &QPushButton::clicked, this, &QDialog::accept);
}

}  // namespace quayline
