// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QWidget>

#include <memory>

#include "i18n/translator.h"
#include "transport/download.h"

class QLabel;

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

 protected:
  void changeEvent(QEvent* event) override;

 private:
  // What a label shows, in English.
  struct Shown {
    Message caption;
    QString value;
  };

  void ConnectNumbers(const Download& download);
  void ShowCode(int code);
  void Show(QLabel* label, const Message& caption, const QString& value);
  void ShowAgain(QLabel* label);
  QString StatusText(const QString& status) const;
  QString WithUnits(const QString& measured) const;

  const Translator* translator_ = nullptr;
  bool is_under_way_ = false;
  QHash<QLabel*, Shown> shown_;
  std::unique_ptr<Ui::TransferPanel> ui_;
};

}  // namespace quayline
