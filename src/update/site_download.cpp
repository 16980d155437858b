// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/site_download.h"

#include <QScopeGuard>

#include "transport/curl_transfer.h"
#include "update/update_error.h"
#include "update/update_site.h"

namespace quayline {

namespace {

constexpr qint32 kChunk = 64 << 10;
constexpr Message kNoManifest{
    "The description of updates cannot be fetched from the server, so nothing was updated."};

}  // namespace

SiteDownload::SiteDownload(AppContext& context)
    : context_(context), download_(std::make_unique<CurlTransfer>()) {
  download_.options.CHUNK = kChunk;
  connect(&download_, &Download::DLComplete, this, [this] { is_complete_ = true; });
  connect(&download_, &Download::DLECode, this,
          [this](int code) { is_cancelled_ = code == static_cast<int>(DownloadCode::kCancelled); });
}

Task<bool> SiteDownload::Fetch(QUrl address, QString file, qint32 max_bytes) {
  is_complete_ = is_cancelled_ = false;
  download_.options.URL = address.toString(QUrl::FullyEncoded);
  download_.options.SaveLocation = file;
  download_.options.max_bytes = max_bytes;
  co_await download_.GetFileInformation();
  if (download_.FileSize() < 1) {
    co_return false;
  }
  Q_EMIT sizeKnown(download_.FileSize());
  auto rest = qScopeGuard([file] { QFile::remove(file); });  // also where the task is ended
  co_await download_.DownLoad();
  if (is_complete_) {
    rest.dismiss();
  }
  co_return is_complete_;
}

std::optional<Message> SiteDownload::Failure() const {
  const Message* why = TextOf(download_);
  return why != nullptr ? std::optional(*why) : std::nullopt;
}

Task<std::expected<Manifest, std::optional<Message>>> SiteDownload::FetchManifest(QString file) {
  const bool is_fetched =
      co_await Fetch(FindUpdateSite(context_).Manifest(), file, kMaxManifestBytes);
  if (!is_fetched) {
    const auto why = Failure();
    co_return std::unexpected(why || is_cancelled_ ? why : std::optional(kNoManifest));
  }
  auto manifest = TakeManifest(file);
  if (!manifest) {
    QFile::remove(file);
  }
  co_return manifest;
}

std::expected<Manifest, std::optional<Message>> SiteDownload::TakeManifest(const QString& file) {
  QFile opened(file);
  if (!opened.open(QIODevice::ReadOnly)) {
    return std::unexpected(std::optional(kNoManifest));
  }
  const QByteArray key = FindUpdateSite(context_).key;
  auto manifest = ReadManifest(
      opened.read(kMaxManifestBytes + 1),
      {.key = key, .least_serial = LeastSerial(context_), .today = QDate::currentDate()});
  if (!manifest) {
    return std::unexpected(std::optional(TextOf(manifest.error())));
  }
  NoteManifest(context_, *manifest);
  return std::move(*manifest);
}

}  // namespace quayline
