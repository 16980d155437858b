// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "async/flow.h"
#include "core/app_context.h"
#include "core/shipped_databases.h"
#include "update/site_download.h"

namespace quayline {

// Fetches the package of databases from the maker's server and installs it. The databases are
// closed meanwhile, and opened again on every path, also when this is destroyed.
class DatabaseUpdate final : public QObject {
  Q_OBJECT

 public:
  // The context outlives it.
  explicit DatabaseUpdate(AppContext& context);
  ~DatabaseUpdate() override;

  Download& Transfer() { return files_.Transfer(); }
  bool IsRunning() const { return flow_.IsRunning(); }
  // Called once.
  void Start() { flow_.Start(Run()); }

 Q_SIGNALS:
  void sizeKnown(qint32 bytes);
  // The package is here, and is being unpacked and checked.
  void installing();
  // The new databases are open.
  void installed(const QList<quayline::RowChanges>& changes);
  // The old databases are open again. `why` is a sentence, or empty where the code of the download
  // says everything.
  void failed(const QString& why);

 private:
  Task<> Run();
  Task<std::optional<QByteArray>> FetchDigest();
  void Open();
  void Fail(const std::optional<Message>& why);
  void Fail(const QString& why);
  QString Package() const { return context_.FileInFolder("databases.exe"); }
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  SiteDownload files_;
  bool is_closed_ = false;
  Flow flow_;
};

}  // namespace quayline
