// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The port list of the main window, and the windows that change it.

#include <QDragEnterEvent>
#include <QMimeData>
#include <QShortcut>

#include <algorithm>

#include "ui/main/main_messages.h"
#include "ui/main/main_window.h"
#include "ui_main_window.h"

namespace quayline {

namespace {

// The one saved list that is dragged; empty for anything else.
QString DraggedList(const QMimeData& data) {
  const QList<QUrl> urls = data.urls();
  const QString file = urls.size() == 1 ? urls.first().toLocalFile() : QString();
  return file.endsWith(QLatin1String(".qyl"), Qt::CaseInsensitive) ? file : QString();
}

}  // namespace

void MainWindow::ConnectList() {
  context_.port_list.SetHeaders({Text(message::kHeaderAppName), Text(message::kHeaderForwardedTo),
                                 Text(message::kHeaderStartPort), Text(message::kHeaderEndPort),
                                 QStringLiteral("TCP/UDP"), Text(message::kHeaderDescription)});
  ui_->port_list_view->setModel(&context_.port_list);
  ui_->port_list_view->SetEmptyHint(Text(message::kEmptyList), Text(message::kEmptyListHint));
  columns_ = std::make_unique<ListColumns>(*ui_->port_list_view, context_.settings);
  ui_->port_list_view->SizeColumns();
  connect(ui_->port_list_view, &QWidget::customContextMenuRequested, this,
          &MainWindow::ShowListMenu);
  connect(ui_->save_button, &QPushButton::clicked, &list_, &ListCommands::SaveAs);
  connect(ui_->save_action, &QAction::triggered, &list_, &ListCommands::SaveAs);
  connect(ui_->open_button, &QPushButton::clicked, &list_, &ListCommands::Open);
  connect(ui_->open_action, &QAction::triggered, &list_, &ListCommands::Open);
  connect(&list_, &ListCommands::listWritten, this, [this] {
    ui_->port_list_view->SizeColumns();
    KeepRowSelected();
    ui_->undo_action->setEnabled(list_.CanUndo());
    ui_->redo_action->setEnabled(list_.CanRedo());
    totals_timer_.start();
  });
  ConnectRemoval();
  ConnectEntryWindows();
  SetListKeys();
  KeepRowSelected();
  setAcceptDrops(true);

  auto* update_key = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return), this);
  connect(update_key, &QShortcut::activated, this, &MainWindow::UpdateRouter);
  connect(ui_->update_button, &QPushButton::clicked, this, &MainWindow::UpdateRouter);
  connect(ui_->exit_action, &QAction::triggered, this, &MainWindow::exitRequested);
}

void MainWindow::ConnectRemoval() {
  const auto remove = [this] { list_.Remove(SelectedRows()); };
  connect(ui_->remove_button, &QPushButton::clicked, this, remove);
  connect(ui_->remove_entry_action, &QAction::triggered, this, remove);
  connect(ui_->remove_ports_action, &QAction::triggered, this, remove);
  connect(ui_->remove_all_action, &QAction::triggered, &list_, &ListCommands::RemoveAll);
  connect(ui_->undo_action, &QAction::triggered, &list_, &ListCommands::Undo);
  connect(ui_->redo_action, &QAction::triggered, &list_, &ListCommands::Redo);
}

void MainWindow::ConnectEntryWindows() {
  connect(ui_->add_button, &QPushButton::clicked, this, &MainWindow::AddEntries);
  connect(ui_->add_ports_action, &QAction::triggered, this, &MainWindow::AddEntries);
  connect(ui_->add_entry_action, &QAction::triggered, this, &MainWindow::AddEntries);
  connect(ui_->edit_entry_action, &QAction::triggered, this, &MainWindow::EditEntry);
  connect(ui_->port_list_view, &QTreeView::doubleClicked, this, &MainWindow::EditEntry);
  connect(ui_->detect_ip_button, &QPushButton::clicked, this, [this] {
    windows_
        .network_list(this,
                      [this](const QString& gateway) { ui_->router_ip_edit->setText(gateway); })
        ->open();
  });
}

// Only where the list has the focus: in a field these keys edit text.
void MainWindow::SetListKeys() {
  const std::pair<QAction*, QList<QKeySequence>> keys[] = {
      {ui_->add_entry_action, {QKeySequence(Qt::Key_Insert)}},
      {ui_->edit_entry_action, {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)}},
      {ui_->remove_entry_action, {QKeySequence(QKeySequence::Delete)}}};
  for (const auto& [action, sequences] : keys) {
    action->setShortcuts(sequences);
    action->setShortcutContext(Qt::WidgetShortcut);
    ui_->port_list_view->addAction(action);
  }
}

// A row that is added before the stored ones are loaded would overwrite them.
void MainWindow::SetListEnabled(bool enabled) {
  ui_->list_card->setEnabled(enabled);
  for (QAction* action :
       {ui_->add_ports_action, ui_->add_entry_action, ui_->open_action, ui_->save_action}) {
    action->setEnabled(enabled);
  }
}

void MainWindow::ShowListMenu(const QPoint& position) {
  ui_->list_menu->popup(ui_->port_list_view->viewport()->mapToGlobal(position));
}

// One row is always selected, so that Remove has a row to remove.
void MainWindow::KeepRowSelected() {
  const int rows = context_.port_list.rowCount();
  if (rows > 0 && !ui_->port_list_view->selectionModel()->hasSelection()) {
    const int row = std::clamp(ui_->port_list_view->currentIndex().row(), 0, rows - 1);
    ui_->port_list_view->setCurrentIndex(context_.port_list.index(row, 0));
  }
  for (QAction* action : {ui_->edit_entry_action, ui_->remove_entry_action,
                          ui_->remove_ports_action, ui_->remove_all_action}) {
    action->setEnabled(rows > 0);
  }
  ui_->remove_button->setEnabled(rows > 0);
}

QList<int> MainWindow::SelectedRows() const {
  QList<int> rows;
  for (const QModelIndex& index : ui_->port_list_view->selectionModel()->selectedRows()) {
    rows.append(index.row());
  }
  std::ranges::sort(rows);
  return rows.isEmpty() ? QList{ui_->port_list_view->currentIndex().row()} : rows;
}

void MainWindow::AddEntries() {
  windows_.add_new(this, [this] { list_.Keep(); })->open();
}

void MainWindow::EditEntry() {
  const int row = ui_->port_list_view->currentIndex().row();
  if (row >= 0) {
    windows_.edit(this, row, [this] { list_.Keep(); })->open();
  }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (ui_->list_card->isEnabled() && !DraggedList(*event->mimeData()).isEmpty()) {
    event->acceptProposedAction();
  }
}

void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  list_.OfferFile(DraggedList(*event->mimeData()));
}

}  // namespace quayline
