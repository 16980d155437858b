// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>

#include <optional>

#include "async/task.h"
#include "core/page_rows.h"
#include "core/router_session.h"
#include "script/command_call.h"
#include "script/run_environment.h"
#include "script/script_run.h"

namespace quayline {

// The lines that lead to the page which shows the router's rules: the router's view script, or,
// where it has none, the first page that its update script opens.
QStringList LinesToRules(const RouterSession& session);

// Asks for the rows that the page shows, once more when what it still does is done: rows come late.
Task<QJsonObject> AskForRows(CommandCall& call);
// Adds the rows of such an answer to `page`.
void AddRows(const QJsonObject& answer, PageRows& page);

// Opens the page that `arguments.commands` lead to and reads its rows, and those of the pages that
// follow it. Nothing on the router is changed: the only click is the link to the next page. The
// job's log gets no line, and what scripts keep from line to line is the same afterwards. Nothing
// where the page cannot be reached, or the job was stopped.
//
// `job` outlives the reading.
Task<std::optional<PageRows>> ReadRules(RunEnvironment& job, RunArguments arguments);

}  // namespace quayline
