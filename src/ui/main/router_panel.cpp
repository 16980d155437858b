// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/router_panel.h"

#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>

#include "core/router_address.h"
#include "core/router_tested.h"
#include "ui/main/main_messages.h"
#include "ui/toolkit/fields.h"
#include "ui/toolkit/tested_icon.h"
#include "ui/toolkit/theme.h"
#include "ui_router_panel.h"

namespace quayline {

RouterPanel::RouterPanel(RouterSession& session, RouterListModel& routers,
                         const Translator& translator, QWidget* parent)
    : QWidget(parent),
      session_(session),
      routers_(routers),
      translator_(translator),
      ui_(std::make_unique<Ui::RouterPanel>()) {
  ui_->setupUi(this);
  SetIcons();
  ConnectRouterBox();
  ConnectAddress();
  connect(ui_->router_list_button, &QToolButton::clicked, this, &RouterPanel::routerListWanted);
  connect(ui_->detect_router_button, &QToolButton::clicked, this, &RouterPanel::detectionWanted);
  connect(ui_->detect_ip_button, &QPushButton::clicked, this, &RouterPanel::adaptersWanted);
  connect(ui_->router_request_link, &LinkLabel::clicked, this, &RouterPanel::routerRequestWanted);
}

RouterPanel::~RouterPanel() = default;

void RouterPanel::SetIcons() {
  ui_->logo_label->setPixmap(ProgramLogo().pixmap(QSize(96, 96), devicePixelRatioF()));
  ui_->image_wait_label->setPixmap(ThemeIcon(QStringLiteral("wait"), QPalette::WindowText)
                                       .pixmap(QSize(32, 32), devicePixelRatioF()));
  ui_->router_image->SetEmptyText(translator_.Text(message::kNoPicture));
  ui_->router_list_button->setIcon(ThemeIcon(QStringLiteral("search")));
  ui_->detect_router_button->setIcon(ThemeIcon(QStringLiteral("detect")));
  ShowPicture(RouterPicture::kLogo, {});
}

void RouterPanel::ConnectRouterBox() {
  const QString placeholder = translator_.Text(message::kChooseRouter);
  routers_.Reset(placeholder);
  QComboBox* box = ui_->router_box;
  box->setModel(&routers_);
  box->lineEdit()->setPlaceholderText(placeholder);
  auto* completer = new QCompleter(&routers_, box);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  completer->setFilterMode(Qt::MatchContains);
  box->setCompleter(completer);
  IgnoreWheel(box);  // a turn over it would choose routers
  SelectAllOnClick(box->lineEdit());
  box->installEventFilter(this);
  connect(box, &QComboBox::activated, this, &RouterPanel::OnRowChosen);
  connect(box->lineEdit(), &QLineEdit::textEdited, this, &RouterPanel::OnNameTyped);
  connect(box->lineEdit(), &QLineEdit::editingFinished, this, &RouterPanel::OnNameLeft);
}

// While an address is typed its scheme is cut at once; its port and path when the field is left.
void RouterPanel::ConnectAddress() {
  connect(ui_->router_ip_edit, &QLineEdit::textEdited, this, [this](const QString& typed) {
    if (HasScheme(typed)) {
      SetAddress(session_, typed);
      ShowAddress();
    } else {
      session_.router_ip = typed;
    }
    Q_EMIT edited();
  });
  connect(ui_->router_ip_edit, &QLineEdit::editingFinished, this, [this] {
    if (const QString typed = session_.router_ip; ParseRouterAddress(typed).host != typed) {
      SetAddress(session_, typed);
      ShowAddress();
      Q_EMIT edited();
    }
  });
  connect(ui_->http_port_edit, &QLineEdit::textEdited, this, [this](const QString& text) {
    session_.http_port = text;
    Q_EMIT edited();
  });
  connect(ui_->http_port_edit, &QLineEdit::editingFinished, this, [this] {
    const QString trimmed = session_.http_port.trimmed();
    const QString port = trimmed.isEmpty() ? setting::kHttpPort.Standard() : trimmed;
    if (port != session_.http_port) {
      session_.http_port = port;
      ShowAddress();
      Q_EMIT edited();
    }
  });
  connect(ui_->http_type_box, &QComboBox::textActivated, this, [this](const QString& text) {
    session_.http_type = text;
    Q_EMIT edited();
  });
}

void RouterPanel::Show() {
  const QString name = session_.router_name;
  const int chosen = name == session_.chosen_router ? ChosenRow() : routers_.Find(name);
  const int row = IsAtPlaceholder() ? 0 : chosen;
  ui_->router_box->setCurrentIndex(row);
  if (row < 0) {
    ui_->router_box->setEditText(name);
  }
  ShowAddress();
  ShowTested();
}

// How much the user may expect of the scripts of the chosen router.
void RouterPanel::ShowTested() {
  const bool is_chosen = session_.router_id != 0 && !IsAtPlaceholder();
  ui_->tested_icon_label->setVisible(is_chosen);
  ui_->tested_label->setVisible(is_chosen);
  constexpr QSize kMark(20, 20);
  ui_->tested_icon_label->setPixmap(TestedIcon(session_.tested).pixmap(kMark, devicePixelRatioF()));
  ui_->tested_label->setText(TestedText(session_.tested, session_.versions, translator_));
}

void RouterPanel::ShowAddress() {
  ui_->router_ip_edit->setText(session_.router_ip);
  ui_->http_port_edit->setText(session_.http_port);
  ui_->http_type_box->setCurrentText(session_.http_type);
}

void RouterPanel::ShowProgress(int loaded, int total) {
  ui_->progress_bar->setMaximum(std::max(1, total));
  ui_->progress_bar->setValue(loaded);
}

void RouterPanel::ShowRouterCount(int count) {
  router_count_ = count;
  ui_->loading_frame->hide();
  ui_->router_count_label->setText(QStringLiteral("%1 (%2)").arg(
      translator_.Text(message::kRoutersLoaded), QLocale(QLocale::English).toString(count)));
}

void RouterPanel::ShowPicture(RouterPicture state, const QImage& picture) {
  ui_->logo_label->setVisible(state == RouterPicture::kLogo);
  ui_->image_wait_label->setVisible(state == RouterPicture::kWaiting);
  ui_->router_image->setVisible(state == RouterPicture::kPicture);
  ui_->router_image->SetPicture(picture);
}

void RouterPanel::Choose(int row) {
  ui_->router_box->setCurrentIndex(row);
  OnRowChosen(row);
}

void RouterPanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::LanguageChange) {
    return;
  }
  const bool is_name = session_.router_name == routers_.Placeholder();
  routers_.SetPlaceholder(translator_.Text(message::kChooseRouter));
  if (is_name && !session_.router_name.isEmpty()) {
    session_.router_name = routers_.Placeholder();
  }
  if (router_count_) {
    ShowRouterCount(*router_count_);
    Show();
  }
}

