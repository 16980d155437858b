// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/second_router_dialog.h"

#include "ui/network/second_router_texts.h"
#include "ui_second_router_dialog.h"

namespace quayline {

SecondRouterDialog::SecondRouterDialog(const Adapters& adapters, Echoes& echoes,
                                       const Translator& translator, QWidget* parent)
    : QDialog(parent),
      translator_(translator),
      search_(adapters, echoes),
      ui_(std::make_unique<Ui::SecondRouterDialog>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  const QList<Adapter> list = adapters.List();
  for (const Adapter& adapter : list) {
    ui_->adapter_box->addItem(adapter.description, adapter.index);
  }
  ui_->adapter_box->setCurrentIndex(static_cast<int>(PreselectedAdapter(list)));
  ui_->log_edit->setPlainText(Text(message::kStatusLog) + u'\n');
  ui_->progress_bar->setMaximum(SecondRouterSearch::kSteps);
  connect(ui_->check_button, &QPushButton::clicked, this, &SecondRouterDialog::Check);
  connect(ui_->close_button, &QPushButton::clicked, this, &QDialog::reject);
  connect(&search_, &SecondRouterSearch::progressed, ui_->progress_bar, &QProgressBar::setValue);
  connect(&search_, &SecondRouterSearch::ended, this, &SecondRouterDialog::ShowTrace);
}

SecondRouterDialog::~SecondRouterDialog() = default;

void SecondRouterDialog::Check() {
  ui_->check_button->setEnabled(false);
  ui_->close_button->setFocus();  // not lost with the disabled button
  ui_->count_label->clear();
  ui_->advice_label->clear();
  ui_->log_edit->setPlainText(Text(message::kStatusLog) + u'\n' +
                              Text(message::kCheckingForRouters) + QStringLiteral("\n\n"));
  search_.Start();
}

void SecondRouterDialog::ShowTrace(const RouterTrace& trace) {
  ShowCount(trace, CountRouters(trace.addresses, ui_->outside_address_edit->text()));
  ui_->progress_bar->setValue(SecondRouterSearch::kSteps);
  ui_->check_button->setEnabled(true);
  ui_->check_button->setFocus();
}

void SecondRouterDialog::ShowCount(const RouterTrace& trace, const RouterCount& count) {
  int number = 0;
  for (const QString& router : count.routers) {
    ++number;
    AddLine(QStringLiteral("%1 %2 %3 %4")
                .arg(Text(message::kPossibleRouter), TextOf(OrdinalText(number), translator_),
                     Text(message::kRouterAt), router));
  }
  if (trace.is_forbidden) {
    AddLine(Text(message::kEchoesForbidden));
  } else if (trace.is_silent) {
    AddLine(Text(message::kNobodyAnswered));
  }
  const QString outside = ui_->outside_address_edit->text().trimmed();
  if (count.outside != RouterCount::OutsideAddress::kUnknown) {
    const bool is_public = count.outside == RouterCount::OutsideAddress::kPublic;
    AddLine(Text(is_public ? message::kOutsideIsPublic : message::kOutsideIsPrivate).arg(outside));
  } else if (!outside.isEmpty()) {
    AddLine(Text(message::kOutsideIsNoAddress).arg(outside));
  }
  const QString shown = count.Shown();
  if (shown.isEmpty()) {
    return;
  }
  ui_->count_label->setText(shown);
  AddLine(Text(message::kRoutersFound) + u' ' + shown);
  if (count.HasSecondRouter()) {
    ui_->advice_label->setText(Text(message::kManyRoutersAdvice));
  } else if (!trace.is_silent && !trace.is_forbidden) {
    ui_->advice_label->setText(Text(message::kOneRouterAdvice));
  }
}

void SecondRouterDialog::AddLine(const QString& line) {
  ui_->log_edit->moveCursor(QTextCursor::End);
  ui_->log_edit->insertPlainText(line + u'\n');
}

}  // namespace quayline
