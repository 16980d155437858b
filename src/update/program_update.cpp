// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/program_update.h"

#include <QDir>
#include <QLoggingCategory>

#include <utility>

#include "transport/curl_transfer.h"
#include "update/update_error.h"
#include "update/version.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_update, "quayline.update")

constexpr qint32 kMaxInstallerBytes = 1 << 30;
constexpr qint32 kChunk = 64 << 10;

constexpr Message kWrongInstaller{
    "The file from the server is not the one that Quayline's makers published. It was removed."};

}  // namespace

ProgramUpdate::ProgramUpdate(AppContext& context, QString local_version)
    : context_(context),
      local_version_(std::move(local_version)),
      download_(std::make_unique<CurlTransfer>()) {
  download_.options.CHUNK = kChunk;
  connect(&download_, &Download::DLComplete, this, [this] { is_complete_ = true; });
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

// True when the whole file is there. What is left of it otherwise is removed.
Task<bool> ProgramUpdate::Fetch(QUrl address, QString file, qint32 max_bytes) {
  is_complete_ = false;
  download_.options.URL = address.toString(QUrl::FullyEncoded);
  download_.options.SaveLocation = file;
  download_.options.max_bytes = max_bytes;
  co_await download_.GetFileInformation();
  if (download_.FileSize() < 1) {
    ReportFailure();
    co_return false;
  }
  Q_EMIT sizeKnown(download_.FileSize());
  co_await download_.DownLoad();
  if (!is_complete_) {
    QFile::remove(file);
    ReportFailure();
  }
  co_return is_complete_;
}

void ProgramUpdate::ReportFailure() {
  if (const Message* why = TextOf(download_)) {
    Q_EMIT failed(*why);
  }
}

Task<> ProgramUpdate::Check() {
  const QString file = context_.FileInFolder("update.ini");
  const bool is_fetched =
      co_await Fetch(FindUpdateSite(context_).Manifest(), file, kMaxManifestBytes);
  if (!is_fetched) {
    co_return;
  }
  if (!TakeManifest(file)) {
    QFile::remove(file);
    co_return;
  }
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

bool ProgramUpdate::TakeManifest(const QString& file) {
  QFile opened(file);
  if (!opened.open(QIODevice::ReadOnly)) {
    return false;
  }
  const auto manifest =
      ReadManifest(opened.read(kMaxManifestBytes + 1),
                   {.key = FindUpdateSite(context_).key,
                    .least_serial = context_.settings.Value(setting::kUpdateSerial).toLongLong(),
                    .today = QDate::currentDate()});
  if (!manifest) {
    Q_EMIT failed(TextOf(manifest.error()));
    return false;
  }
  manifest_ = *manifest;
  NoteManifest(context_, manifest_);
  return true;
}

Task<> ProgramUpdate::FetchFile() {
  const QString file = QDir::temp().filePath(QStringLiteral("update%1.exe").arg(manifest_.current));
  const bool is_fetched = co_await Fetch(QUrl(manifest_.download), file, kMaxInstallerBytes);
  if (!is_fetched) {
    co_return;
  }
  if (!HasDigest(file, manifest_.download_digest)) {
    QFile::remove(file);
    Q_EMIT failed(kWrongInstaller);
    co_return;
  }
  outcome_ = [this, file] { Q_EMIT installerReady(file); };
}

}  // namespace quayline
