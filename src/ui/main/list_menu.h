// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "core/port_list_model.h"
#include "ui/main/port_list_panel.h"

namespace Ui {
class MainWindow;
}

namespace quayline {

// The commands of the port list: the menus that have them, the menu that the list opens, and the
// keys that work in the list. Belongs to the main window.
class ListMenu final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  ListMenu(const Ui::MainWindow& ui, const PortListModel& list, PortListPanel& panel,
           QObject* parent);

 private:
  void ConnectRows();
  void ConnectWholeList();
  void EnableActions();

  const Ui::MainWindow& ui_;
  const PortListModel& list_;
  PortListPanel& panel_;
};

}  // namespace quayline
