// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// What is wrong with the lines of a script together.

#include <QSet>

#include <algorithm>

#include "script/lint_texts.h"
#include "script/script_line.h"
#include "script/script_lint.h"

namespace quayline {

namespace {

// A save takes a small router longer than this.
constexpr int kShortestSave = 1000;

struct Command {
  int line = 1;
  QString text;  // of the whole line
  const CommandRow* row = nullptr;
  QStringList fields;
};

QList<Command> CommandsOf(const QStringList& lines) {
  QList<Command> commands;
  for (qsizetype i = 0; i < lines.size(); ++i) {
    const ScriptLine line = ParseScriptLine(lines.at(i));
    if (const CommandRow* row = FindCommand(line.name)) {
      const bool is_split = row->fields.size() > 1;
      commands.append({.line = static_cast<int>(i) + 1,
                       .text = lines.at(i),
                       .row = row,
                       .fields = is_split ? line.argument.split(QLatin1Char(row->separator))
                                          : QStringList(line.argument)});
    }
  }
  return commands;
}

bool TestsCombo(Condition condition) {
  return condition == Condition::kInCombo || condition == Condition::kFirstInCombo;
}

// Whether the line runs whenever the script begins.
bool AlwaysRunsFirst(const Command& command) {
  const Condition condition = command.row->condition;
  return condition == Condition::kAlways || condition == Condition::kFirst;
}

// Only a time is waited for: no page is needed.
bool IsTimer(const CommandRow& row) {
  return !row.fields.empty() && row.fields.front().kind == FieldKind::kMilliseconds;
}

// The value of the field of this kind; nothing for a command without one.
std::optional<QString> FieldOf(const Command& command, FieldKind kind) {
  for (size_t i = 0; i < command.row->fields.size(); ++i) {
    if (command.row->fields[i].kind == kind) {
      return command.fields.value(static_cast<qsizetype>(i),
                                  FromAscii(command.row->fields[i].default_value));
    }
  }
  return std::nullopt;
}

bool Logs(const Command& command) { return command.row->logs_in; }

// How many lines between the last login and the first field of a rule, or the end, open a page or
// click: one is the login's own button.
qsizetype StepsAfterLogin(const QList<Command>& commands) {
  const auto login = std::ranges::find_if(commands.crbegin(), commands.crend(), Logs).base();
  const auto form = std::find_if(login, commands.cend(), [](const Command& command) {
    return command.row->uses_entry && command.row->use != PageUse::kReads;
  });
  return std::count_if(login, form, [](const Command& command) {
    return command.row->use == PageUse::kOpens || command.row->use == PageUse::kActs;
  });
}

// Whether the script logs in at the router's first page. Of a login anywhere else the router may
// return to the page that was asked for.
bool LogsInAtHome(const QList<Command>& commands) {
  const auto login = std::ranges::find_if(commands, Logs);
  const auto page = std::find_if(std::make_reverse_iterator(login), commands.crend(),
                                 [](const Command& c) { return c.row->use == PageUse::kOpens; });
  return page != commands.crend() && FieldOf(*page, FieldKind::kPath) == QString();
}

class FlowLint final {
 public:
  FlowLint(const QStringList& lines, ScriptKind kind, const QStringList& update_lines)
      : lines_(lines),
        kind_(kind),
        commands_(CommandsOf(lines)),
        update_commands_(CommandsOf(update_lines)) {}

  QList<ScriptFinding> Run() {
    if (commands_.isEmpty()) {
      if (kind_ == ScriptKind::kView) {
        Add(LintSeverity::kError, 1, lint_text::kLeadsNowhere);
      }
      return findings_;
    }
    LintNeeds();
    LintConditions();
    LintFirstPage();
    LintSending();
    LintShortWaits();
    LintLogin();
    LintView();
    return findings_;
  }

 private:
  void Add(LintSeverity severity, int line, const Message& text, const QStringList& values = {}) {
    findings_.append({.line = line,
                      .finding = {.severity = severity,
                                  .start = 0,
                                  .length = lines_.value(line - 1).size(),
                                  .text = text,
                                  .values = values}});
  }

