// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/help_dialog.h"

#include <QFile>

#include "ui_help_dialog.h"

// A library's resources are linked in by their name alone; the macro wants the global namespace.
static void LinkHelp() { Q_INIT_RESOURCE(main); }

namespace quayline {

HelpDialog::HelpDialog(QWidget* parent) : QDialog(parent) {
  setAttribute(Qt::WA_DeleteOnClose);
  LinkHelp();
  Ui::HelpDialog form;
  form.setupUi(this);
  QFile file(QStringLiteral(":/quayline/help.md"));
  if (file.open(QIODevice::ReadOnly)) {
    form.help_view->setMarkdown(QString::fromUtf8(file.readAll()));
  }
}

}  // namespace quayline
