// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

#include "core/records.h"
#include "core/text_form.h"

namespace quayline {

// The finding about one line of a script.
struct ScriptRemark {
  QString sentence;  // in English
  bool is_warning = false;
  int line = 1;  // of the script
};

// A script of a router's file.
struct SourceScript {
  QString column;            // its name
  QStringList lines;         // those that are not blank
  QStringList update_lines;  // of the router's update script, if that is above
};

using ScriptLint = std::function<QList<ScriptRemark>(const SourceScript& script)>;

// A router as a file has it, with the places of its parts.
struct RouterSource {
  RouterRecord record;
  QString file;
  int line = 1;               // where it begins
  QHash<QString, int> lines;  // of "id", of each field and of each script's heading that is there
  // One of the other models of the router before it, from which it differs in ID and name only.
  bool is_other_model = false;
};

// The routers of one file; each is followed by the models that its block "[models]" names. Lines
// that cannot be read are problems; `lint` sees every script.
QList<RouterSource> ReadRouters(const QList<TextLine>& lines, const QString& file,
                                const ScriptLint& lint, Problems& problems);

// The text of one router, without a separator line in front.
QString FormatRouter(const RouterRecord& record);

// The texts of all routers; from two on, each is introduced by the separator line that
// ReadRouters() divides a file at.
QString FormatRouters(const QList<RouterRecord>& records);

}  // namespace quayline
