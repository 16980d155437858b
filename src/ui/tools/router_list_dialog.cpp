// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/tools/router_list_dialog.h"

#include <QFile>
#include <QLocale>
#include <QShortcut>

#include <algorithm>
#include <limits>

#include "async/wait.h"
#include "core/own_routers.h"
#include "core/router_tested.h"
#include "ui/toolkit/theme.h"
#include "ui/tools/new_router_dialog.h"
#include "ui/tools/tool_texts.h"
#include "ui_router_list_dialog.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kRoutersAStep = 1000;
constexpr int kTextMargins = 12;

}  // namespace

RouterListDialog::RouterListDialog(AppContext& context, Prompts& prompts, QWidget* parent,
                                   std::function<void(int router_id)> chosen)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      chosen_(std::move(chosen)),
      ui_(std::make_unique<Ui::RouterListDialog>()),
      list_(new RouterNamesModel(context.translator, this)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  OpenOver(*this, {520, 560});
  ui_->router_list_view->setModel(list_);
  connect(ui_->router_list_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          &RouterListDialog::ShowTested);
  ui_->find_next_button->setIcon(ThemeIcon(QStringLiteral("search")));
  constexpr int kMostLines = 3;  // the list keeps its size whatever is selected
  ui_->tested_label->setMinimumHeight(kMostLines * fontMetrics().lineSpacing());
  ui_->choose_button->setEnabled(false);
  connect(ui_->search_edit, &QLineEdit::textChanged, this, &RouterListDialog::SearchWhileTyping);
  connect(ui_->find_next_button, &QPushButton::clicked, this, &RouterListDialog::FindNext);
  connect(ui_->router_list_view, &QListView::doubleClicked, this, &RouterListDialog::Choose);
  connect(ui_->choose_button, &QPushButton::clicked, this, &RouterListDialog::Choose);
  for (QPushButton* button : {ui_->new_router_button, ui_->import_button, ui_->export_button}) {
    button->setEnabled(false);
  }
  connect(ui_->new_router_button, &QPushButton::clicked, this, &RouterListDialog::OpenNewRouter);
  connect(ui_->import_button, &QPushButton::clicked, this, [this] {
    prompts_.AskOpenFile(this,
                         {.title = Text(message::kImportTitle),
                          .filter = Text(message::kRouterFiles),
                          .default_suffix = {}},
                         [this](const QString& file) { Import(file); });
  });
  connect(ui_->export_button, &QPushButton::clicked, this, &RouterListDialog::AskToExport);
  connect(ui_->close_button, &QPushButton::clicked, this, &QDialog::reject);
  // In the list Enter chooses a router; elsewhere it finds the next one.
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* choose = new QShortcut(QKeySequence(key), ui_->router_list_view);
    choose->setContext(Qt::WidgetShortcut);
    connect(choose, &QShortcut::activated, this, &RouterListDialog::Choose);
  }
  not_found_timer_.setSingleShot(true);
  connect(&not_found_timer_, &QTimer::timeout, this, &RouterListDialog::ReportNotFound);
  flow_.Start(LoadRouters());
}

RouterListDialog::~RouterListDialog() = default;

Task<> RouterListDialog::LoadRouters() {
  QList<RouterName> routers;
  ui_->progress_bar->setMaximum(std::max(1, context_.databases.RouterCount()));
  int last_id = std::numeric_limits<int>::min();
  while (true) {
    const QList<RouterName> step = context_.databases.RouterNames(last_id, kRoutersAStep);
    if (step.isEmpty()) {
      break;
    }
    last_id = step.last().id;
    for (const RouterName& router : step) {
      names_.Append(router.name);
    }
    routers += step;
    ui_->progress_bar->setValue(static_cast<int>(routers.size()));
    co_await Sleep(0ms);
  }
  list_->SetRouters(routers);
  ShowLoaded();
}

void RouterListDialog::ShowLoaded() {
  ui_->loading_label->hide();
  ui_->loading_frame->hide();
  ui_->router_count_edit->setText(
      Text(message::kListedRouters) +
      QStringLiteral(" (%1)").arg(QLocale(QLocale::English).toString(names_.Count())));
  ui_->router_count_edit->setMinimumWidth(
      ui_->router_count_edit->fontMetrics().horizontalAdvance(ui_->router_count_edit->text()) +
      kTextMargins);
  const auto& routers = list_->Routers();
  const auto chosen = std::ranges::find(routers, context_.session.router_id, &RouterName::id);
  if (names_.Count() > 0) {
    ui_->router_list_view->setCurrentIndex(
        list_->index(chosen == routers.end() ? 0 : static_cast<int>(chosen - routers.begin())));
    ui_->router_list_view->scrollTo(ui_->router_list_view->currentIndex(),
                                    QAbstractItemView::PositionAtCenter);
  }
  ui_->choose_button->setEnabled(names_.Count() > 0);
  ui_->new_router_button->setEnabled(names_.Count() > 0);
  ui_->export_button->setEnabled(names_.Count() > 0);
  ui_->import_button->setEnabled(true);
}

