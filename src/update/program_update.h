// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "async/flow.h"
#include "core/app_context.h"
#include "update/site_download.h"
#include "update/update_site.h"

namespace quayline {

// Looks on the maker's server for a newer version of the program, and fetches its installer.
class ProgramUpdate final : public QObject {
  Q_OBJECT

 public:
  // The context outlives it.
  explicit ProgramUpdate(AppContext& context, QString local_version);

  const QString& LocalVersion() const { return local_version_; }
  // What the last manifest says; empty before.
  const Manifest& Found() const { return manifest_; }
  bool HasSite() const { return FindUpdateSite(context_).Exists(); }
  Download& Transfer() { return files_.Transfer(); }
  bool IsRunning() const { return flow_.IsRunning(); }

  // Fetches the manifest. Nothing happens while something is fetched already.
  void CheckForUpdate();
  // Fetches the installer that the manifest names.
  void FetchInstaller();
  // Ends what runs; nothing is emitted for it.
  void Cancel() { flow_.Cancel(); }

 Q_SIGNALS:
  void sizeKnown(qint32 bytes);
  // The manifest has been read: Found() is what it says.
  void versionFound();
  // The rest is emitted when nothing runs any more: idle() after every call, then one of the
  // others.
  void idle();
  void upToDate();
  void newVersion();
  // The installer is the one that the manifest promised. It is started by whoever owns this.
  void installerReady(const QString& file);
  // Nothing comes of it, and why. Not emitted for versions that cannot be compared.
  void failed(const quayline::Message& why);

 private:
  Task<> Check();
  Task<> FetchFile();
  void Report(const std::optional<Message>& failure);

  AppContext& context_;
  QString local_version_;
  Manifest manifest_;
  SiteDownload files_;
  std::function<void()> outcome_;  // emits the signal that the end of the task has
  Flow flow_;
};

}  // namespace quayline
