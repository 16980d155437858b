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

// What is wrong with a file: its first lines, as many as a box can show.
QString ProblemText(const Problems& problems, const Translator& translator) {
  constexpr qsizetype kMostLines = 10;
  QStringList lines;
  for (const DataProblem& problem : problems.first(std::min(problems.size(), kMostLines))) {
    const Sentence line{message::kProblemInLine,
                        {QString::number(problem.line), TextOf(problem.sentence, translator)}};
    lines.append(TextOf(line, translator));
  }
  return lines.join(u'\n');
}

}  // namespace

QString FaultText(const OwnRouterFault& fault, const Translator& translator) {
  switch (fault.error) {
    case OwnRouterError::kNoName:
      return translator.Text(message::kRouterNeedsName);
    case OwnRouterError::kNameTaken:
      return translator.Text(message::kRouterNameTaken).arg(fault.name);
    case OwnRouterError::kCannotRead:
      return TextOf({message::kCannotReadRouter, {ProblemText(fault.problems, translator)}},
                    translator);
    case OwnRouterError::kWrongSignature:
      return translator.Text(message::kWrongSignature);
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
  for (QLineEdit* edit : {ui_->user_edit, ui_->password_edit}) {
    connect(edit, &QLineEdit::textChanged, this, [this, edit] { NoteChange(edit); });
  }
  for (QSpinBox* box :
       {ui_->max_entries_box, ui_->max_range_box, ui_->min_port_box, ui_->max_port_box}) {
    connect(box, &QSpinBox::valueChanged, this, [this, box] { NoteChange(box); });
  }
  for (QCheckBox* box : {ui_->both_check, ui_->computer_check}) {
    connect(box, &QCheckBox::toggled, this, [this, box] { NoteChange(box); });
  }
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
  model_ =
      context_.databases.FindRouter(ui_->model_box->currentData().toInt()).value_or(RouterRecord());
  const bool supports_both =
      !model_.routersupportsboth.isEmpty() && IsYes(model_.routersupportsboth);
  is_filling_ = true;
  Fill(ui_->user_edit, &QLineEdit::setText, model_.routerusername);
  Fill(ui_->password_edit, &QLineEdit::setText, model_.routerpassword);
  Fill(ui_->max_entries_box, &QSpinBox::setValue, model_.routermaxentries.toInt());
  Fill(ui_->max_range_box, &QSpinBox::setValue, model_.routermaxrange.toInt());
  Fill(ui_->min_port_box, &QSpinBox::setValue, std::max(1, model_.routerminport.toInt()));
  Fill(ui_->max_port_box, &QSpinBox::setValue,
       model_.routermaxport.isEmpty() ? kMaxPort : model_.routermaxport.toInt());
  Fill(ui_->both_check, &QCheckBox::setChecked, supports_both);
  Fill(ui_->computer_check, &QCheckBox::setChecked, IsYes(model_.routerneedscomputername));
  is_filling_ = false;
}

// The model is guessed again while the name is typed: what the user has changed by then stays.
template <typename Field, typename Setter, typename Value>
void NewRouterDialog::Fill(Field* field, Setter set, const Value& value) {
  if (!changed_.contains(field)) {
    (field->*set)(value);
  }
}

void NewRouterDialog::NoteChange(QWidget* field) {
  if (!is_filling_) {
    changed_.insert(field);
  }
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
  record.routertested.clear();  // the scripts were not tried on this router
  record.routerversions.clear();
  return record;
}

void NewRouterDialog::accept() {
  // A script of somebody else stays his, under whatever name.
  ForeignScripts foreign(context_.program_folder);
  const auto origin = foreign.OriginOf(model_.id);
  const auto id = AddOwnRouter(context_.databases, foreign, Record(),
                               origin ? std::optional(origin->author) : std::nullopt);
  if (!id) {
    prompts_.Tell(this, FaultText(id.error(), context_.translator));
    ui_->name_edit->setFocus();
    return;
  }
  created_(*id, model_.routername);
  QDialog::accept();
}

}  // namespace quayline
