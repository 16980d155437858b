// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <memory>

#include "i18n/translator.h"
#include "transport/download.h"

namespace Ui {
class TransferPanel;
}

namespace quayline {

// Shows a download: its bar, its numbers, and what went wrong. Its buttons pause and cancel it.
class TransferPanel final : public QWidget {
  Q_OBJECT

 public:
  explicit TransferPanel(QWidget* parent = nullptr);
  ~TransferPanel() override;

  // Called once. Both outlive it.
  void Follow(Download& download, const Translator& translator);
  // A new download begins: what the one before left is removed.
  void Begin();
  void SetTotal(qint32 bytes);
  // Nothing is transferred any more.
  void End();
  // The bar moves while something else is done with the file.
  void SetBusy(bool busy);
  // In words, below the error code.
  void ShowReason(const QString& reason);

  // A window with a transfer under way is not closed: one whose bar has begun and is not full, with
  // no error.
  bool MayClose() const;

 private:
  void ConnectNumbers(const Download& download);
  void ShowCode(int code);
  QString Labelled(const Message& caption, const QString& value) const;

  const Translator* translator_ = nullptr;
  bool is_under_way_ = false;
  std::unique_ptr<Ui::TransferPanel> ui_;
};

}  // namespace quayline
