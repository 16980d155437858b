// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/updates/transfer_panel.h"

#include <QEvent>

#include "ui/updates/update_texts.h"
#include "ui_transfer_panel.h"

namespace quayline {

namespace {

// Null for a code that has no text.
const Message* TextOfCode(int code) {
  switch (static_cast<DownloadCode>(code)) {
    case DownloadCode::kFailed:
      return &message::kUnknownError;
    case DownloadCode::kNotFound:
      return &message::kFileMissing;
    case DownloadCode::kNoHeaders:
      return &message::kServerTimedOut;
    case DownloadCode::kCancelled:
      return &message::kDownloadCancelled;
    case DownloadCode::kNoConnection:
      return &message::kNoConnectionPresent;
    case DownloadCode::kNoFileToResume:
      return &message::kInternalError;
    case DownloadCode::kUnauthorized:
      return &message::kUnauthorized;
    case DownloadCode::kForbidden:
      return &message::kAccessDenied;
    case DownloadCode::kCannotResume:
      break;
  }
  return nullptr;
}

}  // namespace

TransferPanel::TransferPanel(QWidget* parent)
    : QWidget(parent), ui_(std::make_unique<Ui::TransferPanel>()) {
  ui_->setupUi(this);
  ui_->reason_label->hide();
}

TransferPanel::~TransferPanel() = default;

void TransferPanel::Follow(Download& download, const Translator& translator) {
  translator_ = &translator;
  ConnectNumbers(download);
  connect(&download, &Download::DLECode, this, &TransferPanel::ShowCode);
  connect(ui_->cancel_button, &QPushButton::clicked, &download, [this, &download] {
    ui_->pause_button->setChecked(false);
    download.Cancel();
  });
  connect(ui_->pause_button, &QPushButton::toggled, &download,
          [&download](bool checked) { download.Pause(checked); });
}

void TransferPanel::ConnectNumbers(const Download& download) {
  connect(&download, &Download::Percent, this, [this](qint32 percent) {
    Show(ui_->percent_label, message::kPercentComplete, QString::number(percent));
  });
  connect(&download, &Download::RecievedBytes, this, [this](qint32 total) {
    Show(ui_->bytes_label, message::kBytesRead, QString::number(total));
    ui_->progress_bar->setValue(total);
  });
  connect(&download, &Download::Rate, this,
          [this](const QString& rate) { Show(ui_->rate_label, message::kTransferRate, rate); });
  connect(&download, &Download::TimeLeft, this,
          [this](const QString& time) { Show(ui_->time_label, message::kTimeRemaining, time); });
  connect(&download, &Download::Status, this, [this](const QString& status) {
    if (is_under_way_) {  // the end of a pause is no news any more
      Show(ui_->status_label, message::kTransferStatus, status);
    }
  });
}

// A download knows no languages: its texts are found as captions are, by the English ones.
QString TransferPanel::StatusText(const QString& status) const {
  const QString opening = QString::fromUtf8(message::kOpeningFile.english);
  const QString begin = opening.section(QStringLiteral("%1"), 0, 0);
  const QString end = opening.section(QStringLiteral("%1"), 1);
  return status.startsWith(begin) && status.endsWith(end)
             ? translator_->Text(message::kOpeningFile)
                   .arg(status.sliced(begin.size()).chopped(end.size()))
             : translator_->Text(status);
}

QString TransferPanel::WithUnits(const QString& measured) const {
  QStringList words = measured.split(u' ');
  for (QString& word : words) {
    word = word.isEmpty() || word.at(0).isDigit() ? word : translator_->Text(word);
  }
  return words.join(u' ');
}

void TransferPanel::Show(QLabel* label, const Message& caption, const QString& value) {
  shown_.insert(label, {caption, value});
  ShowAgain(label);
}

void TransferPanel::ShowAgain(QLabel* label) {
  const Shown& shown = shown_[label];
  const bool is_measured = !shown.value.isEmpty() && shown.value.at(0).isDigit();
  const QString value = is_measured ? WithUnits(shown.value) : StatusText(shown.value);
  label->setText(translator_->Text(shown.caption) + QStringLiteral(" - ") + value);
}

void TransferPanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    for (QLabel* label : shown_.keys()) {
      ShowAgain(label);
    }
  }
}

void TransferPanel::Begin() {
  is_under_way_ = true;
  ui_->progress_bar->reset();
  ui_->progress_bar->setValue(0);
  ui_->error_label->setText(translator_->Text(message::kNoErrorYet));
  ShowReason({});
  ui_->cancel_button->setEnabled(true);
}

void TransferPanel::SetTotal(qint32 bytes) {
  ui_->progress_bar->setMaximum(bytes);
  ui_->progress_bar->setValue(0);
  Show(ui_->total_bytes_label, message::kTotalBytes, QString::number(bytes));
  ui_->pause_button->setEnabled(true);
}

void TransferPanel::End() {
  is_under_way_ = false;
  for (QPushButton* button : {ui_->pause_button, ui_->cancel_button}) {
    button->setChecked(false);
    button->setEnabled(false);
  }
}

void TransferPanel::SetBusy(bool busy) {
  ui_->progress_bar->setRange(0, busy ? 0 : 1);
  ui_->progress_bar->setValue(busy ? 0 : 1);
}

void TransferPanel::ShowCode(int code) {
  if (const Message* text = TextOfCode(code)) {
    ui_->error_label->setText(translator_->Text(*text));
  }
}

void TransferPanel::ShowReason(const QString& reason) {
  ui_->reason_label->setText(reason);
  ui_->reason_label->setVisible(!reason.isEmpty());
}

bool TransferPanel::MayClose() const {
  const QProgressBar& bar = *ui_->progress_bar;
  return bar.value() <= 0 || bar.value() == bar.maximum() ||
         ui_->error_label->text() != translator_->Text(message::kNoErrorYet);
}

}  // namespace quayline
