// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/database_update.h"

#include <QLoggingCategory>

#include "core/package_stream.h"
#include "transport/curl_transfer.h"
#include "update/database_package.h"
#include "update/update_error.h"
#include "update/update_site.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_update, "quayline.update")

constexpr qint32 kChunk = 64 << 10;
constexpr Message kNoManifest{
    "The description of updates cannot be fetched from the server, so nothing was updated."};
constexpr Message kWrongPackage{
    "The file from the server is not the one that Quayline's makers published. Your databases stay "
    "as they are."};

}  // namespace

DatabaseUpdate::DatabaseUpdate(AppContext& context)
    : context_(context), download_(std::make_unique<CurlTransfer>()) {
  download_.options.CHUNK = kChunk;
  download_.options.max_bytes = kMaxPackageBytes;
  QFile::remove(Package());  // left by a program that was ended
  connect(&download_, &Download::DLComplete, this, [this] { is_complete_ = true; });
}

DatabaseUpdate::~DatabaseUpdate() {
  flow_.Cancel();
  if (is_closed_) {
    QFile::remove(Package());
    Open();
  }
}

// After a failure the tables are empty until the next start, which says why.
void DatabaseUpdate::Open() {
  is_closed_ = false;
  const auto opened = context_.databases.Open(context_.program_folder, context_.shipped_folder);
  if (!opened) {
    qCWarning(log_update).noquote() << opened.error().description;
  }
}

void DatabaseUpdate::Fail(const QString& why) {
  QFile::remove(Package());
  if (is_closed_) {
    Open();
  }
  Q_EMIT failed(why);
}

Task<> DatabaseUpdate::Run() {
  const bool may_go_on = co_await ReadDigest();
  if (!may_go_on) {
    co_return;
  }
  context_.databases.Close();
  is_closed_ = true;
  const bool is_fetched = co_await Fetch();
  if (!is_fetched) {
    const Message* why = TextOf(download_);
    Fail(why != nullptr ? Text(*why) : QString());
    co_return;
  }
  if (!HasDigest(Package(), digest_)) {
    Fail(Text(kWrongPackage));
    co_return;
  }
  Q_EMIT installing();
  const auto changes = co_await InstallPackage(
      Package(), {.users = context_.program_folder, .shipped = context_.shipped_folder});
  if (!changes) {
    Fail(changes.error());
    co_return;
  }
  QFile::remove(Package());
  Open();
  Q_EMIT installed(*changes);
}

// With a known key, only a package that a signed manifest names is installed.
Task<bool> DatabaseUpdate::ReadDigest() {
  const UpdateSite site = FindUpdateSite(context_);
  if (site.key.isEmpty()) {
    co_return true;
  }
  if (!IsSafeToFetch(site.Manifest())) {
    Fail(Text(kNoManifest));
    co_return false;
  }
  const auto bytes =
      co_await context_.http_fetch.Get(site.Manifest(), {.max_bytes = kMaxManifestBytes});
  if (!bytes) {
    Fail(Text(kNoManifest));
    co_return false;
  }
  const auto manifest = ReadManifest(
      *bytes, {.key = site.key,
               .least_serial = context_.settings.Value(setting::kUpdateSerial).toLongLong(),
               .today = QDate::currentDate()});
  if (!manifest) {
    Fail(Text(TextOf(manifest.error())));
    co_return false;
  }
  NoteManifest(context_, *manifest);
  digest_ = manifest->databases_digest;
  co_return true;
}

Task<bool> DatabaseUpdate::Fetch() {
  download_.options.URL = FindUpdateSite(context_).Databases().toString(QUrl::FullyEncoded);
  download_.options.SaveLocation = Package();
  co_await download_.GetFileInformation();
  if (download_.FileSize() < 1) {
    co_return false;
  }
  Q_EMIT sizeKnown(download_.FileSize());
  co_await download_.DownLoad();
  co_return is_complete_;
}

}  // namespace quayline
