// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/tools/new_router_dialog.h"

#include "core/port_range.h"
#include "ui/toolkit/theme.h"
#include "ui/tools/tool_texts.h"
#include "ui_new_router_dialog.h"

namespace quayline {

namespace {

bool IsYes(const QString& answer) {
  return answer.compare(QLatin1String("yes"), Qt::CaseInsensitive) == 0;
}

QString Answer(bool yes) { return yes ? QStringLiteral("yes") : QStringLiteral("no"); }

}  // namespace

QString FaultText(const OwnRouterFault& fault, const Translator& translator) {
  switch (fault.error) {
    case OwnRouterError::kNoName:
      return translator.Text(message::kRouterNeedsName);
    case OwnRouterError::kNameTaken:
      return translator.Text(message::kRouterNameTaken).arg(fault.detail);
    case OwnRouterError::kCannotRead:
      return translator.Text(message::kCannotReadRouter).arg(fault.detail);
    case OwnRouterError::kCannotWrite:
      break;
  }
  return translator.Text(message::kCannotAddRouter);
}

NewRouterDialog::NewRouterDialog(AppContext& context, Prompts& prompts,
                                 const QList<RouterName>& routers, QWidget* parent,
                                 std::function<void(int router_id, const QString& like)> created)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      routers_(routers),
      created_(std::move(created)),
      ui_(std::make_unique<Ui::NewRouterDialog>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  OpenOver(*this, {480, 420});
  for (const RouterName& router : routers_) {
    ui_->model_box->addItem(router.name, router.id);
  }
  ui_->max_entries_box->setSpecialValueText(Text(message::kUnknownLimit));
  ui_->min_port_box->setMaximum(kMaxPort);
  ui_->max_port_box->setMaximum(kMaxPort);
  ui_->max_range_box->setMaximum(kMaxPort);
  connect(ui_->name_edit, &QLineEdit::textEdited, this, &NewRouterDialog::GuessModel);
  connect(ui_->model_box, &QComboBox::activated, this, [this] { has_chosen_ = true; });
  connect(ui_->model_box, &QComboBox::currentIndexChanged, this, &NewRouterDialog::ShowModel);
  connect(ui_->create_button, &QPushButton::clicked, this, &NewRouterDialog::accept);
  connect(ui_->cancel_button, &QPushButton::clicked, this, &QDialog::reject);
  ui_->model_box->setCurrentIndex(
      std::max(0, ui_->model_box->findData(context_.session.router_id)));
  ShowModel();
}

NewRouterDialog::~NewRouterDialog() = default;

void NewRouterDialog::GuessModel() {
  const qsizetype nearest = NearestRouter(routers_, ui_->name_edit->text());
  if (nearest >= 0 && !has_chosen_) {
    ui_->model_box->setCurrentIndex(static_cast<int>(nearest));
  }
}

void NewRouterDialog::ShowModel() {
  model_ = context_.databases.FindRouter(ui_->model_box->currentData().toInt())
               .value_or(RouterRecord());
  ui_->user_edit->setText(model_.routerusername);
  ui_->password_edit->setText(model_.routerpassword);
  ui_->max_entries_box->setValue(model_.routermaxentries.toInt());
  ui_->max_range_box->setValue(model_.routermaxrange.toInt());
  ui_->min_port_box->setValue(std::max(1, model_.routerminport.toInt()));
  ui_->max_port_box->setValue(model_.routermaxport.isEmpty() ? kMaxPort
                                                            : model_.routermaxport.toInt());
  ui_->both_check->setChecked(!model_.routersupportsboth.isEmpty() &&
                              IsYes(model_.routersupportsboth));
  ui_->computer_check->setChecked(IsYes(model_.routerneedscomputername));
}

RouterRecord NewRouterDialog::Record() const {
  RouterRecord record = model_;
  const int entries = ui_->max_entries_box->value();
  record.routername = ui_->name_edit->text().trimmed();
  record.routerusername = ui_->user_edit->text();
  record.routerpassword = ui_->password_edit->text();
  record.routermaxentries = entries == 0 ? QString() : QString::number(entries);
  record.routermaxrange = QString::number(ui_->max_range_box->value());
  record.routerminport = QString::number(ui_->min_port_box->value());
  record.routermaxport =
      QString::number(std::max(ui_->min_port_box->value(), ui_->max_port_box->value()));
  record.routersupportsboth = Answer(ui_->both_check->isChecked());
  record.routerneedscomputername = Answer(ui_->computer_check->isChecked());
  record.routerpic.clear();
  record.routertested.clear();  // nobody has tried the scripts on this router
  record.routerversions.clear();
  return record;
}

void NewRouterDialog::accept() {
  const auto id = AddOwnRouter(context_.databases, Record());
  if (!id) {
    prompts_.Tell(this, FaultText(id.error(), context_.translator));
    ui_->name_edit->setFocus();
    return;
  }
  created_(*id, model_.routername);
  QDialog::accept();
}

}  // namespace quayline