  // The first needed line that is missing is enough.
  void LintNeeds() {
    QSet<Kept> given;
    for (const Command& command : commands_) {
      const CommandRow& row = *command.row;
      const Kept needed = row.needs != Kept::kNothing ? row.needs : InsertionNeed(command);
      if (needed != Kept::kNothing && !given.contains(needed)) {
        Add(LintSeverity::kError, command.line, *TextOf(needed));
        given.insert(needed);
      }
      given.insert(row.gives);
      if (kind_ == ScriptKind::kView && (row.uses_entry || ReadsEntry(command))) {
        Add(LintSeverity::kError, command.line, lint_text::kNoEntryHere);
      }
    }
  }

  static bool ReadsEntry(const Command& command) {
    return FieldOf(command, FieldKind::kJavaScript)
        .value_or(QString())
        .contains(QLatin1String("quayline."));
  }

  // A position without a name that could be inserted there.
  static Kept InsertionNeed(const Command& command) {
    const bool inserts = std::ranges::any_of(command.row->fields, [](const FieldSpec& field) {
      return field.inserted == Inserted::kCurrentName;
    });
    const QString position = FieldOf(command, FieldKind::kPosition).value_or(QString());
    return inserts && WholeNumber(position) ? Kept::kCurrentName : Kept::kNothing;
  }

  static const Message* TextOf(Kept needed) {
    switch (needed) {
      case Kept::kTypeChoices:
        return &lint_text::kNoTypeChoices;
      case Kept::kNameArray:
        return &lint_text::kNoNameArray;
      case Kept::kCheckedText:
        return &lint_text::kNoCheckedText;
      case Kept::kNothing:
      case Kept::kCurrentName:
      case Kept::kListTest:
        break;
    }
    return &lint_text::kNoCurrentName;
  }

  void LintConditions() {
    // What a test found is still known when the next entry begins.
    const bool is_tested = std::ranges::any_of(
        commands_, [](const Command& command) { return command.row->gives == Kept::kListTest; });
    for (const Command& command : commands_) {
      const Condition condition = command.row->condition;
      const bool is_later = condition == Condition::kNotFirst || condition == Condition::kNotLast;
      if (TestsCombo(condition) && !is_tested) {
        Add(LintSeverity::kError, command.line, lint_text::kNeverInCombo);
      } else if (is_later && kind_ == ScriptKind::kView) {
        Add(LintSeverity::kError, command.line, lint_text::kNeverHere);
      }
    }
  }

  void LintFirstPage() {
    const auto opens = [](const Command& c) { return c.row->use == PageUse::kOpens; };
    const auto first = std::ranges::find_if(
        commands_, [&](const Command& c) { return opens(c) && AlwaysRunsFirst(c); });
    if (std::ranges::none_of(commands_, opens)) {
      Add(LintSeverity::kError, 1, lint_text::kOpensNothing);
      return;
    }
    // To read a text that is not there makes it empty, which may be meant.
    const auto early = std::ranges::find_if(commands_, [&](const Command& c) {
      const bool only_reads = c.row->use == PageUse::kReads && !c.row->uses_entry;
      return c.row->use != PageUse::kNone && !opens(c) && !only_reads && !IsTimer(*c.row);
    });
    if (early < first) {
      Add(LintSeverity::kError, early->line, lint_text::kNoPageYet);
    }
  }

  // A page may send what is typed by itself, so this is not certain while something else is
  // clicked. A page in a frame leaves the others.
  void LintSending() {
    std::optional<int> unsent;
    bool has_acted = false;
    bool uses_frames = false;
    for (const Command& command : commands_) {
      const CommandRow& row = *command.row;
      uses_frames = uses_frames || row.name == "set_frame_name";
      if (row.use == PageUse::kFills) {
        unsent = command.line;
      } else if (row.use == PageUse::kActs) {
        has_acted = true;
        unsent.reset();
      } else if (row.use == PageUse::kOpens && unsent && !uses_frames && AlwaysRuns(row)) {
        Add(LintSeverity::kWarning, command.line, lint_text::kLeftUnsent);
        unsent.reset();
      }
    }
    if (unsent) {
      Add(has_acted ? LintSeverity::kWarning : LintSeverity::kError, *unsent,
          lint_text::kNeverSent);
    }
    if (kind_ == ScriptKind::kRemove && !has_acted) {
      Add(LintSeverity::kError, std::max(1, static_cast<int>(lines_.size())),
          lint_text::kRemovesNothing);
    }
  }

