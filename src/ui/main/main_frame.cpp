// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/main_frame.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>

#include "async/wait.h"
#include "ui/toolkit/settle_focus.h"

namespace quayline {

MainFrame::MainFrame(AppContext& context, Prompts& prompts, WindowFactory& windows)
    : context_(context),
      prompts_(prompts),
      area_(new QScrollArea(this)),
      main_(new MainWindow(context, prompts, windows, this)) {
  setObjectName(QStringLiteral("MainFrame"));
  setWindowTitle(QStringLiteral("Quayline"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  // On a small screen, or at a large scale, "Update Router" would be beyond the window's edge.
  area_->setFrameShape(QFrame::NoFrame);
  area_->setWidgetResizable(true);
  area_->setWidget(main_);
  layout->addWidget(area_);
  setMinimumSize(480, 360);
  connect(main_, &MainWindow::exitRequested, this, &QWidget::close);
}

void MainFrame::Load() {
  const auto loaded = main_->Load();
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  resize(StoredSize()
             .value_or(main_->sizeHint().expandedTo(QSize(960, 720)))
             .boundedTo(screen.size()));
  move(screen.center() - rect().center());
  if (!loaded) {
    failed_ = true;
    Q_EMIT startFailed();
    prompts_.Tell(this, loaded.error(), [this] { close(); });
  }
}

std::optional<QSize> MainFrame::StoredSize() const {
  const QStringList sides = context_.settings.Value(setting::kWindowSize).split(QLatin1Char(','));
  const QSize stored(sides.value(0).toInt(), sides.value(1).toInt());
  return stored.isEmpty() ? std::nullopt : std::optional(stored);
}

void MainFrame::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  main_->UseWidth(width() - area_->verticalScrollBar()->sizeHint().width());
}

void MainFrame::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  constexpr auto kFrameWait = std::chrono::milliseconds(200);
  QTimer::singleShot(kFrameWait, this, &MainFrame::FitScreen);
}

// The system's frame, which has to be on the screen as well, is known some time after the window is
// shown.
void MainFrame::FitScreen() {
  const QRect room = screen()->availableGeometry();
  const QSize frame = frameGeometry().size() - size();
  resize(size().boundedTo(room.size() - frame));
  const QRect place = frameGeometry();
  const QPoint most(room.right() - place.width() + 1, room.bottom() - place.height() + 1);
  move(std::max(room.left(), std::min(place.left(), most.x())),
       std::max(room.top(), std::min(place.top(), most.y())));
}

void MainFrame::closeEvent(QCloseEvent* event) {
  SettleFocus(this);
  if (!failed_ && !isMaximized()) {
    context_.settings.SetValue(setting::kWindowSize,
                               QStringLiteral("%1,%2").arg(width()).arg(height()));
  }
  hide();
  Q_EMIT leaving();
  // Boxes and other windows are closed as well, and end what they run.
  const QWidgetList windows = QApplication::topLevelWidgets();
  for (QWidget* window : windows) {
    if (window != this) {
      window->close();
    }
  }
  event->accept();
  ending_.Start(End());
}

Task<> MainFrame::End() {
  JobFlags& flags = context_.job_flags;
  co_await Until([&flags] { return flags.LeavingRuns() == 0; }).WokenBy(&flags, &JobFlags::changed);
  main_->Unload();
  Q_EMIT closed();
}

}  // namespace quayline
