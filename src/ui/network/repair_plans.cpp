// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/repair_plans.h"

#include <QStandardPaths>
#include <QSysInfo>

#include <algorithm>

#include "core/database_repair.h"
#include "net/repair_commands.h"
#include "ui/network/repair_texts.h"

namespace quayline {

namespace {

// Steps that do not wait.
Task<RepairResult> AtOnce(RepairResult result) { co_return result; }

Task<RepairResult> AsResult(Task<bool> task, QList<Sentence> failure) {
  const bool is_good = co_await task;
  co_return RepairResult{.is_good = is_good, .words = is_good ? QList<Sentence>() : failure};
}

RepairResult ResultOf(const DatabaseState& state) {
  RepairResult result{.is_good = state.is_good, .words = {{state.words}}};
  if (!state.kept_as.isEmpty()) {
    result.words.append({message::kDamagedFileKept, {state.kept_as}});
  }
  return result;
}

RepairPlan RegisterPlan(const Message& title, const Message& explanation,
                        const QStringList& commands) {
  const CommonFolders folders{.of_this_system = qEnvironmentVariable("CommonProgramFiles"),
                              .of_32_bits = qEnvironmentVariable("CommonProgramFiles(x86)")};
  QStringList lines;
  for (const QString& command : commands) {
    lines.append(WithCommonFolders(command, folders));
  }
  return {.title = title,
          .explanation = explanation,
          .steps = CommandSteps(lines),
          .doing = message::kRegistering,
          .done = message::kRegisteringDone};
}

RepairPlan PlanHere(const Message& title, const Message& explanation, const char* other,
                    QList<RepairStep> steps) {
  return {.title = title,
          .explanation = explanation,
          .note = Sentence{message::kOtherSystem, {QLatin1String(other)}},
          .steps = std::move(steps),
          .doing = message::kRepairing,
          .done = message::kRepairingDone,
          .failed = message::kRepairFailed};
}

bool IsUnreadable(const AppContext& context, const QString& file) {
  const DatabaseState state = CheckDatabase(context.program_folder, file);
  return !state.is_good && !state.can_be_rebuilt;
}

// What is open stays open if a file cannot be read now: its good copy would take its place, which
// is older and can only be read.
RepairResult Reopen(AppContext& context) {
  const QStringList files = DatabaseFiles();
  if (context.databases.IsOpen() && std::ranges::any_of(files, [&](const QString& file) {
        return IsUnreadable(context, file);
      })) {
    return {.is_good = true};
  }
  const auto opened = context.databases.Open(context.program_folder, context.shipped_folder);
  if (opened) {
    context.databases.KeepGoodCopies();
  }
  return {.is_good = opened.has_value(),
          .words = opened ? QList<Sentence>() : opened.error().description};
}

RepairResult Rebuild(AppContext& context, const QString& file) {
  if (CheckDatabase(context.program_folder, file).can_be_rebuilt) {
    context.databases.Close();
  }
  return ResultOf(RebuildDatabase(context.program_folder, context.shipped_folder, file));
}

}  // namespace

// Wine has a program of this name too, but its components are not those of this system.
bool HasRegsvr32() {
  return QSysInfo::kernelType() == QLatin1String("winnt") &&
         !QStandardPaths::findExecutable(QStringLiteral("regsvr32")).isEmpty();
}

RepairPlan BrowserRepair(BrowserTools tools, bool has_regsvr32) {
  if (has_regsvr32) {
    return RegisterPlan(message::kRegisterBrowserTitle, message::kRegisterBrowser,
                        BrowserRepairCommands());
  }
  QList<RepairStep> steps;
  steps.append(
      {{message::kClearCacheStep}, [clear = tools.clear_cache] { return AsResult(clear(), {}); }});
  steps.append({{message::kRemoveProfileStep},
                [remove = tools.remove_files] { return AtOnce({.is_good = remove()}); }});
  steps.append({{message::kNewProfileStep}, [start = tools.try_new_browser] {
                  return AsResult(start(), {{message::kNewProfileFailed}});
                }});
  return PlanHere(message::kRepairBrowserTitle, message::kRepairBrowserHere, "Internet Explorer",
                  std::move(steps));
}

RepairPlan DatabaseRepair(AppContext& context, bool has_regsvr32) {
  if (has_regsvr32) {
    return RegisterPlan(message::kRegisterDatabasesTitle, message::kRegisterDatabases,
                        DatabaseRepairCommands());
  }
  QList<RepairStep> steps;
  for (const QString& file : DatabaseFiles()) {
    // What is damaged is no failure yet: the next step repairs it.
    steps.append({{message::kCheckStep, {file}}, [&context, file] {
                    RepairResult result = ResultOf(CheckDatabase(context.program_folder, file));
                    result.is_good = true;
                    return AtOnce(result);
                  }});
    steps.append({{message::kRebuildStep, {file}},
                  [&context, file] { return AtOnce(Rebuild(context, file)); }});
  }
  steps.append({{message::kReopenStep}, [&context] { return AtOnce(Reopen(context)); }});
  RepairPlan plan = PlanHere(message::kRepairDatabasesTitle, message::kRepairDatabasesHere,
                             "MDAC & MS Jet", std::move(steps));
  plan.closed = [&context] {
    if (!context.databases.IsOpen()) {
      Reopen(context);
    }
  };
  return plan;
}

}  // namespace quayline
