// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QUrl>

#include <expected>

#include "transport/http_message.h"
#include "update/manifest.h"

namespace quayline::demo {

struct UpdateOptions {
  QString databases;  // a folder with the three databases that the package is made of
  QString version;    // of the program that is offered
  QUrl site;          // under which the files are reached
};

// The files of an update as the maker's server has them, made when the site starts: "update.ini",
// signed, a package of databases with one router more, and a stand-in for an installer. By path.
std::expected<QHash<QString, HttpResponse>, QString> MakeUpdates(const UpdateOptions& options);

// The key of this site. It is no secret: everybody can sign with it.
SigningKey DemoKey();

}  // namespace quayline::demo
