// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/program_update.h"

#include <QDir>
#include <QLoggingCategory>
#include <QScopeGuard>

#include <utility>

#include "async/worker.h"
#include "update/version.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_update, "quayline.update")

constexpr qint32 kMaxInstallerBytes = 1 << 30;

constexpr Message kWrongInstaller{
    "The file from the server is not the one that Quayline's makers published. It was removed."};

}  // namespace

ProgramUpdate::ProgramUpdate(AppContext& context, QString local_version)
    : context_(context), local_version_(std::move(local_version)), files_(context) {
  connect(&files_, &SiteDownload::sizeKnown, this, &ProgramUpdate::sizeKnown);
  connect(&flow_, &Flow::ended, this, [this] {
    Q_EMIT idle();
    if (const auto outcome = std::exchange(outcome_, nullptr)) {
      outcome();
    }
  });
}

void ProgramUpdate::CheckForUpdate() {
  if (!IsRunning()) {
    flow_.Start(Check());
  }
}

void ProgramUpdate::FetchInstaller() {
  if (!IsRunning()) {
    flow_.Start(FetchFile());
  }
}

void ProgramUpdate::Report(const std::optional<Message>& failure) {
  if (failure) {
    Q_EMIT failed(*failure);
  }
}

Task<> ProgramUpdate::Check() {
  const auto manifest = co_await files_.FetchManifest(context_.FileInFolder("update.ini"));
  if (!manifest) {
    Report(manifest.error());
    co_return;
  }
  manifest_ = *manifest;
  Q_EMIT versionFound();
  const auto is_up_to_date = IsUpToDate(manifest_.current, local_version_);
  if (!is_up_to_date) {
    qCWarning(log_update) << "the server's version cannot be compared";
  } else if (*is_up_to_date) {
    outcome_ = [this] { Q_EMIT upToDate(); };
  } else {
    outcome_ = [this] { Q_EMIT newVersion(); };
  }
}

Task<> ProgramUpdate::FetchFile() {
  const QString file = QDir::temp().filePath(QStringLiteral("update%1.exe").arg(manifest_.current));
  const bool is_fetched = co_await files_.Fetch(QUrl(manifest_.download), file, kMaxInstallerBytes);
  if (!is_fetched) {
    Report(files_.Failure());
    co_return;
  }
  auto unchecked = qScopeGuard([file] { QFile::remove(file); });
  const bool is_right = co_await RunInThread<bool>(
      [file, digest = manifest_.download_digest] { return HasDigest(file, digest); });
  if (!is_right) {
    Q_EMIT failed(kWrongInstaller);
    co_return;
  }
  unchecked.dismiss();
  outcome_ = [this, file] { Q_EMIT installerReady(file); };
}

}  // namespace quayline
