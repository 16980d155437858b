// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDate>
#include <QUrl>

#include "core/app_context.h"
#include "update/manifest.h"

namespace quayline {

// Where updates come from, and whose signature they need.
struct UpdateSite {
  QUrl base;       // empty: no site is known
  QByteArray key;  // Ed25519; empty: updates need no signature

  bool Exists() const { return base.isValid() && !base.host().isEmpty(); }
  QUrl Manifest() const { return Page("/updates/qyl_v3/update.ini"); }
  QUrl Databases() const { return Page("/updates/qyl_v3/databases.exe"); }

 private:
  QUrl Page(const char* path) const;
};

// The maker's site with the key that is built in, or the one that the settings name, with their key
// if they have one.
UpdateSite FindUpdateSite(const AppContext& context);

// Whether the program is to look for a new version by itself now. If so, `today` is noted: it does
// so once a day at most. Where there is no site nothing is noted.
bool TakeDailyCheck(AppContext& context, const QDate& today);

// Where manifests need a signature, those with a lower serial are refused from now on. Each key has
// a serial of its own: who tries another site gets back to that of the maker.
void NoteManifest(AppContext& context, const Manifest& manifest);
qint64 LeastSerial(const AppContext& context);

}  // namespace quayline
