// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/main_frame.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QScrollBar>
#include <QTimer>

#include <chrono>

#include "async/wait.h"
#include "ui/main/main_messages.h"
#include "ui/toolkit/settle_focus.h"

namespace quayline {

namespace {

constexpr QSize kUsualSize(960, 720);

}  // namespace

MainFrame::MainFrame(AppContext& context, Prompts& prompts, WindowFactory& windows)
    : SkinFrame(TitleButtons::kMinimiseAndClose, nullptr),
      context_(context),
      prompts_(prompts),
      area_(new QScrollArea(this)),
      main_(new MainWindow(context, prompts, windows, this)),
      stop_question_(context.job_flags, prompts, *this) {
  setObjectName(QStringLiteral("MainFrame"));
  // On a small screen, or at a large scale, "Update Router" would be beyond the window's edge.
  area_->setFrameShape(QFrame::NoFrame);
  area_->setWidgetResizable(true);
  area_->setWidget(main_);
  // The frame's rounded surface is seen through both.
  main_->setAutoFillBackground(false);
  area_->viewport()->setAutoFillBackground(false);
  SetContent(area_);
  setWindowTitle(QStringLiteral("Quayline"));
  setMinimumSize(480, 360);
  connect(main_, &MainWindow::exitRequested, this, &QWidget::close);
  qApp->installEventFilter(this);
}

void MainFrame::Load() {
  const auto loaded = main_->Load();
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  ResizeSurface(StoredSize()
                    .value_or(kUsualSize.expandedTo(SurfaceAround(main_->sizeHint())))
                    .boundedTo(screen.size()));
  MoveSurface(screen.center() - QRect(QPoint(0, 0), Surface().size()).center());
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
  SkinFrame::resizeEvent(event);
  const int frame = SurfaceAround({0, 0}).width() + area_->verticalScrollBar()->sizeHint().width();
  main_->UseWidth(Surface().width() - frame);
}

void MainFrame::showEvent(QShowEvent* event) {
  SkinFrame::showEvent(event);
  constexpr auto kFrameWait = std::chrono::milliseconds(200);
  QTimer::singleShot(kFrameWait, this, &MainFrame::FitScreen);
}

// A window system may show the window elsewhere, or on a smaller screen.
void MainFrame::FitScreen() {
  const QRect room = screen()->availableGeometry();
  ResizeSurface(Surface().size().boundedTo(room.size()));
  const QRect place = Surface();
  const QPoint most(room.right() - place.width() + 1, room.bottom() - place.height() + 1);
  MoveSurface({std::max(room.left(), std::min(place.left(), most.x())),
               std::max(room.top(), std::min(place.top(), most.y()))});
}

void MainFrame::CloseWithoutAsking() {
  may_stop_job_ = true;
  if (!ending_.IsRunning()) {
    close();
  }
}

// The desktop ends the session. Qt would end the program at once, and with it a save that is on its
// way to the router.
bool MainFrame::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::Quit && !has_ended_) {
    CloseWithoutAsking();
    return true;
  }
  return SkinFrame::eventFilter(watched, event);
}

void MainFrame::AskToClose() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  stop_question_.Ask(context_.translator.Text(message::kCloseProgramTitle),
                     context_.translator.Text(message::kCloseProgramQuestion),
                     [this] { CloseWithoutAsking(); });
}

void MainFrame::closeEvent(QCloseEvent* event) {
  SettleFocus(this);
  if (context_.job_flags.IsRunning() && !may_stop_job_) {
    event->ignore();
    AskToClose();
    return;
  }
  if (!failed_ && !isMaximized()) {
    context_.settings.SetValue(
        setting::kWindowSize,
        QStringLiteral("%1,%2").arg(Surface().width()).arg(Surface().height()));
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
  has_ended_ = true;
  Q_EMIT closed();
}

}  // namespace quayline
