// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/updates/database_update_dialog.h"

#include <QTimer>

#include <chrono>
#include <utility>

#include "ui/updates/update_texts.h"
#include "ui_database_update_dialog.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kUntilPainted = 250ms;

}  // namespace

DatabaseUpdateDialog::DatabaseUpdateDialog(AppContext& context, Prompts& prompts, QWidget* parent,
                                           std::function<void()> updated)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      updated_(std::move(updated)),
      ui_(std::make_unique<Ui::DatabaseUpdateDialog>()),
      update_(context) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  TransferPanel* panel = ui_->transfer_panel;
  panel->Follow(update_.Transfer(), context.translator);
  connect(ui_->close_button, &QPushButton::clicked, this, &DatabaseUpdateDialog::reject);
  connect(&update_, &DatabaseUpdate::sizeKnown, panel, &TransferPanel::SetTotal);
  connect(&update_, &DatabaseUpdate::installing, this, [this, panel] {
    panel->End();
    SetInstalling(true);
    panel->ShowReason(Text(message::kInstallingDatabases));
  });
  connect(&update_, &DatabaseUpdate::installed, this, &DatabaseUpdateDialog::ReportInstalled);
  connect(&update_, &DatabaseUpdate::failed, this, &DatabaseUpdateDialog::ReportFailed);
}

DatabaseUpdateDialog::~DatabaseUpdateDialog() = default;

void DatabaseUpdateDialog::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (!std::exchange(is_started_, true)) {
    QTimer::singleShot(kUntilPainted, this, &DatabaseUpdateDialog::Start);
  }
}

void DatabaseUpdateDialog::Start() {
  ui_->transfer_panel->Begin();
  update_.Start();
}

// What takes a moment only is not interrupted.
void DatabaseUpdateDialog::SetInstalling(bool installing) {
  if (std::exchange(is_installing_, installing) != installing) {
    ui_->transfer_panel->SetBusy(installing);
    ui_->close_button->setEnabled(!installing);
  }
}

void DatabaseUpdateDialog::ReportFailed(const QString& why) {
  SetInstalling(false);
  ui_->transfer_panel->End();
  ui_->transfer_panel->ShowReason(why);
}

void DatabaseUpdateDialog::ReportInstalled(const QList<RowChanges>& changes) {
  SetInstalling(false);
  QStringList lines{Text(message::kDatabasesUpdating), Text(message::kClickWhenDone),
                    Text(message::kNoNewWindows), QString()};
  for (const RowChanges& table : changes) {
    const bool is_routers = table.table == QLatin1String(kTableOf<RouterRecord>.name);
    lines.append(Text(is_routers ? message::kRoutersChanged : message::kProgramsChanged)
                     .arg(table.came)
                     .arg(table.changed)
                     .arg(table.stayed)
                     .arg(table.gone));
  }
  ui_->transfer_panel->ShowReason(lines.mid(4).join(QLatin1Char('\n')));
  prompts_.Tell(this, lines.join(QLatin1Char('\n')), [this] {
    updated_();
    close();
  });
}

// Also Esc and the frame's button.
void DatabaseUpdateDialog::reject() {
  if (!is_installing_ && (!update_.IsRunning() || ui_->transfer_panel->MayClose())) {
    QDialog::reject();
  }
}

}  // namespace quayline
