// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/getting_started_window.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QScreen>

#include "ui/main/main_messages.h"
#include "ui/toolkit/theme.h"
#include "ui_getting_started_window.h"

namespace quayline {

namespace {

struct StepRow {
  QLabel* tick;
  QLabel* text;
  QPushButton* button;
  QAction* action;
};

QList<StepRow> RowsOf(const Ui::GettingStartedWindow& ui, const GuideActions& actions) {
  return {{ui.update_list_tick, ui.update_list_label, ui.update_list_button, actions.update_list},
          {ui.router_tick, ui.router_label, ui.router_button, actions.choose_router},
          {ui.static_ip_tick, ui.static_ip_label, ui.static_ip_button, actions.static_ip},
          {ui.ports_tick, ui.ports_label, ui.ports_button, actions.choose_ports},
          {ui.update_tick, ui.update_label, ui.update_button, actions.update_router},
          {ui.firewall_tick, ui.firewall_label, ui.firewall_button, actions.firewall},
          {ui.test_tick, ui.test_label, ui.test_button, actions.test_ports}};
}

}  // namespace

GettingStartedWindow::GettingStartedWindow(const GuideActions& actions, Settings& settings,
                                           const Translator& translator, QWidget* parent)
    : SkinFrame(TitleButtons::kClose, parent),
      settings_(settings),
      translator_(translator),
      ui_(std::make_unique<Ui::GettingStartedWindow>()) {
  setObjectName(QStringLiteral("GettingStartedWindow"));
  setAttribute(Qt::WA_DeleteOnClose);
  auto* content = new QWidget(this);
  ui_->setupUi(content);
  SetContent(content);
  setWindowTitle(content->windowTitle());
  setProperty("helpPage", QStringLiteral("first-update"));
  ConnectSteps(actions);
  ConnectLinks();
  NameButtons();
  ShowSecondRouter(false);
  ShowPractice({});
  ui_->hide_check->setChecked(settings.Boolean(setting::kShowGettingStarted));
  connect(ui_->hide_check, &QCheckBox::clicked, this, [this](bool checked) {
    settings_.SetValue(setting::kShowGettingStarted, QString::number(checked ? 1 : 0));
  });
  connect(ui_->close_button, &QPushButton::clicked, this, &QWidget::close);
  ui_->practice_button->setFocus();
}

GettingStartedWindow::~GettingStartedWindow() = default;

void GettingStartedWindow::ConnectSteps(const GuideActions& actions) {
  for (const StepRow& row : RowsOf(*ui_, actions)) {
    if (row.action == nullptr || !row.action->isVisible()) {
      row.tick->hide();
      row.text->hide();
      row.button->hide();
      continue;
    }
    connect(row.button, &QPushButton::clicked, this, [this, row] {
      row.tick->setPixmap(ThemeIcon(QStringLiteral("tick"), QPalette::WindowText)
                              .pixmap(QSize(20, 20), devicePixelRatioF()));
      row.tick->setAccessibleName(translator_.Text(message::kStepBegun));
      // Another step may still be open: it is ended first.
      if (QWidget* open = QApplication::activeModalWidget()) {
        open->raise();
        open->activateWindow();
        return;
      }
      row.action->trigger();
    });
  }
}

void GettingStartedWindow::ConnectLinks() {
  connect(ui_->practice_button, &QPushButton::clicked, this, &GettingStartedWindow::practiceWanted);
  connect(ui_->own_router_button, &QPushButton::clicked, this,
          &GettingStartedWindow::ownRouterWanted);
  connect(ui_->test_failed_link, &LinkLabel::clicked, this,
          [this] { Q_EMIT helpWanted(QStringLiteral("closed-port")); });
  connect(ui_->second_router_link, &LinkLabel::clicked, this,
          [this] { Q_EMIT helpWanted(QStringLiteral("double-routers")); });
  connect(ui_->help_link, &LinkLabel::clicked, this,
          [this] { Q_EMIT helpWanted(QStringLiteral("index")); });
  connect(ui_->forums_link, &LinkLabel::clicked, this, &GettingStartedWindow::forumsWanted);
}

// All buttons of the steps have the same caption: a screen reader reads the step.
void GettingStartedWindow::NameButtons() {
  for (const StepRow& row : RowsOf(*ui_, {})) {
    row.button->setAccessibleName(row.text->text()
                                      .replace(QStringLiteral("&&"), QStringLiteral("+"))
                                      .remove(QLatin1Char('&')));
  }
}

void GettingStartedWindow::ShowBeside(const SkinFrame& main) {
  PlaceBeside(main);
  show();
  PlaceBeside(main);  // its texts have their lines, and with them their height, now
}

void GettingStartedWindow::PlaceBeside(const SkinFrame& main) {
  constexpr int kUsualWidth = 420;
  const QRect room = main.screen()->availableGeometry();
  const QSize least = minimumSizeHint().shrunkBy(contentsMargins());
  ResizeSurface(least.expandedTo(QSize(kUsualWidth, 0)).boundedTo(room.size()));
  MoveSurface({std::max(room.left(), room.right() + 1 - Surface().width()),
               std::max(room.top(), main.Surface().top())});
}

void GettingStartedWindow::ShowSecondRouter(bool found) {
  ui_->second_router_label->setVisible(found);
  ui_->second_router_link->setVisible(found);
}

void GettingStartedWindow::ShowForums(bool exists) { ui_->forums_link->setVisible(exists); }

void GettingStartedWindow::ShowPractice(const QString& address) {
  practice_address_ = address;
  const bool runs = !address.isEmpty();
  ui_->practice_button->setVisible(!runs);
  ui_->own_router_button->setVisible(runs);
  ui_->practice_label->setText(runs ? translator_.Text(message::kPracticeRuns).arg(address)
                                    : translator_.Text(message::kPracticeOffer));
}

void GettingStartedWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    SkinFrame::keyPressEvent(event);
  }
}

void GettingStartedWindow::changeEvent(QEvent* event) {
  SkinFrame::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    NameButtons();
    ShowPractice(practice_address_);
  }
}

}  // namespace quayline
