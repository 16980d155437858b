// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/list_menu.h"

#include "ui_main_window.h"

namespace quayline {

ListMenu::ListMenu(const Ui::MainWindow& ui, const PortListModel& list, PortListPanel& panel,
                   QObject* parent)
    : QObject(parent), ui_(ui), list_(list), panel_(panel) {
  connect(&panel_, &PortListPanel::menuWanted, ui_.list_menu,
          [menu = ui_.list_menu](const QPoint& place) { menu->popup(place); });
  connect(&panel_, &PortListPanel::rowsChanged, this, &ListMenu::EnableActions);
  ConnectRows();
  ConnectWholeList();
}

void ListMenu::ConnectRows() {
  for (QAction* action : {ui_.add_ports_action, ui_.add_entry_action}) {
    connect(action, &QAction::triggered, &panel_, &PortListPanel::AddEntries);
  }
  for (QAction* action : {ui_.remove_ports_action, ui_.remove_entry_action}) {
    connect(action, &QAction::triggered, &panel_, &PortListPanel::RemoveSelected);
  }
  connect(ui_.edit_entry_action, &QAction::triggered, &panel_, &PortListPanel::EditEntry);
  panel_.AddListAction(ui_.add_entry_action, {QKeySequence(Qt::Key_Insert)});
  panel_.AddListAction(ui_.edit_entry_action,
                       {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)});
  panel_.AddListAction(ui_.remove_entry_action, {QKeySequence(QKeySequence::Delete)});
}

void ListMenu::ConnectWholeList() {
  ListCommands* list = &panel_.Commands();
  connect(ui_.remove_all_action, &QAction::triggered, list, &ListCommands::RemoveAll);
  connect(ui_.undo_action, &QAction::triggered, list, &ListCommands::Undo);
  connect(ui_.redo_action, &QAction::triggered, list, &ListCommands::Redo);
  connect(ui_.open_action, &QAction::triggered, list, &ListCommands::Open);
  connect(ui_.save_action, &QAction::triggered, list, &ListCommands::SaveAs);
}

void ListMenu::EnableActions() {
  const bool has_rows = list_.rowCount() > 0;
  for (QAction* action : {ui_.edit_entry_action, ui_.remove_entry_action, ui_.remove_ports_action,
                          ui_.remove_all_action}) {
    action->setEnabled(has_rows);
  }
  ui_.undo_action->setEnabled(panel_.Commands().CanUndo());
  ui_.redo_action->setEnabled(panel_.Commands().CanRedo());
}

}  // namespace quayline
