// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>

#include <memory>

#include "core/app_context.h"
#include "core/port_totals.h"
#include "ui/main/list_columns.h"
#include "ui/main/list_commands.h"
#include "ui/main/window_factory.h"

class QMimeData;

namespace Ui {
class PortListPanel;
}

namespace quayline {

// The port list on the main window, its buttons, and the windows that work on its rows.
class PortListPanel final : public QWidget {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  PortListPanel(AppContext& context, Prompts& prompts, WindowFactory& windows, QWidget* parent);
  ~PortListPanel() override;

  ListCommands& Commands() { return commands_; }
  const PortTotals& Totals() const { return totals_; }
  // What the router can hold, of the session.
  void ShowMaxEntries();
  void SelectRow(int row);
  void FocusList();
  // Stores the widths of the columns; for the end of the program.
  void Flush();

  void AddEntries();
  void EditEntry();
  void RemoveSelected();
  // Keys of the list that trigger `action`; in a field these keys edit text.
  void AddListAction(QAction* action, const QList<QKeySequence>& keys);
  // Whether a drag holds one saved list, which TakeDrop() offers to the user.
  bool CanTakeDrop(const QMimeData& data) const;
  void TakeDrop(const QMimeData& data);

 Q_SIGNALS:
  // The rows have changed; the totals follow a moment later.
  void rowsChanged();
  void totalsChanged();
  void menuWanted(const QPoint& place);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void SetHeaders();
  void ConnectList();
  void ConnectButtons();
  void KeepRowSelected();
  QList<int> SelectedRows() const;

  AppContext& context_;
  WindowFactory& windows_;
  std::unique_ptr<Ui::PortListPanel> ui_;
  ListCommands commands_;
  std::unique_ptr<ListColumns> columns_;
  PortTotals totals_;
  QTimer totals_timer_;
};

}  // namespace quayline
