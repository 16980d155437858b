// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <expected>

#include "demo/demo_router.h"

namespace quayline::demo {

// What quayline-demo-router was asked for.
struct DemoCommand {
  enum class Kind { kServe, kCompare, kHelp };

  Kind kind = Kind::kServe;
  QString model = QStringLiteral("formback");
  DemoOptions options;
  QString list_file;  // kCompare; the router's port is then options.port
};

// `arguments` begins with the program's name. The error is a sentence for the user.
std::expected<DemoCommand, QString> ReadCommandLine(const QStringList& arguments);

QString HelpText();

}  // namespace quayline::demo
