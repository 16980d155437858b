// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <functional>
#include <memory>

#include "async/flow.h"
#include "i18n/translator.h"

namespace Ui {
class CacheDialog;
}

namespace quayline {

// Empties the cache of the hosted browser. Deletes itself when it is closed.
class CacheDialog final : public QDialog {
  Q_OBJECT

 public:
  // Whether the cache was emptied.
  using Clear = std::function<Task<bool>()>;

  // `translator` outlives it.
  CacheDialog(Clear clear, const Translator& translator, QWidget* parent);
  ~CacheDialog() override;

 private:
  void Begin();
  Task<> Run();
  QString Text(const Message& message) const { return translator_.Text(message); }

  Clear clear_;
  const Translator& translator_;
  std::unique_ptr<Ui::CacheDialog> ui_;
  Flow flow_;
};

}  // namespace quayline
