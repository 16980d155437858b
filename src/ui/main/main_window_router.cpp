// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The windows that the main window opens on the selected router.

#include "ui/main/main_messages.h"
#include "ui/main/main_window.h"
#include "ui_main_window.h"

namespace quayline {

void MainWindow::ConnectRouterWindows() {
  connect(ui_->view_ports_button, &QPushButton::clicked, this, &MainWindow::ViewPorts);
  connect(ui_->router_list_button, &QToolButton::clicked, this,
          [this] { windows_.router_list(this, [this](int id) { ChooseRouter(id); })->open(); });
  connect(ui_->view_scripts_action, &QAction::triggered, this,
          [this] { windows_.view_scripts(this, [this] { ReloadRouter(); })->open(); });
}

void MainWindow::ChooseRouter(int id) {
  const int row = routers_.RowOf(id);
  if (row < 0) {
    return;
  }
  ui_->router_box->setCurrentIndex(row);
  SelectRouterRow(row);
}

// When the box loses the focus it must show the router whose script an update runs: an incomplete
// name is replaced by it. An empty one stays, and is refused.
void MainWindow::SettleRouter() {
  const QString typed = ui_->router_box->currentText();
  const int chosen = routers_.RowOf(context_.session.router_id);
  const int found = routers_.Find(typed);
  const QString name = ui_->router_box->itemText(chosen);
  if (found > 0 && ui_->router_box->itemText(found) != name) {
    ChooseRouter(routers_.RouterId(found));
  } else if (found != 0 && chosen > 0 && !typed.isEmpty()) {
    ui_->router_box->setCurrentIndex(chosen);
    ui_->router_box->setEditText(name);
  }
}

// Reading a router sets its factory login; the user's own is restored afterwards. The fields
// contain it even if it could not be stored.
void MainWindow::ReloadRouter() {
  const QString username = ui_->username_edit->text();
  const QString password = ui_->password_edit->text();
  ChooseRouter(context_.session.router_id);
  ui_->username_edit->setText(username);
  ui_->password_edit->setText(password);
}

void MainWindow::ViewPorts() {
  if (context_.session.router_ip.startsWith(QLatin1Char('0'))) {
    prompts_.Tell(this, Text(kSetRouterIp));
    ui_->router_ip_edit->setFocus();
    return;
  }
  if (context_.job_flags.is_running) {
    prompts_.Tell(this, Text(message::kJobRuns));
    return;
  }
  context_.job_flags.SetJobStopRequested(false);
  context_.job_flags.SetJobDebugMode(false);
  context_.job_flags.view_error_grace = 1;
  windows_.view_page(this)->open();
}

}  // namespace quayline
