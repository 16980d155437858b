// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "dbtool/commands.h"

#include <QCommandLineParser>

#include "core/jet_file.h"
#include "dbtool/database_file.h"
#include "dbtool/language_source.h"
#include "dbtool/program_data.h"

namespace quayline::dbtool {

namespace {

// What a command does with its arguments. The usage is made from the same rows.
struct Command {
  const char* name;
  const char* arguments;
  const char* help;
  Result (*run)(const QStringList& arguments, const QCommandLineParser& options,
                const ScriptLint& lint);
};

const QCommandLineOption& ReplaceCustom() {
  static const QCommandLineOption option(
      QStringLiteral("replace-custom"),
      QStringLiteral("build: replace a custom.mdb that contains programs of a user."));
  return option;
}

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

Result Build(const QStringList& arguments, const QCommandLineParser& options,
             const ScriptLint& lint) {
  const CheckedData checked = ReadChecked(arguments.at(0), lint);
  if (!checked.is_sound) {
    return {.exit_code = kExitFailed, .output = {}, .error = checked.problems};
  }
  const auto written =
      WriteDatabases(checked.data, arguments.at(1),
                     options.isSet(ReplaceCustom()) ? OwnPrograms::kReplace : OwnPrograms::kKeep);
  return written ? Result{.exit_code = kExitFine, .output = checked.problems, .error = {}}
                 : Failed(written.error());
}

Result Check(const QStringList& arguments, const QCommandLineParser&, const ScriptLint& lint) {
  const CheckedData checked = ReadChecked(arguments.at(0), lint);
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

Result Dump(const QStringList& arguments, const QCommandLineParser&, const ScriptLint&) {
  const auto text = DumpDatabase(arguments.at(0));
  return text ? Result{.exit_code = kExitFine, .output = *text, .error = {}} : Failed(text.error());
}

Result Import(const QStringList& arguments, const QCommandLineParser&, const ScriptLint&) {
  const auto tables = ImportJetFile(arguments.at(0), arguments.at(1));
  if (!tables) {
    return Failed(tables.error());
  }
  QString output;
  for (const TableData& table : *tables) {
    output += QStringLiteral("%1: %2 rows\n").arg(table.name).arg(table.rows.size());
  }
  return {.exit_code = kExitFine, .output = output, .error = {}};
}

Result MakeLanguages(const QStringList& arguments, const QCommandLineParser&, const ScriptLint&) {
  const auto written = WriteLanguages(arguments.at(0), arguments.at(1));
  return written ? Result() : Failed(written.error());
}

QString Listed(const QString& title, const QStringList& lines) {
  return lines.isEmpty() ? QString()
                         : title + QStringLiteral(":\n  ") + lines.join(QStringLiteral("\n  ")) +
                               QLatin1Char('\n');
}

Result PrintTexts(const QStringList& arguments, const QCommandLineParser&, const ScriptLint&) {
  const ProgramTexts program = ReadProgramTexts(arguments.at(0));
  QStringList unreachable;
  for (const ProgramText& text : program.unreachable) {
    unreachable.append(text.place + QStringLiteral(": ") + text.english);
  }
  return {.exit_code = unreachable.isEmpty() ? kExitFine : kExitFailed,
          .output = LanguageTemplate(program),
          .error = Listed(QStringLiteral("No language file reaches these texts"), unreachable)};
}

Result Compare(const QStringList& arguments, const QCommandLineParser&, const ScriptLint&) {
  const auto language = ReadLanguageSource(arguments.at(1));
  if (!language) {
    return Failed(language.error());
  }
  const LanguageFindings found = CompareLanguage(*language, ReadProgramTexts(arguments.at(0)));
  const QString report = Listed(QStringLiteral("Without a translation"), found.missing) +
                         Listed(QStringLiteral("Not used by the program"), found.unused) +
                         Listed(QStringLiteral("Wrong"), found.wrong);
  return {.exit_code = report.isEmpty() ? kExitFine : kExitFailed, .output = report, .error = {}};
}

constexpr Command kCommands[] = {
    {"build", "DATA OUT", "make OUT/routers.mdb, ports.mdb and custom.mdb from the folder DATA",
     Build},
    {"check", "DATA", "report what is wrong with the folder DATA", Check},
    {"languages", "DATA OUT", "make OUT/Languages from the folder DATA/languages", MakeLanguages},
    {"texts", "SOURCES", "print all texts of the program as a language to fill in", PrintTexts},
    {"compare", "SOURCES LANGUAGE",
     "report what the file LANGUAGE lacks, and what is wrong with it", Compare},
    {"dump", "FILE", "print a database as the text that it can be built from", Dump},
    {"import", "FILE OUT", "make the database OUT from the Jet file FILE", Import},
};

void AddOptions(QCommandLineParser& parser) {
  QString description =
      QStringLiteral("Makes the databases of routers and programs, and the language files.\n");
  for (const Command& command : kCommands) {
    const QString shape =
        QLatin1String(command.name) + QLatin1Char(' ') + QLatin1String(command.arguments);
    description +=
        QStringLiteral("\n  %1%2").arg(shape.leftJustified(25), QLatin1String(command.help));
  }
  parser.setApplicationDescription(description);
  parser.addOption({QStringLiteral("help"), QStringLiteral("Shows this text.")});
  parser.addOption(ReplaceCustom());
  parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("one of these"));
  parser.addPositionalArgument(QStringLiteral("arguments"), QStringLiteral("those of the command"),
                               QStringLiteral("arguments..."));
}

// The command that the arguments name; null if there is no such command, or it takes other
// arguments.
const Command* FindCommand(const QStringList& words, bool replaces_custom) {
  for (const Command& command : kCommands) {
    const auto count = QLatin1String(command.arguments).count(QLatin1Char(' ')) + 1;
    if (words.value(0) == QLatin1String(command.name) && words.size() == count + 1 &&
        (!replaces_custom || command.run == Build)) {
      return &command;
    }
  }
  return nullptr;
}

}  // namespace

Result RunCommand(const QStringList& arguments, const ScriptLint& lint) {
  QCommandLineParser parser;
  AddOptions(parser);
  const bool is_parsed = parser.parse(QStringList(QStringLiteral("quayline-dbtool")) + arguments);
  if (is_parsed && parser.isSet(QStringLiteral("help"))) {
    return {.exit_code = kExitFine, .output = parser.helpText(), .error = {}};
  }
  const QStringList words = parser.positionalArguments();
  const Command* command = FindCommand(words, parser.isSet(ReplaceCustom()));
  return is_parsed && command != nullptr
             ? command->run(words.sliced(1), parser, lint)
             : Result{.exit_code = kExitUsage, .output = {}, .error = parser.helpText()};
}

}  // namespace quayline::dbtool
