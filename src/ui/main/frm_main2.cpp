// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/frm_main2.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

#include "async/wait.h"

namespace quayline {

FrmMain2::FrmMain2(AppContext& context, Prompts& prompts, WindowFactory windows)
    : context_(context),
      prompts_(prompts),
      main_(new FrmMain(context, prompts, std::move(windows), this)) {
  setObjectName(QStringLiteral("FrmMain2"));
  setWindowTitle(QStringLiteral("Quayline"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  // On a small screen, or at a large scale, "Update Router" would be beyond the window's edge.
  auto* area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setWidget(main_);
  layout->addWidget(area);
  setMinimumSize(480, 360);
  connect(main_, &FrmMain::exitRequested, this, &QWidget::close);
}

void FrmMain2::Load() {
  const auto loaded = main_->Load();
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  resize(main_->sizeHint().expandedTo(QSize(960, 720)).boundedTo(screen.size()));
  move(screen.center() - rect().center());
  if (!loaded) {
    failed_ = true;
    Q_EMIT startFailed();
    prompts_.Tell(this, loaded.error(), [this] { close(); });
  }
}

void FrmMain2::closeEvent(QCloseEvent* event) {
  hide();
  Q_EMIT leaving();
  // Boxes and other windows go as well; each lets go of what it runs.
  const QWidgetList windows = QApplication::topLevelWidgets();
  for (QWidget* window : windows) {
    if (window != this) {
      window->close();
    }
  }
  event->accept();
  ending_.Start(End());
}

Task<> FrmMain2::End() {
  JobFlags& flags = context_.job_flags;
  co_await Until([&flags] { return flags.LeavingRuns() == 0; }).WokenBy(&flags, &JobFlags::changed);
  main_->Unload();
  Q_EMIT closed();
}

}  // namespace quayline
