// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <memory>

#include "i18n/translator.h"
#include "net/second_router.h"

namespace Ui {
class SecondRouterDialog;
}

namespace quayline {

// Looks for a second router between this computer and the internet, and shows what was found.
// Deletes itself when it is closed, which ends the search.
class SecondRouterDialog final : public QDialog {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  SecondRouterDialog(const Adapters& adapters, Echoes& echoes, const Translator& translator,
                     QWidget* parent);
  ~SecondRouterDialog() override;

 private:
  void Check();
  void ShowTrace(const RouterTrace& trace);
  void ShowCount(const RouterTrace& trace, const RouterCount& count);
  void AddLine(const QString& line);
  QString Text(const Message& message) const { return translator_.Text(message); }

  const Translator& translator_;
  SecondRouterSearch search_;
  std::unique_ptr<Ui::SecondRouterDialog> ui_;
};

}  // namespace quayline
