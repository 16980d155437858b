// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The port list of the main window, and the windows that work on it.

#include <QDragEnterEvent>
#include <QMimeData>
#include <QShortcut>

#include <algorithm>

#include "ui/main/frm_main.h"
#include "ui/main/main_messages.h"
#include "ui_frm_main.h"

namespace quayline {

namespace {

// The one saved list that is dragged; empty for anything else.
QString DraggedList(const QMimeData& data) {
  const QList<QUrl> urls = data.urls();
  const QString file = urls.size() == 1 ? urls.first().toLocalFile() : QString();
  return file.endsWith(QLatin1String(".qyl"), Qt::CaseInsensitive) ? file : QString();
}

}  // namespace

void FrmMain::ConnectList() {
  context_.port_list.SetHeaders({Text(message::kHeaderAppName), Text(message::kHeaderForwardedTo),
                                 Text(message::kHeaderStartPort), Text(message::kHeaderEndPort),
                                 QStringLiteral("TCP/UDP"), Text(message::kHeaderDescription)});
  ui_->ListView1->setModel(&context_.port_list);
  ui_->ListView1->SetEmptyHint(Text(message::kEmptyList), Text(message::kEmptyListHint));
  columns_ = std::make_unique<ListColumns>(*ui_->ListView1, context_.settings);
  ui_->ListView1->SizeColumns();
  connect(ui_->ListView1, &QWidget::customContextMenuRequested, this, &FrmMain::ShowListMenu);
  connect(ui_->zCommand5, &QPushButton::clicked, &list_, &ListCommands::SaveAs);
  connect(ui_->MenuSave, &QAction::triggered, &list_, &ListCommands::SaveAs);
  connect(ui_->zCommand6, &QPushButton::clicked, &list_, &ListCommands::Open);
  connect(ui_->MenuOpen, &QAction::triggered, &list_, &ListCommands::Open);
  connect(&list_, &ListCommands::listWritten, this, [this] {
    ui_->ListView1->SizeColumns();
    KeepRowSelected();
    ui_->menu_undo->setEnabled(list_.CanUndo());
    ui_->menu_redo->setEnabled(list_.CanRedo());
    timer3_.start();
  });
  ConnectRemoval();
  ConnectEntryWindows();
  SetListKeys();
  KeepRowSelected();
  setAcceptDrops(true);

  auto* update_key = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return), this);
  connect(update_key, &QShortcut::activated, this, &FrmMain::UpdateRouter);
  connect(ui_->Command8, &QPushButton::clicked, this, &FrmMain::UpdateRouter);
  connect(ui_->menuExit, &QAction::triggered, this, &FrmMain::exitRequested);
}

void FrmMain::ConnectRemoval() {
  const auto remove = [this] { list_.Remove(SelectedRows()); };
  connect(ui_->Command2, &QPushButton::clicked, this, remove);
  connect(ui_->menuRemove, &QAction::triggered, this, remove);
  connect(ui_->MenuRemovePorts, &QAction::triggered, this, remove);
  connect(ui_->menuremoveall, &QAction::triggered, &list_, &ListCommands::RemoveAll);
  connect(ui_->menu_undo, &QAction::triggered, &list_, &ListCommands::Undo);
  connect(ui_->menu_redo, &QAction::triggered, &list_, &ListCommands::Redo);
}

void FrmMain::ConnectEntryWindows() {
  connect(ui_->Command1, &QPushButton::clicked, this, &FrmMain::AddEntries);
  connect(ui_->MenuAddPort, &QAction::triggered, this, &FrmMain::AddEntries);
  connect(ui_->menuaddnew, &QAction::triggered, this, &FrmMain::AddEntries);
  connect(ui_->menuedit, &QAction::triggered, this, &FrmMain::EditEntry);
  connect(ui_->ListView1, &QTreeView::doubleClicked, this, &FrmMain::EditEntry);
  connect(ui_->zCommand3, &QPushButton::clicked, this, [this] {
    windows_.network_list(this, [this](const QString& gateway) { ui_->Text1->setText(gateway); })
        ->open();
  });
}

// Only where the list has the focus: in a field these keys edit text.
void FrmMain::SetListKeys() {
  const std::pair<QAction*, QList<QKeySequence>> keys[] = {
      {ui_->menuaddnew, {QKeySequence(Qt::Key_Insert)}},
      {ui_->menuedit, {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)}},
      {ui_->menuRemove, {QKeySequence(QKeySequence::Delete)}}};
  for (const auto& [action, sequences] : keys) {
    action->setShortcuts(sequences);
    action->setShortcutContext(Qt::WidgetShortcut);
    ui_->ListView1->addAction(action);
  }
}

// A row that is added ahead of the stored ones would be written over them.
void FrmMain::SetListEnabled(bool enabled) {
  ui_->list_card->setEnabled(enabled);
  for (QAction* action : {ui_->MenuAddPort, ui_->menuaddnew, ui_->MenuOpen, ui_->MenuSave}) {
    action->setEnabled(enabled);
  }
}

void FrmMain::ShowListMenu(const QPoint& position) {
  ui_->menurightclick->popup(ui_->ListView1->viewport()->mapToGlobal(position));
}

// There is always a row that Remove means, as long as there is one at all.
void FrmMain::KeepRowSelected() {
  const int rows = context_.port_list.rowCount();
  if (rows > 0 && !ui_->ListView1->selectionModel()->hasSelection()) {
    const int row = std::clamp(ui_->ListView1->currentIndex().row(), 0, rows - 1);
    ui_->ListView1->setCurrentIndex(context_.port_list.index(row, 0));
  }
  for (QAction* action :
       {ui_->menuedit, ui_->menuRemove, ui_->MenuRemovePorts, ui_->menuremoveall}) {
    action->setEnabled(rows > 0);
  }
  ui_->Command2->setEnabled(rows > 0);
}

QList<int> FrmMain::SelectedRows() const {
  QList<int> rows;
  for (const QModelIndex& index : ui_->ListView1->selectionModel()->selectedRows()) {
    rows.append(index.row());
  }
  std::ranges::sort(rows);
  return rows.isEmpty() ? QList{ui_->ListView1->currentIndex().row()} : rows;
}

void FrmMain::AddEntries() {
  windows_.add_new(this, [this] { list_.Keep(); })->open();
}

void FrmMain::EditEntry() {
  const int row = ui_->ListView1->currentIndex().row();
  if (row >= 0) {
    windows_.edit(this, row, [this] { list_.Keep(); })->open();
  }
}

void FrmMain::dragEnterEvent(QDragEnterEvent* event) {
  if (ui_->list_card->isEnabled() && !DraggedList(*event->mimeData()).isEmpty()) {
    event->acceptProposedAction();
  }
}

void FrmMain::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  list_.OfferFile(DraggedList(*event->mimeData()));
}

}  // namespace quayline
