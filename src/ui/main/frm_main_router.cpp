// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The windows that the main window opens on the selected router.

#include "ui/main/frm_main.h"
#include "ui/main/main_messages.h"
#include "ui_frm_main.h"

namespace quayline {

void FrmMain::ConnectRouterWindows() {
  connect(ui_->Command7, &QPushButton::clicked, this, &FrmMain::ViewPorts);
  connect(ui_->vkCommand8, &QToolButton::clicked, this,
          [this] { windows_.router_list(this, [this](int id) { ChooseRouter(id); })->open(); });
  connect(ui_->MenuViewScripts, &QAction::triggered, this,
          [this] { windows_.view_scripts(this, [this] { ReloadRouter(); })->open(); });
}

void FrmMain::ChooseRouter(int id) {
  const int row = routers_.RowOf(id);
  if (row < 0) {
    return;
  }
  ui_->Combo1->setCurrentIndex(row);
  SelectRouterRow(row);
}

// The name that is left must be that of the router whose script an update runs: half a name gives
// way to it. An empty one stays, and is refused.
void FrmMain::SettleRouter() {
  const QString typed = ui_->Combo1->currentText();
  const int chosen = routers_.RowOf(context_.session.router_id);
  const int found = routers_.Find(typed);
  const QString name = ui_->Combo1->itemText(chosen);
  if (found > 0 && ui_->Combo1->itemText(found) != name) {
    ChooseRouter(routers_.RouterId(found));
  } else if (found != 0 && chosen > 0 && !typed.isEmpty()) {
    ui_->Combo1->setCurrentIndex(chosen);
    ui_->Combo1->setEditText(name);
  }
}

// Reading a router brings its factory login; the user's own one is put back. The fields have it
// even where it could not be stored.
void FrmMain::ReloadRouter() {
  const QString username = ui_->Text2->text();
  const QString password = ui_->Text3->text();
  ChooseRouter(context_.session.router_id);
  ui_->Text2->setText(username);
  ui_->Text3->setText(password);
}

void FrmMain::ViewPorts() {
  if (context_.session.router_ip.startsWith(QLatin1Char('0'))) {
    prompts_.Tell(this, Text(kSetRouterIp));
    ui_->Text1->setFocus();
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
