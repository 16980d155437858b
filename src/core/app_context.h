// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>

#include "core/databases.h"
#include "core/job_flags.h"
#include "core/job_journal.h"
#include "core/maker_site.h"
#include "core/port_list_model.h"
#include "core/router_session.h"
#include "core/session_store.h"
#include "core/settings.h"
#include "core/trusted_certificates.h"
#include "i18n/translator.h"
#include "platform/adapters.h"
#include "platform/desktop.h"
#include "platform/firewall.h"
#include "platform/listeners.h"
#include "platform/router_lock.h"
#include "transport/http_fetch.h"

namespace quayline {

// Owns what the whole run shares, and is passed by reference to whatever needs it.
struct AppContext {
  AppContext(const QString& folder, Adapters& system_adapters, Desktop& system_desktop)
      : program_folder(folder),
        settings(folder + QStringLiteral("/settings.ini")),
        translator(folder),
        certificates(folder + QStringLiteral("/certificates.ini")),
        adapters(system_adapters),
        desktop(system_desktop) {}

  QString FileInFolder(const char* name) const {
    return program_folder + QLatin1Char('/') + QLatin1String(name);
  }

  QLocale desktop_locale = QLocale::system();
  QString program_folder;
  QString shipped_folder;  // of the files that came with the program; may be empty
  Settings settings;
  Translator translator;
  Databases databases;
  RouterSession session;
  SessionStore session_store{settings};
  int router_search_position = 0;  // where the search in the list of routers continues
  JobOptions job_options;
  JobFlags job_flags;
  PortListModel port_list;
  MakerSite maker_site;
  TrustedCertificates certificates;
  HttpFetch http_fetch;
  RouterLocks router_locks;              // locks nothing until the program says where
  JobJournals journals;                  // keeps none until the program says where
  const Listeners* listeners = nullptr;  // null: it is not known who listens on this computer
  Firewall* firewall = nullptr;          // null: it is not known what this computer lets in
  Adapters& adapters;
  Desktop& desktop;
};

}  // namespace quayline