  static bool AlwaysRuns(const CommandRow& row) { return row.condition == Condition::kAlways; }

  // A click that is waited for by time alone, where the page is left next or the script ends.
  void LintShortWaits() {
    for (auto click = commands_.cbegin(); click != commands_.cend(); ++click) {
      const auto text = FieldOf(*click, FieldKind::kMilliseconds);
      const int time = text ? WholeNumber(*text).value_or(kShortestSave) : kShortestSave;
      if (click->row->use != PageUse::kActs || time >= kShortestSave || time == 0) {
        continue;
      }
      const auto next = std::find_if(std::next(click), commands_.cend(), [](const Command& c) {
        return c.row->use == PageUse::kOpens || c.row->use == PageUse::kWaits ||
               c.row->use == PageUse::kActs;
      });
      if (next == commands_.cend() || next->row->use == PageUse::kOpens) {
        Add(LintSeverity::kWarning, click->line, lint_text::kShortWait, {QString::number(time)});
      }
    }
  }

  // A login that is sent for every entry, and typed for the first one only.
  void LintLogin() {
    if (kind_ == ScriptKind::kView) {
      return;
    }
    for (auto login = commands_.cbegin(); login != commands_.cend(); ++login) {
      const auto next = std::find_if(login, commands_.cend(), [](const Command& c) {
        return c.row->use == PageUse::kOpens || c.row->use == PageUse::kActs;
      });
      if (Logs(*login) && login->row->condition == Condition::kFirst && next != commands_.cend() &&
          next->row->use == PageUse::kActs && AlwaysRuns(*next->row)) {
        Add(LintSeverity::kWarning, next->line, lint_text::kLoginForEach);
      }
    }
  }

  // Whether a view script gets as far as the update script does. A router may remember the login,
  // so this is not certain.
  void LintView() {
    if (kind_ != ScriptKind::kView || std::ranges::none_of(update_commands_, Logs)) {
      return;
    }
    if (std::ranges::none_of(commands_, Logs)) {
      Add(LintSeverity::kWarning, commands_.first().line, lint_text::kNoLogin);
    } else if (LogsInAtHome(commands_) && StepsAfterLogin(commands_) <= 1 &&
               StepsAfterLogin(update_commands_) > 1) {
      Add(LintSeverity::kWarning, commands_.last().line, lint_text::kEndsAtLogin);
    }
  }

  const QStringList& lines_;
  const ScriptKind kind_;
  const QList<Command> commands_;
  const QList<Command> update_commands_;  // of a view script's router
  QList<ScriptFinding> findings_;
};

}  // namespace

ScriptKind ScriptKindOf(const QString& column) {
  if (column == QLatin1String("routerremove")) {
    return ScriptKind::kRemove;
  }
  return column == QLatin1String("routerportpage") ? ScriptKind::kView : ScriptKind::kUpdate;
}

QList<ScriptFinding> LintScript(const QStringList& lines, ScriptKind kind,
                                const QStringList& update_lines) {
  QList<ScriptFinding> findings;
  for (qsizetype i = 0; i < lines.size(); ++i) {
    for (const LintFinding& finding : LintScriptLine(lines.at(i))) {
      findings.append({.line = static_cast<int>(i) + 1, .finding = finding});
    }
  }
  findings += FlowLint(lines, kind, update_lines).Run();
  std::ranges::stable_sort(findings, {}, &ScriptFinding::line);
  return findings;
}

}  // namespace quayline
