// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/tools/frm_router_list.h"

#include <QLocale>
#include <QShortcut>
#include <QStringListModel>

#include <limits>

#include "async/wait.h"
#include "ui/toolkit/theme.h"
#include "ui/tools/tool_texts.h"
#include "ui_frm_router_list.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kRoutersAStep = 1000;
constexpr int kTextMargins = 12;

}  // namespace

FrmRouterList::FrmRouterList(AppContext& context, Prompts& prompts, QWidget* parent,
                             std::function<void(int router_id)> chosen)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      chosen_(std::move(chosen)),
      ui_(std::make_unique<Ui::FrmRouterList>()),
      list_(new QStringListModel(this)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  ResizeOnScreen(*this, {520, 560});
  ui_->List1->setModel(list_);
  ui_->Command1->setIcon(ThemeIcon(QStringLiteral("search")));
  ui_->command_choose->setEnabled(false);
  QPalette plain = ui_->Text2->palette();  // it looks like what it is: a label
  plain.setColor(QPalette::Base, Qt::transparent);
  ui_->Text2->setPalette(plain);
  connect(ui_->Text1, &QLineEdit::textChanged, this, &FrmRouterList::SearchWhileTyping);
  connect(ui_->Command1, &QPushButton::clicked, this, &FrmRouterList::FindNext);
  connect(ui_->List1, &QListView::doubleClicked, this, &FrmRouterList::Choose);
  connect(ui_->command_choose, &QPushButton::clicked, this, &FrmRouterList::Choose);
  connect(ui_->command_close, &QPushButton::clicked, this, &QDialog::reject);
  // In the list Enter chooses; elsewhere it finds the next one.
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* choose = new QShortcut(QKeySequence(key), ui_->List1);
    choose->setContext(Qt::WidgetShortcut);
    connect(choose, &QShortcut::activated, this, &FrmRouterList::Choose);
  }
  not_found_timer_.setSingleShot(true);
  connect(&not_found_timer_, &QTimer::timeout, this, &FrmRouterList::TellNotFound);
  flow_.Start(LoadRouters());
}

FrmRouterList::~FrmRouterList() = default;

Task<> FrmRouterList::LoadRouters() {
  QStringList names;
  ui_->progress_bar->setMaximum(std::max(1, context_.databases.RouterCount()));
  int last_id = std::numeric_limits<int>::min();
  while (true) {
    const QList<RouterName> step = context_.databases.RouterNames(last_id, kRoutersAStep);
    if (step.isEmpty()) {
      break;
    }
    last_id = step.last().id;
    for (const RouterName& router : step) {
      names.append(router.name);
      names_.Append(router.name);
      ids_.append(router.id);
    }
    ui_->progress_bar->setValue(static_cast<int>(names.size()));
    co_await Sleep(0ms);
  }
  list_->setStringList(names);
  ShowLoaded();
}

void FrmRouterList::ShowLoaded() {
  ui_->Label5->hide();
  ui_->Picture2->hide();
  ui_->Text2->setText(
      Text(message::kListedRouters) +
      QStringLiteral(" (%1)").arg(QLocale(QLocale::English).toString(names_.Count())));
  ui_->Text2->setMinimumWidth(ui_->Text2->fontMetrics().horizontalAdvance(ui_->Text2->text()) +
                              kTextMargins);
  const qsizetype chosen = ids_.indexOf(context_.session.router_id);
  if (names_.Count() > 0) {
    ui_->List1->setCurrentIndex(list_->index(static_cast<int>(std::max<qsizetype>(chosen, 0))));
    ui_->List1->scrollTo(ui_->List1->currentIndex(), QAbstractItemView::PositionAtCenter);
  }
  ui_->command_choose->setEnabled(names_.Count() > 0);
}

// A box in the middle of a word would take the keys that follow: it waits for the hands to rest.
// It would be wrong, too, where the search has passed over the name that is selected.
void FrmRouterList::SearchWhileTyping() {
  not_found_timer_.stop();
  if (list_->rowCount() > 0 && !Search() &&
      !names_.Fits(ui_->List1->currentIndex().row(), ui_->Text1->text(),
                   ui_->Check2->isChecked())) {
    not_found_timer_.start(600ms);
  }
}

void FrmRouterList::FindNext() {
  not_found_timer_.stop();
  if (list_->rowCount() > 0 && !Search()) {
    TellNotFound();
  }
}

bool FrmRouterList::Search() {
  const int found = names_.FindNext(ui_->Text1->text(), ui_->Check2->isChecked(),
                                    context_.router_search_position);
  if (found < 0) {
    return false;
  }
  ui_->List1->setCurrentIndex(list_->index(found));
  ui_->List1->scrollTo(list_->index(found), QAbstractItemView::PositionAtCenter);
  return true;
}

void FrmRouterList::TellNotFound() {
  prompts_.TellTitled(
      this, Text(message::kFindTitle),
      Text(message::kCouldNotFind) + QStringLiteral(" '") + ui_->Text1->text() + QLatin1Char('\''));
}

void FrmRouterList::Choose() {
  const int row = ui_->List1->currentIndex().row();
  if (row >= 0 && row < ids_.size()) {
    chosen_(ids_.at(row));
    accept();
  }
}

}  // namespace quayline
