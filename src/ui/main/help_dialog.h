// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include "i18n/translator.h"

namespace quayline {

// The program's own help, which needs no network: the pages of docs/help, in the language of the
// program where they exist in it, else in English. Deletes itself when it is closed.
class HelpDialog final : public QDialog {
  Q_OBJECT

 public:
  // `page` is the name of a page without ".md".
  HelpDialog(const Translator& translator, const QString& page, QWidget* parent);
};

}  // namespace quayline
