// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "async/flow.h"
#include "core/app_context.h"
#include "core/shipped_databases.h"
#include "transport/download.h"

namespace quayline {

// Fetches the package of databases from the maker's server and installs it. The databases are
// closed meanwhile, and opened again on every path, also when this is destroyed.
class DatabaseUpdate final : public QObject {
  Q_OBJECT

 public:
  // The context outlives it.
  explicit DatabaseUpdate(AppContext& context);
  ~DatabaseUpdate() override;

  Download& Transfer() { return download_; }
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
  Task<bool> ReadDigest();
  Task<bool> Fetch();
  void Open();
  void Fail(const QString& why);
  QString Package() const { return context_.FileInFolder("databases.exe"); }
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Download download_;
  QByteArray digest_;
  bool is_complete_ = false;
  bool is_closed_ = false;
  Flow flow_;
};

}  // namespace quayline