void RouterListDialog::ShowTested() {
  const RouterName router = list_->Routers().value(ui_->router_list_view->currentIndex().row());
  ui_->tested_label->setText(
      router.id == 0 ? QString() : TestedText(router.tested, router.versions, context_.translator));
}

// A message box in the middle of a word would take the keys that follow: it is delayed until the
// user stops typing. It is not shown if the selected name matches.
void RouterListDialog::SearchWhileTyping() {
  not_found_timer_.stop();
  if (list_->rowCount() > 0 && !Search() &&
      !names_.Fits(ui_->router_list_view->currentIndex().row(), ui_->search_edit->text(),
                   ui_->whole_name_check->isChecked())) {
    not_found_timer_.start(600ms);
  }
}

void RouterListDialog::FindNext() {
  not_found_timer_.stop();
  if (list_->rowCount() > 0 && !Search()) {
    ReportNotFound();
  }
}

bool RouterListDialog::Search() {
  const int found = names_.FindNext(ui_->search_edit->text(), ui_->whole_name_check->isChecked(),
                                    context_.router_search_position);
  if (found < 0) {
    return false;
  }
  ui_->router_list_view->setCurrentIndex(list_->index(found));
  ui_->router_list_view->scrollTo(list_->index(found), QAbstractItemView::PositionAtCenter);
  return true;
}

void RouterListDialog::ReportNotFound() {
  prompts_.TellTitled(this, Text(message::kFindTitle),
                      Text(message::kCouldNotFind) + QStringLiteral(" '") +
                          ui_->search_edit->text() + QLatin1Char('\''));
}

int RouterListDialog::SelectedId() const {
  return list_->Routers().value(ui_->router_list_view->currentIndex().row()).id;
}

void RouterListDialog::Choose() {
  if (const int id = SelectedId(); id != 0) {
    chosen_(id);
    accept();
  }
}

void RouterListDialog::OpenNewRouter() {
  auto* dialog =
      new NewRouterDialog(context_, prompts_, list_->Routers(), this,
                          [this](int id, const QString& like) { TakeOwnRouter(id, like); });
  dialog->open();
}

void RouterListDialog::TakeOwnRouter(int id, const QString& like) {
  chosen_(id);
  prompts_.Tell(parentWidget(), Text(message::kRouterAdded).arg(like));
  accept();
}

void RouterListDialog::Import(const QString& file) {
  ForeignScripts foreign(context_.program_folder);
  const QByteArray own_key =
      QFile::exists(KeyFile()) ? OwnAuthorKey(KeyFile()).for_everybody : QByteArray();
  const auto ids = ImportRouters(context_.databases, foreign, own_key, file);
  if (!ids) {
    prompts_.Tell(this, FaultText(ids.error(), context_.translator));
    return;
  }
  chosen_(ids->first());
  if (foreign.OriginOf(ids->first())) {
    prompts_.Tell(parentWidget(), Text(message::kImportedFromOther));
  }
  accept();
}

QString RouterListDialog::KeyFile() const { return context_.FileInFolder("author.key"); }

void RouterListDialog::AskToExport() {
  const auto record = context_.databases.FindRouter(SelectedId());
  if (!record) {
    return;
  }
  prompts_.AskSaveFile(
      this,
      {.title = Text(message::kExportTitle),
       .filter = Text(message::kRouterFiles),
       .default_suffix = QStringLiteral("txt")},
      [this, record = *record](const QString& file) {
        const QString author = qEnvironmentVariable("USER");
        prompts_.Ask(this, Text(message::kExportTitle), Text(message::kSignQuestion).arg(author),
                     [this, record, file, author](bool yes) {
                       Export(record, file, yes ? std::optional(author) : std::nullopt);
                     });
      });
}

void RouterListDialog::Export(const RouterRecord& record, const QString& file,
                              const std::optional<QString>& author) {
  std::optional<ExportSignature> signature;
  if (author) {
    signature = ExportSignature{.author = *author, .key = OwnAuthorKey(KeyFile())};
    if (!signature->key.IsValid()) {
      prompts_.Tell(this, Text(message::kCannotSign));
      return;
    }
  }
  if (!ExportRouter(record, file, signature)) {
    prompts_.Tell(this, Text(message::kCannotExport).arg(file));
  }
}

}  // namespace quayline
