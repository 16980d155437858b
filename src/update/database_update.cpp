// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/database_update.h"

#include <QLoggingCategory>

#include "async/worker.h"
#include "core/package_stream.h"
#include "update/database_package.h"
#include "update/update_site.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_update, "quayline.update")

constexpr Message kWrongPackage{
    "The file from the server is not the one that Quayline's makers published. Your databases stay "
    "as they are."};

}  // namespace

DatabaseUpdate::DatabaseUpdate(AppContext& context) : context_(context), files_(context) {
  QFile::remove(Package());  // left by a program that was ended
  connect(&files_, &SiteDownload::sizeKnown, this, &DatabaseUpdate::sizeKnown);
}

DatabaseUpdate::~DatabaseUpdate() {
  flow_.Cancel();
  QFile::remove(Package());
  if (is_closed_) {
    Open();
  }
}

// After a failure the tables are empty until the next start, which says why.
void DatabaseUpdate::Open() {
  is_closed_ = false;
  const auto opened = context_.databases.Open(context_.program_folder, context_.shipped_folder);
  if (!opened) {
    qCWarning(log_update).noquote() << EnglishOf(opened.error().description);
  }
}

void DatabaseUpdate::Fail(const std::optional<Message>& why) { Fail(why ? Text(*why) : QString()); }

void DatabaseUpdate::Fail(const QString& why) {
  QFile::remove(Package());
  if (is_closed_) {
    Open();
  }
  Q_EMIT failed(why);
}

Task<> DatabaseUpdate::Run() {
  const auto digest = co_await FetchDigest();
  if (!digest) {
    co_return;
  }
  context_.databases.Close();
  is_closed_ = true;
  const bool is_fetched =
      co_await files_.Fetch(FindUpdateSite(context_).Databases(), Package(), kMaxPackageBytes);
  if (!is_fetched) {
    Fail(files_.Failure());
    co_return;
  }
  Q_EMIT installing();
  const bool is_right = co_await RunInThread<bool>(
      [package = Package(), digest = *digest] { return HasDigest(package, digest); });
  if (!is_right) {
    Fail(kWrongPackage);
    co_return;
  }
  const auto changes = co_await InstallPackage(
      Package(), {.users = context_.program_folder, .shipped = context_.shipped_folder});
  if (!changes) {
    Fail(TextOf(changes.error(), context_.translator));
    co_return;
  }
  QFile::remove(Package());
  Open();
  Q_EMIT installed(*changes);
}

// With a known key, only a package that a signed manifest names is installed. Without one any
// package is, and the digest is empty. The package then takes the place of the manifest.
Task<std::optional<QByteArray>> DatabaseUpdate::FetchDigest() {
  if (FindUpdateSite(context_).key.isEmpty()) {
    co_return QByteArray();
  }
  const auto manifest = co_await files_.FetchManifest(Package());
  if (!manifest) {
    Fail(manifest.error());
    co_return std::nullopt;
  }
  co_return manifest->databases_digest;
}

}  // namespace quayline
