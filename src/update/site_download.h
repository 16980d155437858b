// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <expected>
#include <optional>

#include "core/app_context.h"
#include "i18n/message.h"
#include "transport/download.h"
#include "update/manifest.h"

namespace quayline {

// Fetches files for an update, one at a time, with a Download that the windows show and cancel.
class SiteDownload final : public QObject {
  Q_OBJECT

 public:
  // The context outlives it.
  explicit SiteDownload(AppContext& context);

  Download& Transfer() { return download_; }

  // True when the whole file is there. What is left of it otherwise is removed.
  Task<bool> Fetch(QUrl address, QString file, qint32 max_bytes);
  // Why Fetch() has failed. Nothing where the code of the download says everything.
  std::optional<Message> Failure() const;

  // The manifest of the update site, checked and noted. It stays in `file`. The error is as that of
  // Failure().
  Task<std::expected<Manifest, std::optional<Message>>> FetchManifest(QString file);

 Q_SIGNALS:
  void sizeKnown(qint32 bytes);

 private:
  std::expected<Manifest, std::optional<Message>> TakeManifest(const QString& file);

  AppContext& context_;
  Download download_;
  bool is_complete_ = false;
  bool is_cancelled_ = false;
};

}  // namespace quayline