bool RouterPanel::IsAtPlaceholder() const {
  return session_.router_name.isEmpty() || session_.router_name == routers_.Placeholder();
}

void RouterPanel::FocusRouter() {
  ui_->router_box->setFocus();
  ui_->router_box->lineEdit()->selectAll();
}

void RouterPanel::FocusAddress() {
  ui_->router_ip_edit->setFocus();
  ui_->router_ip_edit->selectAll();
}

void RouterPanel::OnNameTyped(const QString& name) {
  session_.router_name = name;
  session_.is_name_unknown = !name.isEmpty() && name != session_.chosen_router;
}

// The placeholder chooses nothing: what the router before it brought stays.
void RouterPanel::OnRowChosen(int row) {
  if (row <= 0) {
    session_.router_name = session_.router_id == 0 ? QString() : routers_.Placeholder();
    session_.is_name_unknown = false;
    ShowTested();
  }
  Q_EMIT routerChosen(row);
}

// A name that was typed as a whole chooses its router. Of routers whose names differ in case only,
// and of two with the same name, the chosen one stays.
void RouterPanel::OnNameLeft() {
  const int row = routers_.Find(session_.router_name);
  if (session_.is_name_unknown && row > 0) {
    Choose(row);
  }
}

// Keys that step through the routers begin at the chosen one, whatever is typed: while the text is
// not its name, they open the list instead.
bool RouterPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == ui_->router_box && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool is_step = key == Qt::Key_Down || key == Qt::Key_Up || key == Qt::Key_PageDown ||
                         key == Qt::Key_PageUp;
    if (is_step && session_.is_name_unknown) {
      ui_->router_box->showPopup();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace quayline
