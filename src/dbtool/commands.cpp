// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "dbtool/commands.h"

#include "dbtool/database_file.h"
#include "dbtool/program_data.h"

namespace quayline::dbtool {

namespace {

constexpr char kUsage[] = R"(quayline-dbtool: the databases of routers and programs

  build DATA OUT [--replace-custom]
                   make OUT/routers.mdb, ports.mdb and custom.mdb out of the folder DATA; a custom.mdb
                   with programs of a user is replaced only if told so
  check DATA       say what is wrong with the folder DATA
  dump FILE        print a database as the text that it can be built from
)";

Result Failed(const QString& error) {
  return {.exit_code = kExitFailed, .output = {}, .error = error + QLatin1Char('\n')};
}

struct CheckedData {
  ProgramData data;
  QString problems;  // errors and warnings
  bool is_sound = false;
};

CheckedData ReadChecked(const QString& folder, const ScriptLint& lint) {
  Problems problems;
  CheckedData checked{
      .data = ReadDataFolder(folder, lint, problems), .problems = {}, .is_sound = false};
  CheckData(checked.data, problems);
  checked.problems = FormatProblems(problems);
  checked.is_sound = !HoldErrors(problems);
  return checked;
}

Result Build(const QString& folder, const QString& out, OwnPrograms own_programs,
             const ScriptLint& lint) {
  const CheckedData checked = ReadChecked(folder, lint);
  if (!checked.is_sound) {
    return {.exit_code = kExitFailed, .output = {}, .error = checked.problems};
  }
  const auto written = WriteDatabases(checked.data, out, own_programs);
  return written ? Result{.exit_code = kExitFine, .output = checked.problems, .error = {}}
                 : Failed(written.error());
}

Result Check(const QString& folder, const ScriptLint& lint) {
  const CheckedData checked = ReadChecked(folder, lint);
  if (!checked.is_sound) {
    return {.exit_code = kExitFailed, .output = checked.problems, .error = {}};
  }
  return {
      .exit_code = kExitFine,
      .output = checked.problems + QStringLiteral("Nothing is wrong: routers %1, programs %2.\n")
                                       .arg(checked.data.routers.size())
                                       .arg(checked.data.ports.size()),
      .error = {}};
}

Result Dump(const QString& file) {
  const auto text = DumpDatabase(file);
  return text ? Result{.exit_code = kExitFine, .output = *text, .error = {}} : Failed(text.error());
}

}  // namespace

Result RunCommand(const QStringList& arguments, const ScriptLint& lint) {
  const QString command = arguments.value(0);
  const bool replaces_custom =
      arguments.size() == 4 && arguments.at(3) == QLatin1String("--replace-custom");
  if (command == QLatin1String("build") && (arguments.size() == 3 || replaces_custom)) {
    return Build(arguments.at(1), arguments.at(2),
                 replaces_custom ? OwnPrograms::kReplace : OwnPrograms::kKeep, lint);
  }
  if (command == QLatin1String("check") && arguments.size() == 2) {
    return Check(arguments.at(1), lint);
  }
  if (command == QLatin1String("dump") && arguments.size() == 2) {
    return Dump(arguments.at(1));
  }
  const QString usage = QLatin1String(kUsage);
  return command == QLatin1String("--help")
             ? Result{.exit_code = kExitFine, .output = usage, .error = {}}
             : Result{.exit_code = kExitUsage, .output = {}, .error = usage};
}

}  // namespace quayline::dbtool
