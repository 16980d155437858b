// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/port_list_panel.h"

#include <QAction>
#include <QDialog>
#include <QMimeData>
#include <QUrl>

#include <algorithm>
#include <chrono>

#include "core/entry_advice.h"
#include "ui/main/main_messages.h"
#include "ui/toolkit/theme.h"
#include "ui_port_list_panel.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

// The one saved list that is dragged; empty for anything else.
QString DraggedList(const QMimeData& data) {
  const QList<QUrl> urls = data.urls();
  const QString file = urls.size() == 1 ? urls.first().toLocalFile() : QString();
  return file.endsWith(QLatin1String(".qyl"), Qt::CaseInsensitive) ? file : QString();
}

// What is known of an entry, and what to do next.
QString ToolTip(const EntryLook& look, const Translator& texts) {
  const QString known = LookToolTip(look, texts);
  const Message* advice = AdviceText(look);
  return advice ? known + QLatin1Char('\n') + texts.Text(*advice) : known;
}

}  // namespace

PortListPanel::PortListPanel(AppContext& context, Prompts& prompts, WindowFactory& windows,
                             QWidget* parent)
    : QWidget(parent),
      context_(context),
      windows_(windows),
      ui_(std::make_unique<Ui::PortListPanel>()),
      commands_(context, prompts, this) {
  ui_->setupUi(this);
  ui_->add_button->setIcon(ThemeIcon(QStringLiteral("add")));
  ui_->remove_button->setIcon(ThemeIcon(QStringLiteral("remove")));
  ui_->open_button->setIcon(ThemeIcon(QStringLiteral("open")));
  ui_->save_button->setIcon(ThemeIcon(QStringLiteral("save")));
  ConnectList();
  ConnectButtons();
}

PortListPanel::~PortListPanel() = default;

void PortListPanel::ConnectList() {
  const Translator& texts = context_.translator;
  SetHeaders();
  context_.port_list.SetLookTexts(
      {.cell = [&texts](const EntryLook& look) { return LookText(look, texts); },
       .tool_tip = [&texts](const EntryLook& look) { return ToolTip(look, texts); }});
  HintedList* list = ui_->port_list_view;
  list->setModel(&context_.port_list);
  list->SetEmptyHint(texts.Text(message::kEmptyList), texts.Text(message::kEmptyListHint));
  columns_ = std::make_unique<ListColumns>(*list, context_.settings);
  list->SizeColumns();
  connect(list, &QWidget::customContextMenuRequested, this, [this, list](const QPoint& position) {
    Q_EMIT menuWanted(list->viewport()->mapToGlobal(position));
  });
  connect(list, &QTreeView::doubleClicked, this, &PortListPanel::EditEntry);
  totals_timer_.setSingleShot(true);
  totals_timer_.setInterval(100ms);
  connect(&totals_timer_, &QTimer::timeout, this, [this] {
    totals_ = ComputeTotals(context_.port_list.Entries());
    Q_EMIT totalsChanged();
  });
  connect(&context_.port_list, &QAbstractItemModel::dataChanged, list, &HintedList::SizeColumns);
  connect(&commands_, &ListCommands::listWritten, this, [this] {
    ui_->port_list_view->SizeColumns();
    KeepRowSelected();
    totals_timer_.start();
    Q_EMIT rowsChanged();
  });
  KeepRowSelected();
}

void PortListPanel::SetHeaders() {
  const Translator& texts = context_.translator;
  context_.port_list.SetHeaders(
      {texts.Text(message::kHeaderAppName), texts.Text(message::kHeaderForwardedTo),
       texts.Text(message::kHeaderStartPort), texts.Text(message::kHeaderEndPort),
       QStringLiteral("TCP/UDP"), texts.Text(message::kHeaderOnRouter),
       texts.Text(message::kHeaderDescription)});
}

void PortListPanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    SetHeaders();
    ShowMaxEntries();
    ui_->port_list_view->SizeColumns();
  }
}

void PortListPanel::ConnectButtons() {
  connect(ui_->add_button, &QPushButton::clicked, this, &PortListPanel::AddEntries);
  connect(ui_->remove_button, &QPushButton::clicked, this, &PortListPanel::RemoveSelected);
  connect(ui_->open_button, &QPushButton::clicked, &commands_, &ListCommands::Open);
  connect(ui_->save_button, &QPushButton::clicked, &commands_, &ListCommands::SaveAs);
}

void PortListPanel::AddListAction(QAction* action, const QList<QKeySequence>& keys) {
  action->setShortcuts(keys);
  action->setShortcutContext(Qt::WidgetShortcut);
  ui_->port_list_view->addAction(action);
}

void PortListPanel::ShowMaxEntries() {
  const QString& entries = context_.session.max_entries;
  ui_->max_entries_label->setText(QStringLiteral("%1 (%2)").arg(
      context_.translator.Text(message::kMaxEntries),
      entries.isEmpty() ? context_.translator.Text(message::kNoMaxEntries) : entries));
}

void PortListPanel::SelectRow(int row) {
  ui_->port_list_view->setCurrentIndex(context_.port_list.index(row, 0));
}

void PortListPanel::FocusList() { ui_->port_list_view->setFocus(); }

void PortListPanel::Flush() {
  totals_timer_.stop();
  columns_->Flush();
}

void PortListPanel::AddEntries() {
  windows_.AddEntry(window(), [this] { commands_.Keep(); })->open();
}

void PortListPanel::EditEntry() {
  const int row = ui_->port_list_view->currentIndex().row();
  if (row >= 0) {
    windows_.EditEntry(window(), row, [this] { commands_.Keep(); })->open();
  }
}

void PortListPanel::RemoveSelected() { commands_.Remove(SelectedRows()); }

bool PortListPanel::CanTakeDrop(const QMimeData& data) const {
  return ui_->list_card->isEnabled() && !DraggedList(data).isEmpty();
}

void PortListPanel::TakeDrop(const QMimeData& data) { commands_.OfferFile(DraggedList(data)); }

// There is always a row that Remove means, as long as there is one at all.
void PortListPanel::KeepRowSelected() {
  const int rows = context_.port_list.rowCount();
  if (rows > 0 && !ui_->port_list_view->selectionModel()->hasSelection()) {
    SelectRow(std::clamp(ui_->port_list_view->currentIndex().row(), 0, rows - 1));
  }
  ui_->remove_button->setEnabled(rows > 0);
}

QList<int> PortListPanel::SelectedRows() const {
  QList<int> rows;
  for (const QModelIndex& index : ui_->port_list_view->selectionModel()->selectedRows()) {
    rows.append(index.row());
  }
  std::ranges::sort(rows);
  return rows.isEmpty() ? QList{ui_->port_list_view->currentIndex().row()} : rows;
}

}  // namespace quayline
