// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "async/task.h"
#include "core/app_context.h"

class QComboBox;

namespace quayline {

class ComputerNameSearch;
class EntryForm;

// The page of the add dialog on which the user types an entry. Names that were added before are
// offered; choosing one brings its ports.
class CustomPage final : public QWidget {
  Q_OBJECT

 public:
  CustomPage(AppContext& context, ComputerNameSearch& names, QWidget* parent);

  void FocusFirst();
  Task<> Add();

 Q_SIGNALS:
  // The list has `count` new rows.
  void entriesAdded(qsizetype count);

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void MarkTypedName(const QString& name);
  void FillNames();
  void Choose(int index);
  void ShowNameTooLong();
  void Remember(const QList<PortEntry>& entries) const;

  AppContext& context_;
  ComputerNameSearch& names_;
  QComboBox* name_box_;
  EntryForm* form_;
  QList<CustomPortRecord> customs_;  // in the order of the names' list
};

}  // namespace quayline
